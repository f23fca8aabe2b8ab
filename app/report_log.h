// The report: lines of text that every action writes into, with a selection and a scroll position.
#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

#include "app/geometry.h"
#include "app/text_style.h"

inline constexpr int kMaxLogLines = 2000;

/// Line indexes from `first` to `last`, both included; empty when `last` is below `first`.
struct LineRange {
    int first = 0;
    int last = -1;
    [[nodiscard]] int count() const { return last < first ? 0 : last - first + 1; }
};

struct ReportLog {
    /// Oldest first, at most `kMaxLogLines`.
    std::deque<std::wstring> lines;
    /// Both -1 when nothing is selected; either may be the larger.
    int selectionAnchor = -1;
    int selectionEnd = -1;
    /// Lines by which the view is scrolled back from the newest; never negative.
    int scrollBack = 0;
    /// What of a wheel's turn is not yet a notch.
    int wheelRemainder = 0;
    /// All lines ever added, those that have left included.
    std::uint64_t written = 0;
    /// Where the panel stands; set by the layout, of no width when the panel is not shown.
    RectDip panel;

    [[nodiscard]] int lineCount() const { return static_cast<int>(lines.size()); }
};

/// Adds a line and shows it. Whatever the text holds, it is one line and reads as it was written:
/// control characters become blanks, direction marks are dropped. The oldest line leaves a full
/// log, and the selection moves with its lines.
void appendLine(ReportLog& log, std::wstring text);

void clearLines(ReportLog& log);
void selectAll(ReportLog& log);

/// Selects the line under a height in the panel, or nothing where there is no line.
void selectLineAt(ReportLog& log, float y, const MeasureText& measure);

/// Turns the wheel by `delta` (120 to a notch); upwards shows older lines. What is less than a
/// notch waits for the rest of it, as long as the wheel turns the same way.
void scrollLog(ReportLog& log, int delta);

/// Scrolls by lines, towards older ones when positive, and no further than there is something to
/// see.
void scrollLines(ReportLog& log, int lines, const MeasureText& measure);

/// How many lines a page of the panel moves by: one less than it shows, at least one.
int linesOfAPage(const ReportLog& log, const MeasureText& measure);

/// The newest line that says something; null when none does.
const std::wstring* newestText(const ReportLog& log);

/// True when the panel is shown and holds the point.
bool isInPanel(const ReportLog& log, PointDip point);

/// The selected lines that exist; empty when nothing is selected.
LineRange selectedLines(const ReportLog& log);

/// What a copy takes: the selection, else the whole log.
LineRange linesToCopy(const ReportLog& log);

/// The lines of a range, each with a carriage return and a line feed behind it.
std::wstring joinedLines(const ReportLog& log, LineRange range);

/// What the panel leaves free left and right of its text, and of its height.
inline constexpr float kLogTextInset = 12;
inline constexpr float kLogVerticalMargins = 14;

/// Height of a line that does not wrap.
float smallestLineHeight(const MeasureText& measure);

/// Height of one line as drawn: its layout and a little air, never below the smallest line.
float lineHeight(const ReportLog& log, const std::wstring& line, const MeasureText& measure);

struct VisibleLine {
    int index;
    float y;
    float height;
};

/// The lines that the panel shows, top down; the last may be cut by its lower edge.
std::vector<VisibleLine> visibleLines(const ReportLog& log, const MeasureText& measure);

/// The first line that the panel shows; measures no more lines than fit.
int firstVisibleLine(const ReportLog& log, const MeasureText& measure);

/// The line drawn at a height, -1 where there is none.
int lineAt(const ReportLog& log, float y, const MeasureText& measure);
