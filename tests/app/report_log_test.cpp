#include "app/report_log.h"

#include <gtest/gtest.h>

#include <climits>

#include "app/palette.h"
#include "base/text.h"

namespace {

// A line of n letters is n high before the air that the log adds.
TextSize heightIsLength(const std::wstring& text, TextStyle, float) {
    return {0, static_cast<float>(text.size())};
}

ReportLog logWith(int lineCount) {
    ReportLog log;
    for (int i = 0; i < lineCount; ++i)
        appendLine(log, decimal(i));
    return log;
}

// A panel that shows exactly `lineCount` of the smallest lines.
RectDip panelFor(int lineCount) {
    return {20, 100, 400, static_cast<float>(lineCount) * 17 + 14};
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
    } cases[] = {
        {0, 5, 0, 4}, {0, 0, -1, -1}, {7, 3, 6, 2}, {5, 0, -1, -1}, {-1, -1, -1, -1},
    };
    for (const auto& c : cases) {
        ReportLog log = logWith(kMaxLogLines);
        log.selectionAnchor = c.anchor;
        log.selectionEnd = c.end;
        appendLine(log, L"one more");
        EXPECT_EQ(log.lineCount(), kMaxLogLines);
        EXPECT_EQ(log.lines.front(), L"1");
        EXPECT_EQ(log.lines.back(), L"one more");
        EXPECT_EQ(log.selectionAnchor, c.anchorAfter) << c.anchor << ".." << c.end;
        EXPECT_EQ(log.selectionEnd, c.endAfter) << c.anchor << ".." << c.end;
    }
    ReportLog log = logWith(3);
    log.selectionAnchor = log.selectionEnd = 1;
    appendLine(log, L"no line leaves");
    EXPECT_EQ(log.selectionAnchor, 1);
}

TEST(ReportLog, ScrollsByWholeNotchesAndNeverBelowTheNewest) {
    ReportLog log = logWith(5);
    const struct {
        int delta, scrollBackAfter;
    } turns[] = {{120, 1}, {119, 1}, {-240, 0}, {360, 3}, {-119, 3}};
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
    } cases[] = {
        {0, 5, 0, 0},   {1, 5, 0, 0},   {5, 5, 0, 0},   {6, 5, 0, 0},        {7, 5, 0, 2},
        {20, 5, 0, 15}, {20, 5, 4, 11}, {20, 5, 99, 0}, {20, 5, INT_MAX, 0}, {20, 0, 0, 19},
    };
    for (const auto& c : cases) {
        ReportLog log = logWith(c.lines);
        log.panel = panelFor(c.fitting);
        log.scrollBack = c.scrollBack;
        EXPECT_EQ(firstVisibleLine(log, heightIsLength), c.first)
            << c.lines << " lines, room for " << c.fitting << ", back " << c.scrollBack;
    }
}

TEST(ReportLog, MeasuresOnlyWhatItShowsAndNeverTheFirstLine) {
    ReportLog log = logWith(kMaxLogLines);
    log.panel = panelFor(6);
    int measured = 0;
    const MeasureText count = [&](const std::wstring& text, TextStyle, float) -> TextSize {
        ++measured;
        EXPECT_NE(text, L"0");
        return {};
    };
    firstVisibleLine(log, count);
    EXPECT_EQ(measured, 7);
    log.lines.resize(2);
    firstVisibleLine(log, count);
    EXPECT_EQ(measured, 8);
}

TEST(ReportLog, GivesLinesTheHeightOfTheirText) {
    ReportLog log;
    log.panel = {0, 0, 324, 100};
    const MeasureText measure = [](const std::wstring& text, TextStyle, float width) {
        EXPECT_EQ(width, 300);
        return heightIsLength(text, TextStyle::log, width);
    };
    for (const auto& [length, height] :
         {std::pair{0U, 17.0F}, {1U, 17.0F}, {14U, 17.0F}, {30U, 33.0F}})
        EXPECT_EQ(lineHeight(log, std::wstring(length, L'x'), measure), height);
}

TEST(ReportLog, FindsTheLineUnderAPoint) {
    ReportLog log = logWith(3);
    log.lines[1] = std::wstring(30, L'x');
    log.panel = {20, 100, 400, 300};
    const struct {
        float y;
        int line;
    } cases[] = {
        {99, -1},    {100, 0}, {108, 0}, {124.9F, 0}, {125, 1},
        {157.9F, 1}, {158, 2}, {174, 2}, {175, -1},   {401, -1},
    };
    for (const auto& c : cases)
        EXPECT_EQ(lineAt(log, c.y, heightIsLength), c.line) << c.y;

    log.panel.width = 9;
    EXPECT_EQ(lineAt(log, 110, heightIsLength), -1);
}

TEST(ReportLog, CopiesTheSelectionOrEverything) {
    ReportLog log;
    selectAll(log);
    EXPECT_EQ(linesToCopy(log).count(), 0);
    appendLine(log, L"a");
    EXPECT_EQ(joinedLines(log, linesToCopy(log)), L"a\r\n");
    log = logWith(4);
    EXPECT_EQ(joinedLines(log, linesToCopy(log)), L"0\r\n1\r\n2\r\n3\r\n");
    log.selectionAnchor = 2;
    log.selectionEnd = 1;
    EXPECT_EQ(joinedLines(log, linesToCopy(log)), L"1\r\n2\r\n");
}

TEST(ReportLog, ColoursLinesByTheFirstTagThatFits) {
    const struct {
        Colour colour;
        std::vector<const wchar_t*> lines;
    } cases[] = {
        {Colour::success, {L"===== [OK] [WARN] failed", L"  [OK]"}},
        {Colour::warning, {L"[WARNING] failed", L"Worth attention [HIGH RISK]"}},
        {Colour::failure, {L"[HIGH RISK] =====", L"[RED]", L"[Slim] x failed: y", L"Failed"}},
        {Colour::mainText, {L"x====="}},
        {Colour::logText, {L"FAILED [ok] [warn] ====", L""}},
    };
    for (const auto& [colour, lines] : cases) {
        for (const wchar_t* line : lines)
            EXPECT_EQ(logLineColour(line), colour) << utf8FromWide(line);
    }
}
