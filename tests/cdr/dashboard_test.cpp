#include "cdr/dashboard.h"

#include <gtest/gtest.h>

namespace {

std::wstring reportOf(const CdrInstance* selected, const CdrMetrics& metrics) {
    std::wstring report;
    ActionHost host;
    host.appendLog = [&](const std::wstring& line) { report += line + L"\n"; };
    OnDashboard(host, selected, [&](std::uint32_t pid, WindowHandle mainWindow) {
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
        std::uint32_t gdiHandles;
        const wchar_t* level;
    } cases[] = {{8000, L"8000 (OK)"},
                 {8001, L"8001 (Warning (near handle limit))"},
                 {9000, L"9000 (Warning (near handle limit))"},
                 {9001, L"9001 (Critical (crash likely))"}};
    for (const auto& c : cases)
        EXPECT_EQ(reportOf(&instance, {c.gdiHandles, 0, 4294967296, true, true}),
                  L"[Dashboard] GDI handles: " + std::wstring(c.level) +
                      L"  Working set: 0 MB  Private: 4294967296 MB  Responsive: yes\n");
    EXPECT_EQ(reportOf(&instance, {0, 812, 640, false, true}),
              L"[Dashboard] GDI handles: 0 (OK)  Working set: 812 MB  Private: 640 MB  "
              L"Responsive: NO\n");
}

TEST(CdrInstance, ShowsItsRowAndIsSelectedByNumber) {
    CdrInstance instance;
    instance.pid = 4711;
    EXPECT_EQ(InstanceRowText(instance), L"PID 4711    v(unknown)");
    instance.version = L"25.0.0.230";
    instance.pid = 0xFFFFFFFF;
    EXPECT_EQ(InstanceRowText(instance), L"PID 4294967295    v25.0.0.230");

    const std::vector<CdrInstance> two(2);
    EXPECT_EQ(SelectedInstance(two, -1), nullptr);
    EXPECT_EQ(SelectedInstance(two, 1), &two[1]);
    EXPECT_EQ(SelectedInstance(two, 2), nullptr);
    EXPECT_EQ(RepairedSelection(3, 0), -1);
    EXPECT_EQ(RepairedSelection(-1, 2), 0);
    EXPECT_EQ(RepairedSelection(1, 2), 1);
    EXPECT_EQ(RepairedSelection(2, 2), 0);
}
