#include "app/report_log.h"

#include <algorithm>
#include <limits>

namespace {

constexpr float kSmallestLine = 17;
constexpr float kLineAir = 3;
constexpr float kFirstLineOffset = 8;
constexpr float kNarrowestPanel = 10;
constexpr int kWheelNotch = 120;

// Control characters (C0, DEL, C1) and Unicode's own line and paragraph separators.
bool breaksLines(wchar_t c) {
    return c < 0x20 || (c >= 0x7F && c <= 0x9F) || c == 0x2028 || c == 0x2029;
}

// The marks, embeddings, overrides and isolates of the bidirectional algorithm (UAX #9).
bool turnsDirection(wchar_t c) {
    return c == 0x061C || c == 0x200E || c == 0x200F || (c >= 0x202A && c <= 0x202E) ||
           (c >= 0x2066 && c <= 0x2069);
}

void selectLines(ReportLog& log, int anchor, int end) {
    log.selectionAnchor = anchor;
    log.selectionEnd = end;
}

void shiftSelectionUp(ReportLog& log) {
    if (log.selectionAnchor < 0) return;
    --log.selectionAnchor;
    --log.selectionEnd;
    if (log.selectionEnd < 0) {
        selectLines(log, -1, -1);
    } else {
        log.selectionAnchor = std::max(log.selectionAnchor, 0);
    }
}

}  // namespace

void appendLine(ReportLog& log, std::wstring text) {
    std::erase_if(text, turnsDirection);
    std::ranges::replace_if(text, breaksLines, L' ');
    log.lines.push_back(std::move(text));
    ++log.written;
    if (log.lineCount() > kMaxLogLines) {
        log.lines.pop_front();
        shiftSelectionUp(log);
    }
    log.scrollBack = 0;
}

void clearLines(ReportLog& log) {
    log.lines.clear();
    selectLines(log, -1, -1);
    log.scrollBack = 0;
}

void selectAll(ReportLog& log) {
    selectLines(log, 0, log.lineCount() - 1);
}

void selectLineAt(ReportLog& log, float y, const MeasureText& measure) {
    const int line = lineAt(log, y, measure);
    selectLines(log, line, line);
}

void scrollLog(ReportLog& log, int delta) {
    const bool turnsBack = (delta > 0) != (log.wheelRemainder > 0);
    const int turned = delta + (turnsBack ? 0 : log.wheelRemainder);
    log.wheelRemainder = turned % kWheelNotch;
    const auto wanted = static_cast<long long>(log.scrollBack) + turned / kWheelNotch;
    log.scrollBack =
        static_cast<int>(std::clamp<long long>(wanted, 0, std::numeric_limits<int>::max()));
}

void scrollLines(ReportLog& log, int lines, const MeasureText& measure) {
    const int back = log.scrollBack;
    log.scrollBack = 0;
    const int furthest = firstVisibleLine(log, measure);
    log.scrollBack = std::clamp(std::min(back, furthest) + lines, 0, std::max(furthest, 0));
}

int linesOfAPage(const ReportLog& log, const MeasureText& measure) {
    const auto lines = visibleLines(log, measure);
    const auto whole = std::count_if(lines.begin(), lines.end(), [&](const VisibleLine& line) {
        return line.y + line.height <= log.panel.bottom();
    });
    return std::max(static_cast<int>(whole) - 1, 1);
}

const std::wstring* newestText(const ReportLog& log) {
    const auto newest = std::find_if(log.lines.rbegin(), log.lines.rend(),
                                     [](const std::wstring& line) { return !line.empty(); });
    return newest != log.lines.rend() ? &*newest : nullptr;
}

bool isInPanel(const ReportLog& log, PointDip point) {
    return log.panel.width > kNarrowestPanel && log.panel.contains(point);
}

LineRange selectedLines(const ReportLog& log) {
    if (log.selectionAnchor < 0) return {};
    const auto [first, last] = std::minmax(log.selectionAnchor, log.selectionEnd);
    return {std::max(first, 0), std::min(last, log.lineCount() - 1)};
}

LineRange linesToCopy(const ReportLog& log) {
    if (log.selectionAnchor >= 0) return selectedLines(log);
    return {0, log.lineCount() - 1};
}

std::wstring joinedLines(const ReportLog& log, LineRange range) {
    std::wstring text;
    for (int i = range.first; i <= range.last; ++i) {
        text += log.lines[static_cast<std::size_t>(i)];
        text += L"\r\n";
    }
    return text;
}

float smallestLineHeight(const MeasureText& measure) {
    constexpr float kUnbounded = 1000;
    return std::max(kSmallestLine, measure(L"0", TextStyle::log, kUnbounded).heightDip + kLineAir);
}

float lineHeight(const ReportLog& log, const std::wstring& line, const MeasureText& measure) {
    if (line.empty()) return kSmallestLine;
    const float width = log.panel.width - 2 * kLogTextInset;
    return std::max(kSmallestLine, measure(line, TextStyle::log, width).heightDip + kLineAir);
}

int firstVisibleLine(const ReportLog& log, const MeasureText& measure) {
    const int newest = log.lineCount() - 1;
    int first = newest;
    float used = 0;
    // Line 0 costs no measurement: whoever gets that far up shows it.
    for (int i = newest; i >= 1; --i) {
        used += lineHeight(log, log.lines[static_cast<std::size_t>(i)], measure);
        if (used > log.panel.height - kLogVerticalMargins) break;
        first = i == 1 ? 0 : i;
    }
    return std::max(first - std::min(log.scrollBack, std::max(first, 0)), 0);
}

std::vector<VisibleLine> visibleLines(const ReportLog& log, const MeasureText& measure) {
    std::vector<VisibleLine> visible;
    float y = log.panel.y + kFirstLineOffset;
    for (int i = firstVisibleLine(log, measure); i < log.lineCount(); ++i) {
        if (y > log.panel.bottom()) break;
        visible.push_back({i, y, lineHeight(log, log.lines[static_cast<std::size_t>(i)], measure)});
        y += visible.back().height;
    }
    return visible;
}

int lineAt(const ReportLog& log, float y, const MeasureText& measure) {
    if (log.panel.width < kNarrowestPanel) return -1;
    if (y < log.panel.y || y > log.panel.bottom()) return -1;
    for (const VisibleLine& line : visibleLines(log, measure)) {
        if (line.y + line.height > y) return line.index;
    }
    return -1;
}
