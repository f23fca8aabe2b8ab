#include "cdr/dashboard.h"

void OnDashboard(const Shell& shell, const CdrInstance* selected, const MetricsReader& read) {
    if (selected == nullptr) {
        shell.appendLog(L"[Dashboard] Please select a CDR instance first.");
        return;
    }
    const CdrMetrics metrics = read(selected->pid, selected->mainWindow);
    shell.appendLog(metrics.ok ? MetricsLine(metrics)
                               : L"[Dashboard] Cannot read CDR process metrics.");
}
