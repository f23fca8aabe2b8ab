// The print spooler.
#pragma once

#include "fixes/health/printer.h"

/// Reads and judges the default printer; the empty record when there is none. A printer that the
/// spooler does not enumerate is judged by its name alone.
DefaultPrinterInfo QueryDefaultPrinter();

/// The spooler's own default printer, to query and to set.
Printers SystemPrinters();
