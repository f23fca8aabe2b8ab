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

TEST(ReportLog, KeepsTheNewestLines) {
    ReportLog log = logWith(kMaxLogLines + 3);
    EXPECT_EQ(log.lineCount(), kMaxLogLines);
    EXPECT_EQ(log.lines.front(), L"3");
    EXPECT_EQ(log.lines.back(), decimal(kMaxLogLines + 2));
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
    } turns[] = {{120, 1}, {119, 1}, {-240, 0}, {360, 3}, {-119, 3}, {INT_MAX, 3 + INT_MAX / 120}};
    for (const auto& turn : turns) {
        scrollLog(log, turn.delta);
        EXPECT_EQ(log.scrollBack, turn.scrollBackAfter) << turn.delta;
    }
    log.scrollBack = INT_MAX;
    scrollLog(log, 120);
    EXPECT_EQ(log.scrollBack, INT_MAX);
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
    log = logWith(2);
    log.panel = panelFor(6);
    firstVisibleLine(log, count);
}

TEST(ReportLog, GivesLinesTheHeightOfTheirText) {
    ReportLog log;
    log.panel = {0, 0, 324, 100};
    EXPECT_EQ(lineHeight(log, L"", heightIsLength), 17);
    EXPECT_EQ(lineHeight(log, L"short", heightIsLength), 17);
    EXPECT_EQ(lineHeight(log, std::wstring(30, L'x'), heightIsLength), 33);
    const MeasureText failing = [](const std::wstring&, TextStyle, float width) -> TextSize {
        EXPECT_EQ(width, 300);
        return {};
    };
    EXPECT_EQ(lineHeight(log, L"x", failing), 17);
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

    selectLineAt(log, 130, heightIsLength);
    EXPECT_EQ(joinedLines(log, selectedLines(log)), std::wstring(30, L'x') + L"\r\n");
    selectLineAt(log, 300, heightIsLength);
    EXPECT_EQ(log.selectionAnchor, -1);
    log.panel.width = 9;
    EXPECT_EQ(lineAt(log, 110, heightIsLength), -1);
}

TEST(ReportLog, CopiesTheSelectionOrEverything) {
    ReportLog log = logWith(4);
    EXPECT_EQ(joinedLines(log, linesToCopy(log)), L"0\r\n1\r\n2\r\n3\r\n");
    log.selectionAnchor = 2;
    log.selectionEnd = 1;
    EXPECT_EQ(joinedLines(log, linesToCopy(log)), L"1\r\n2\r\n");

    ReportLog empty;
    EXPECT_EQ(linesToCopy(empty).count(), 0);
    selectAllLines(empty);
    EXPECT_EQ(linesToCopy(empty).count(), 0);
    appendLine(empty, L"after select all");
    EXPECT_EQ(joinedLines(empty, linesToCopy(empty)), L"after select all\r\n");
}

TEST(ReportLog, ColoursLinesByTheFirstTagThatFits) {
    const struct {
        const wchar_t* line;
        Colour colour;
    } cases[] = {
        {L"  [OK] plan.cdr failed", Colour::success},
        {L"[WARN] Installed fonts: 900 fonts", Colour::warning},
        {L"[WARNING] failed", Colour::warning},
        {L"Worth attention", Colour::warning},
        {L"[HIGH RISK] Default printer", Colour::failure},
        {L"[RED]", Colour::failure},
        {L"[Slim] a.cdr failed: x", Colour::failure},
        {L"[Capture] Failed: x", Colour::failure},
        {L"FAILED", Colour::logText},
        {L"===== Diagnosis =====", Colour::mainText},
        {L"===== [OK]", Colour::success},
        {L"[ok] ====", Colour::logText},
        {L"", Colour::logText},
    };
    for (const auto& c : cases)
        EXPECT_EQ(logLineColour(c.line), c.colour) << utf8FromWide(c.line);
}
