#include "fixes/health/printer_win.h"

#include <windows.h>

#include <winspool.h>

#include <utility>
#include <vector>

namespace {

// A name that does not fit counts as no default printer.
std::wstring DefaultPrinterName() {
    wchar_t name[256] = {};
    DWORD size = static_cast<DWORD>(std::size(name));
    return GetDefaultPrinterW(name, &size) ? std::wstring(name) : std::wstring();
}

std::wstring_view TextOrEmpty(const wchar_t* text) {
    return text == nullptr ? std::wstring_view() : std::wstring_view(text);
}

// The spooler's variable-sized answer: `count` records, followed by the texts that they point to.
struct Enumeration {
    std::vector<BYTE> buffer;
    DWORD count = 0;
};

Enumeration EnumeratePrinters() {
    constexpr DWORD kFlags = PRINTER_ENUM_LOCAL | PRINTER_ENUM_CONNECTIONS;
    constexpr DWORD kLevel = 2;
    Enumeration found;
    DWORD needed = 0;
    EnumPrintersW(kFlags, nullptr, kLevel, nullptr, 0, &needed, &found.count);
    found.buffer.resize(needed);
    if (!EnumPrintersW(kFlags, nullptr, kLevel, found.buffer.data(), needed, &needed,
                       &found.count)) {
        return {};
    }
    return found;
}

std::vector<PrinterEntry> PrinterEntries(const Enumeration& found) {
    std::vector<PrinterEntry> entries;
    const auto* printers = reinterpret_cast<const PRINTER_INFO_2W*>(found.buffer.data());
    for (DWORD i = 0; i < found.count; ++i) {
        entries.push_back({TextOrEmpty(printers[i].pPrinterName),
                           TextOrEmpty(printers[i].pPortName), printers[i].Attributes,
                           printers[i].Status});
    }
    return entries;
}

}  // namespace

DefaultPrinterInfo QueryDefaultPrinter() {
    std::wstring name = DefaultPrinterName();
    if (name.empty()) return {};
    const Enumeration found = EnumeratePrinters();
    return JudgeDefaultPrinter(std::move(name), PrinterEntries(found));
}

Printers SystemPrinters() {
    return {QueryDefaultPrinter,
            [](const std::wstring& name) { return SetDefaultPrinterW(name.c_str()) != FALSE; }};
}
