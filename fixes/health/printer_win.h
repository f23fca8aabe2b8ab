// The print spooler.
#pragma once

#include "fixes/health/printer.h"

/// What the user waits for one answer of the spooler: the longest action asks three times, and a
/// window is called hung after five seconds.
inline constexpr unsigned kSpoolerLimitMs = 1600;
/// At the end nobody is kept from working, and the printer is worth waiting for.
inline constexpr unsigned kSpoolerLimitAtExitMs = 4000;

/// Reads and judges the default printer; the empty record when there is none, and when the spooler
/// does not say. A printer that the spooler does not enumerate is judged by its name alone.
DefaultPrinterInfo QueryDefaultPrinter();

/// The spooler's own default printer, to query and to set.
Printers SystemPrinters(unsigned limitMs = kSpoolerLimitMs);
