// The temporary virtual printer: a default printer that is put back when the program ends.
#pragma once

#include <string>

#include "base/action_host.h"
#include "fixes/health/printer.h"

/// The switch in force. In memory only: after a crash the virtual printer stays the default.
struct PrinterSwitch {
    /// The default printer that was replaced; empty when no switch is in force.
    std::wstring savedDefaultPrinter;
};

/// Makes "Microsoft Print to PDF" the default printer. Returns the name of the printer that it
/// replaced; empty when nothing was switched, because there is no default printer, because it is a
/// virtual one already, or because the system refused.
std::wstring SwitchToVirtualPrinter(const Printers& printers);

/// Makes `name` the default printer again. False when it is empty or the system refused.
bool RestoreDefaultPrinter(const std::wstring& name, const Printers& printers);

/// The Temp Printer button: asks and switches, or restores without asking when a switch is in
/// force. A refused restore is silent and keeps the name, so that the next press and the exit try
/// again.
void OnTempPrinter(const ActionHost& host, PrinterSwitch& state, const Printers& printers);

/// To be called when the main window is destroyed. Best effort, without a word.
void RestoreDefaultPrinterAtExit(const PrinterSwitch& state, const Printers& printers);
