#include "cdr/dashboard.h"

void OnDashboard(const ActionHost& host, const CdrInstance* selected, const MetricsReader& read) {
    if (selected == nullptr) {
        host.appendLog(L"[Dashboard] Please select a CDR instance first.");
        return;
    }
    const CdrMetrics metrics = read(selected->pid, selected->mainWindow);
    host.appendLog(metrics.ok ? MetricsLine(metrics)
                              : L"[Dashboard] Cannot read CDR process metrics.");
}
