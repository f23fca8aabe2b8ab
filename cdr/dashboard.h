// The Dashboard button.
#pragma once

#include <functional>

#include "base/action_host.h"
#include "cdr/cdr_instance.h"
#include "cdr/metrics.h"

/// Takes one reading; `ReadMetrics` in the program.
using MetricsReader = std::function<CdrMetrics(std::uint32_t pid, WindowHandle mainWindow)>;

/// Reports the health of the selected instance, null for none, in one line.
void OnDashboard(const ActionHost& host, const CdrInstance* selected, const MetricsReader& read);
