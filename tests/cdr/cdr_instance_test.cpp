#include "cdr/cdr_instance.h"

#include <gtest/gtest.h>

TEST(CdrInstance, ShowsItsRow) {
    CdrInstance instance;
    instance.pid = 4711;
    EXPECT_EQ(InstanceRowText(instance), L"PID 4711    v(unknown)");
    instance.version = L"25.0.0.230";
    EXPECT_EQ(InstanceRowText(instance), L"PID 4711    v25.0.0.230");
    instance.pid = 0xFFFFFFFF;
    EXPECT_EQ(InstanceRowText(instance), L"PID 4294967295    v25.0.0.230");
}

TEST(CdrInstance, SelectionNamesAnEntryOrNone) {
    const std::vector<CdrInstance> two(2);
    EXPECT_EQ(SelectedInstance(two, -1), nullptr);
    EXPECT_EQ(SelectedInstance(two, 1), &two[1]);
    EXPECT_EQ(SelectedInstance(two, 2), nullptr);

    EXPECT_EQ(RepairedSelection(3, 0), -1);
    EXPECT_EQ(RepairedSelection(-1, 2), 0);
    EXPECT_EQ(RepairedSelection(1, 2), 1);
    EXPECT_EQ(RepairedSelection(2, 2), 0);
}
