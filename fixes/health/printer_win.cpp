// Every call into the spooler has a limit: behind it may stand a print server that is not there.
#include "fixes/health/printer_win.h"

#include <windows.h>

#include <winspool.h>

#include <utility>
#include <vector>

#include "base/deadline_win.h"

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

DefaultPrinterInfo queryWithin(unsigned limitMs) {
    std::optional<std::wstring> name = answerWithin(limitMs, DefaultPrinterName);
    if (!name || name->empty()) return {};
    const auto found = answerWithin(limitMs, EnumeratePrinters).value_or(Enumeration());
    return JudgeDefaultPrinter(std::move(*name), PrinterEntries(found));
}

bool setWithin(unsigned limitMs, const std::wstring& name, const std::wstring& otherwise) {
    const auto takeBack = [name, otherwise] {
        if (!otherwise.empty() && DefaultPrinterName() == name)
            SetDefaultPrinterW(otherwise.c_str());
    };
    return answerWithin(
               limitMs, [name] { return SetDefaultPrinterW(name.c_str()) != FALSE; }, takeBack)
        .value_or(false);
}

}  // namespace

DefaultPrinterInfo QueryDefaultPrinter() {
    return queryWithin(kSpoolerLimitMs);
}

Printers SystemPrinters(unsigned limitMs) {
    return {[limitMs] { return queryWithin(limitMs); },
            [limitMs](const std::wstring& name, const std::wstring& otherwise) {
                return setWithin(limitMs, name, otherwise);
            }};
}
