#include "cdr/dashboard.h"

#include <gtest/gtest.h>

#include "tests/fake_host.h"

TEST(Dashboard, ReportsOneLineOrWhyThereIsNone) {
    const CdrInstance instance;
    CdrMetrics metrics;
    FakeHost fake;
    const MetricsReader read = [&](std::uint32_t, WindowHandle) { return metrics; };
    OnDashboard(fake.host(), nullptr, read);
    OnDashboard(fake.host(), &instance, read);
    metrics = {0, 812, 640, false, true};
    OnDashboard(fake.host(), &instance, read);
    EXPECT_EQ(fake.report(),
              L"[Dashboard] Please select a CDR instance first.\n"
              L"[Dashboard] Cannot read CDR process metrics.\n"
              L"[Dashboard] GDI handles: 0 (OK)  Working set: 812 MB  Private: 640 MB  "
              L"Responsive: NO\n");
}

TEST(CdrInstance, ShowsItsRowAndIsSelectedByNumber) {
    CdrInstance instance;
    instance.pid = 4711;
    EXPECT_EQ(InstanceRowText(instance), L"PID 4711    v(unknown)");

    const std::vector<CdrInstance> two(2);
    EXPECT_EQ(SelectedInstance(two, -1), nullptr);
    EXPECT_EQ(SelectedInstance(two, 1), &two[1]);
    EXPECT_EQ(SelectedInstance(two, 2), nullptr);
    EXPECT_EQ(RepairedSelection(3, 0), -1);
    EXPECT_EQ(RepairedSelection(1, 2), 1);
    EXPECT_EQ(RepairedSelection(2, 2), 0);
}
