#include "fixes/health/printer.h"

#include <algorithm>
#include <utility>

namespace {

// Values of winspool.h, which exists on Windows only.
constexpr std::uint32_t kAttributeNetwork = 0x10;
constexpr std::uint32_t kAttributeWorkOffline = 0x400;
constexpr std::uint32_t kStatusOffline = 0x80;

// A queue of a print server, or a standard TCP/IP port: neither need carry the network attribute.
bool IsNetworkPrinter(const PrinterEntry& entry) {
    return entry.port.starts_with(L"\\\\") || entry.port.starts_with(L"IP_") ||
           (entry.attributes & kAttributeNetwork) != 0;
}

bool IsOfflinePrinter(const PrinterEntry& entry) {
    return (entry.status & kStatusOffline) != 0 || (entry.attributes & kAttributeWorkOffline) != 0;
}

}  // namespace

DefaultPrinterInfo JudgeDefaultPrinter(std::wstring name, std::span<const PrinterEntry> entries) {
    DefaultPrinterInfo printer;
    if (name.empty()) return printer;

    const auto entry = std::ranges::find(entries, std::wstring_view(name), &PrinterEntry::name);
    if (entry != entries.end()) {
        printer.isNetwork = IsNetworkPrinter(*entry);
        printer.isOffline = IsOfflinePrinter(*entry);
    }
    printer.isVirtual = name.find(L"Print to PDF") != std::wstring::npos;
    printer.name = std::move(name);
    return printer;
}
