#include "cdr/dashboard.h"

#include <gtest/gtest.h>

#include "tests/fake_host.h"

TEST(Dashboard, SaysWhyItHasNoFigures) {
    const CdrInstance instance;
    FakeHost fake;
    const MetricsReader read = [](std::uint32_t, WindowHandle) { return CdrMetrics(); };
    OnDashboard(fake.host(), nullptr, read);
    OnDashboard(fake.host(), &instance, read);
    EXPECT_EQ(fake.report(),
              L"[Dashboard] Please select a CDR instance first.\n"
              L"[Dashboard] Cannot read CDR process metrics.\n");
}

TEST(CdrInstance, ShowsItsRowAndIsSelectedByNumber) {
    CdrInstance instance;
    instance.pid = 4711;
    EXPECT_EQ(InstanceRowText(instance), L"PID 4711    v(unknown)");
    EXPECT_EQ(SelectedInstance({instance}, 1), nullptr);
    EXPECT_EQ(RepairedSelection(3, 0), -1);
    EXPECT_EQ(RepairedSelection(1, 2), 1);
    EXPECT_EQ(RepairedSelection(2, 2), 0);
}
