// The sensor of the dashboard.
#pragma once

#include "base/action_host.h"
#include "cdr/metrics.h"

/// Reads a running process and probes its main window, for which a hung one costs 1.5 s. Only a
/// process that cannot be opened is a failure; a null window is not probed.
CdrMetrics ReadMetrics(std::uint32_t pid, WindowHandle mainWindow);
