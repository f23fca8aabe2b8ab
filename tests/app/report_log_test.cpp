#include "app/report_log.h"

#include <gtest/gtest.h>

#include <climits>

#include "base/text.h"

namespace {

// A line of n letters is n high before the air that the log adds.
TextSize heightIsLength(const std::wstring& text, TextStyle, float) {
    return {0, static_cast<float>(text.size())};
}

// Short lines in a panel that shows exactly `fitting` of them.
ReportLog logWith(int lineCount, int fitting = 5) {
    ReportLog log;
    for (int i = 0; i < lineCount; ++i)
        appendLine(log, decimal(i));
    log.panel = {20, 100, 324, static_cast<float>(fitting) * 17 + 14};
    return log;
}

}  // namespace

TEST(ReportLog, WhatComesFromOutsideStaysInItsLine) {
    ReportLog log;
    appendLine(log, L"Stuck\r\n===== Diagnosis =====\x0B\x1B[\x7F\x85\u2028[OK]\u2029\t.");
    appendLine(log, L"\u202Egpc.\u202C \u2066a\u2069\u200E\u200F\u061C \u00A0\u4E2D\u00E9");
    EXPECT_EQ(log.lines[0], L"Stuck  ===== Diagnosis =====  [   [OK]  .");
    EXPECT_EQ(log.lines[1], L"gpc. a \u00A0\u4E2D\u00E9");
    EXPECT_EQ(joinedLines(log, {0, 0}).find(L'\n'), log.lines[0].size() + 1);
}

TEST(ReportLog, MovesTheSelectionWithItsLinesWhenTheOldestLeaves) {
    const struct {
        int anchor, end, anchorAfter, endAfter;
    } cases[] = {{0, 5, 0, 4}, {0, 0, -1, -1}, {7, 3, 6, 2}, {5, 0, -1, -1}, {-1, -1, -1, -1}};
    const ReportLog full = logWith(kMaxLogLines);
    for (const auto& c : cases) {
        ReportLog log = full;
        log.selectionAnchor = c.anchor;
        log.selectionEnd = c.end;
        appendLine(log, L"one more");
        EXPECT_TRUE(log.lineCount() == kMaxLogLines && log.lines.front() == L"1");
        EXPECT_TRUE(log.selectionAnchor == c.anchorAfter && log.selectionEnd == c.endAfter)
            << c.anchor << ".." << c.end;
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

TEST(ReportLog, ShowsWhatFitsAndCountsBackFromThere) {
    const struct {
        int lines, fitting, scrollBack, first;
    } cases[] = {{0, 5, 0, 0},   {6, 5, 0, 0},        {7, 5, 0, 2},  {20, 5, 0, 15},
                 {20, 5, 4, 11}, {20, 5, INT_MAX, 0}, {20, 0, 0, 19}};
    for (const auto& c : cases) {
        ReportLog log = logWith(c.lines, c.fitting);
        log.scrollBack = c.scrollBack;
        EXPECT_EQ(firstVisibleLine(log, heightIsLength), c.first)
            << c.lines << " lines, room for " << c.fitting << ", back " << c.scrollBack;
    }
    // A full log costs no more than what it shows.
    int measured = 0;
    firstVisibleLine(logWith(kMaxLogLines, 6),
                     [&](const std::wstring&, TextStyle, float) { return ++measured, TextSize{}; });
    EXPECT_EQ(measured, 7);
}

TEST(ReportLog, FindsTheLineUnderAPoint) {
    ReportLog log = logWith(3, 17);
    log.lines[1] = std::wstring(30, L'x');
    const std::pair<float, int> cases[] = {{99, -1},    {100, 0}, {124.9F, 0}, {125, 1},
                                           {157.9F, 1}, {158, 2}, {175, -1}};
    for (const auto& [y, line] : cases)
        EXPECT_EQ(lineAt(log, y, heightIsLength), line) << y;
}
