// The default printer: how it is judged, and what the printer actions need of the spooler.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>

/// What a slow CorelDRAW can be blamed on in the default printer.
struct DefaultPrinterInfo {
    /// As the spooler returns it; empty when there is no default printer.
    std::wstring name;
    bool isNetwork = false;
    bool isOffline = false;
    /// Prints into a file: the best default a freezing CorelDRAW can have.
    bool isVirtual = false;
};

/// The fields of one enumerated printer (`PRINTER_INFO_2W`) that the judgement uses. The texts
/// belong to the enumeration's buffer; an absent one is empty.
struct PrinterEntry {
    std::wstring_view name;
    std::wstring_view port;
    /// `PRINTER_ATTRIBUTE_*` bits.
    std::uint32_t attributes = 0;
    /// `PRINTER_STATUS_*` bits.
    std::uint32_t status = 0;
};

/// Judges the default printer by the first entry of exactly its name, and by the name alone when
/// there is none. An empty name means that there is no default printer: no flag is set.
DefaultPrinterInfo JudgeDefaultPrinter(std::wstring name, std::span<const PrinterEntry> entries);

/// The spooler as the temporary switch uses it. Both are always set, and answer within seconds even
/// where the spooler does not.
struct Printers {
    std::function<DefaultPrinterInfo()> queryDefault;
    /// False when the system refuses, and when it does not answer. What then comes true too late is
    /// taken back in favour of the printer `otherwise`, unless that is empty.
    std::function<bool(const std::wstring& name, const std::wstring& otherwise)> setDefault;
};
