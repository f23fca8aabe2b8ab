#include "fixes/health/printer_switch.h"

#include <utility>

namespace {

constexpr const wchar_t* kVirtualPrinter = L"Microsoft Print to PDF";
constexpr const wchar_t* kConfirmCaption = L"Confirm Temp Switch";
constexpr const wchar_t* kConfirmText =
    L"Temporarily switch the default printer to Microsoft Print to PDF?\n"
    L"Your original default printer is restored automatically when Mirelo exits.\n"
    L"\n"
    L"Continue?";

void Restore(const ActionHost& host, PrinterSwitch& state, const Printers& printers) {
    if (!RestoreDefaultPrinter(state.savedDefaultPrinter, printers)) return;
    host.appendLog(L"[Printer] Restored default printer: " + state.savedDefaultPrinter);
    state.savedDefaultPrinter.clear();
    host.setStatus(L"");
}

}  // namespace

std::wstring SwitchToVirtualPrinter(const Printers& printers) {
    DefaultPrinterInfo current = printers.queryDefault();
    if (current.name.empty() || current.isVirtual) return {};
    if (!printers.setDefault(kVirtualPrinter, current.name)) return {};
    return std::move(current.name);
}

bool RestoreDefaultPrinter(const std::wstring& name, const Printers& printers) {
    return !name.empty() && printers.setDefault(name, {});
}

void OnTempPrinter(const ActionHost& host, PrinterSwitch& state, const Printers& printers) {
    if (!state.savedDefaultPrinter.empty()) {
        Restore(host, state, printers);
        return;
    }
    if (!host.confirm(kConfirmText, kConfirmCaption, ConfirmStyle::question)) return;

    std::wstring replaced = SwitchToVirtualPrinter(printers);
    if (replaced.empty()) {
        host.appendLog(
            L"[Printer] Switch failed (already a virtual printer, or blocked by policy).");
        return;
    }
    // Remembered before anything else: whatever comes now, the printer is put back.
    state.savedDefaultPrinter = std::move(replaced);
    host.appendLog(L"[Printer] Switched. Original default: " + state.savedDefaultPrinter +
                   L" (auto-restored on exit)");
    host.setStatus(L"Temp virtual printer active - auto restored on exit");
}

void RestoreDefaultPrinterAtExit(const PrinterSwitch& state, const Printers& printers) {
    RestoreDefaultPrinter(state.savedDefaultPrinter, printers);
}
