#include "cdr/dashboard.h"

#include <gtest/gtest.h>

namespace {

std::wstring reportOf(const CdrInstance* selected, const CdrMetrics& metrics) {
    std::wstring report;
    Shell shell;
    shell.appendLog = [&](const std::wstring& line) { report += line + L"\n"; };
    OnDashboard(shell, selected, [&](std::uint32_t pid, WindowHandle mainWindow) {
        EXPECT_EQ(pid, selected->pid);
        EXPECT_EQ(mainWindow, selected->mainWindow);
        return metrics;
    });
    return report;
}

}  // namespace

TEST(Dashboard, SaysWhyThereIsNoReading) {
    const CdrInstance instance;
    EXPECT_EQ(reportOf(nullptr, {}), L"[Dashboard] Please select a CDR instance first.\n");
    EXPECT_EQ(reportOf(&instance, {}), L"[Dashboard] Cannot read CDR process metrics.\n");
}

TEST(Dashboard, ReportsAReadingInOneLine) {
    CdrInstance instance;
    instance.pid = 4711;
    instance.mainWindow = &instance;
    const struct {
        CdrMetrics metrics;
        const wchar_t* report;
    } cases[] = {
        {{8000, 0, 4294967296, true, true},
         L"[Dashboard] GDI handles: 8000 (OK)  Working set: 0 MB  Private: 4294967296 MB  "
         L"Responsive: yes\n"},
        {{8001, 812, 640, false, true},
         L"[Dashboard] GDI handles: 8001 (Warning (near handle limit))  Working set: 812 MB  "
         L"Private: 640 MB  Responsive: NO\n"},
        {{9000, 1, 2, true, true},
         L"[Dashboard] GDI handles: 9000 (Warning (near handle limit))  Working set: 1 MB  "
         L"Private: 2 MB  Responsive: yes\n"},
        {{9001, 1, 2, true, true},
         L"[Dashboard] GDI handles: 9001 (Critical (crash likely))  Working set: 1 MB  Private: 2 "
         L"MB  Responsive: yes\n"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(reportOf(&instance, c.metrics), c.report);
}
