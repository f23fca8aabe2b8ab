#include "app/report_log.h"

#include <gtest/gtest.h>

#include "base/text.h"

static ReportLog logWith(int lineCount) {
    ReportLog log;
    for (int i = 0; i < lineCount; ++i)
        appendLine(log, decimal(i));
    return log;
}

TEST(ReportLog, WhatComesFromOutsideStaysInItsLine) {
    ReportLog log;
    appendLine(log, L"Stuck\r\n===== Diagnosis =====\x0B\x1B[\x7F\x85\u2028[OK]\u2029\t.");
    appendLine(log, L"\u202Egpc.\u202C \u2066a\u2069\u200E\u200F\u061C \u00A0\u4E2D\u00E9");
    EXPECT_EQ(log.lines[0], L"Stuck  ===== Diagnosis =====  [   [OK]  .");
    EXPECT_EQ(log.lines[1], L"gpc. a \u00A0\u4E2D\u00E9");
    EXPECT_EQ(joinedLines(log, {0, 0}).find(L'\n'), log.lines[0].size() + 1);
}

TEST(ReportLog, MovesTheSelectionWithItsLinesWhenTheOldestLeaves) {
    const int cases[][4] = {
        {0, 5, 0, 4}, {0, 0, -1, -1}, {7, 3, 6, 2}, {5, 0, -1, -1}, {-1, -1, -1, -1}};
    const ReportLog full = logWith(kMaxLogLines);
    for (const auto& [anchor, end, anchorAfter, endAfter] : cases) {
        ReportLog log = full;
        log.selectionAnchor = anchor;
        log.selectionEnd = end;
        appendLine(log, L"one more");
        EXPECT_TRUE(log.lineCount() == kMaxLogLines && log.lines.front() == L"1");
        EXPECT_TRUE(log.selectionAnchor == anchorAfter && log.selectionEnd == endAfter)
            << anchor << ".." << end;
    }
}

TEST(ReportLog, TurnsAnyWheelIntoNotchesAndNeverBelowTheNewest) {
    ReportLog log = logWith(5);
    const std::pair<int, int> turns[] = {{120, 1}, {119, 1}, {1, 2},    {-240, 0}, {360, 3},
                                         {40, 3},  {80, 4},  {-120, 3}, {-60, 3},  {-60, 2}};
    for (const auto& [delta, scrollBackAfter] : turns) {
        scrollLog(log, delta);
        EXPECT_EQ(log.scrollBack, scrollBackAfter) << delta;
    }
    appendLine(log, L"news");
    EXPECT_EQ(log.scrollBack, 0);
}
