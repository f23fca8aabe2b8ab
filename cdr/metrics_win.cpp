#include "cdr/metrics_win.h"

#include <windows.h>

#include <psapi.h>

#include "base/handle_win.h"
#include "base/process_win.h"
#include "cdr/responsiveness_win.h"

namespace {

constexpr unsigned kProbeTimeoutMs = 1500;

void ReadMemory(HANDLE process, CdrMetrics& metrics) {
    PROCESS_MEMORY_COUNTERS_EX counters{};
    counters.cb = sizeof counters;
    if (!K32GetProcessMemoryInfo(process, reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&counters),
                                 sizeof counters)) {
        return;
    }
    metrics.workingSetMB = counters.WorkingSetSize >> 20;
    metrics.privateMB = counters.PrivateUsage >> 20;
}

}  // namespace

CdrMetrics ReadMetrics(std::uint32_t pid, WindowHandle mainWindow) {
    CdrMetrics metrics;
    const KernelHandle process(
        OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION | PROCESS_VM_READ, FALSE, pid));
    if (!process || hasExited(process.get())) return metrics;

    metrics.ok = true;
    metrics.gdiHandles = GetGuiResources(process.get(), GR_GDIOBJECTS);
    ReadMemory(process.get(), metrics);
    if (mainWindow != nullptr) metrics.responsive = IsWindowResponsive(mainWindow, kProbeTimeoutMs);
    return metrics;
}
