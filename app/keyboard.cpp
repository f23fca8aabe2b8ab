#include "app/keyboard.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <tuple>

namespace {

using Targets = std::vector<HitTarget>;

// Left to right and line by line; of one kind or of all that can be clicked.
Targets inReadingOrder(const Targets& all, std::optional<HitKind> kind = std::nullopt) {
    Targets targets;
    std::copy_if(all.begin(), all.end(), std::back_inserter(targets), [&](const HitTarget& target) {
        return target.isClickable() && target.kind == kind.value_or(target.kind);
    });
    std::stable_sort(targets.begin(), targets.end(), [](const HitTarget& a, const HitTarget& b) {
        return std::tie(a.y, a.x) < std::tie(b.y, b.x);
    });
    return targets;
}

int indexOf(const Targets& targets, std::optional<ElementId> element) {
    const auto found = std::find_if(targets.begin(), targets.end(), [&](const HitTarget& target) {
        return target.identity() == element;
    });
    return found != targets.end() ? static_cast<int>(found - targets.begin()) : -1;
}

// Round and round. A focus whose element has gone starts anew.
void walk(WindowState& state, bool forward) {
    const Targets stops = inReadingOrder(state.hitTargets);
    const bool hasReport = state.log.panel.width > 0;
    const int count = static_cast<int>(stops.size()) + (hasReport ? 1 : 0);
    if (count == 0) return;
    const bool atReport = hasReport && state.focus == kReportId;
    const int now = atReport ? count - 1 : indexOf(stops, state.focus);
    const int before = now < 0 ? (forward ? count - 1 : 0) : now;
    const auto next = static_cast<std::size_t>((before + (forward ? 1 : count - 1)) % count);
    state.focus = next < stops.size() ? stops[next].identity() : kReportId;
}

// The next of the group straight above or below; the same one where there is none.
int nextInColumn(const Targets& group, int from, bool downwards) {
    const HitTarget& start = group[static_cast<std::size_t>(from)];
    const int step = downwards ? 1 : -1;
    for (int i = from + step; i >= 0 && i < static_cast<int>(group.size()); i += step) {
        const HitTarget& other = group[static_cast<std::size_t>(i)];
        if (std::abs(other.x - start.x) < 1 && other.y != start.y) return i;
    }
    return from;
}

bool moveInGroup(WindowState& state, Key key) {
    const HitKind kind = state.focus->kind;
    const bool isGroup =
        kind == HitKind::tab || kind == HitKind::instanceRow || kind == HitKind::languageChoice;
    if (!isGroup) return false;
    const Targets group = inReadingOrder(state.hitTargets, kind);
    const int now = indexOf(group, state.focus);
    if (now < 0) return false;
    const int last = static_cast<int>(group.size()) - 1;
    int next = now;
    if (key == Key::left) next = std::max(now - 1, 0);
    if (key == Key::right) next = std::min(now + 1, last);
    if (key == Key::up || key == Key::down) next = nextInColumn(group, now, key == Key::down);
    if (key == Key::home) next = 0;
    if (key == Key::end) next = last;
    state.focus = group[static_cast<std::size_t>(next)].identity();
    return true;
}

bool scroll(ReportLog& log, Key key, const MeasureText& measure) {
    int lines = 0;
    if (key == Key::up) lines = 1;
    if (key == Key::down) lines = -1;
    if (key == Key::pageUp) lines = linesOfAPage(log, measure);
    if (key == Key::pageDown) lines = -linesOfAPage(log, measure);
    if (key == Key::home) lines = kMaxLogLines;
    if (key == Key::end) lines = -kMaxLogLines;
    if (lines == 0) return false;
    scrollLines(log, lines, measure);
    return true;
}

}  // namespace

bool dispatchKey(WindowState& state, Key key, const MeasureText& measure,
                 const ClickEffects& effects) {
    if (key == Key::next || key == Key::previous) {
        walk(state, key == Key::next);
        state.focusShown = true;
        return true;
    }
    if (!state.focus) return false;
    if (key == Key::act) {
        if (indexOf(inReadingOrder(state.hitTargets), state.focus) < 0) return false;
        actOn(state, *state.focus, effects);
        return true;
    }
    const bool handled =
        *state.focus == kReportId ? scroll(state.log, key, measure) : moveInGroup(state, key);
    state.focusShown = state.focusShown || handled;
    return handled;
}
