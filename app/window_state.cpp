#include "app/window_state.h"

#include <algorithm>

#include "base/text.h"

void actOn(WindowState& state, ElementId element, const ClickEffects& effects) {
    switch (element.kind) {
        case HitKind::tab: {
            const std::uint32_t index = element.id - kFirstTabId;
            if (index < kTabCount) state.currentTab = static_cast<std::int32_t>(index);
            return;
        }
        case HitKind::instanceRow:
            effects.selectInstance(static_cast<std::int32_t>(element.id - kFirstInstanceId));
            return;
        case HitKind::languageChoice:
            effects.chooseLanguage(static_cast<std::int32_t>(element.id - kFirstLanguageId));
            return;
        default:
            effects.runAction(element.id);
    }
}

bool dispatchClick(WindowState& state, PointDip point, const MeasureText& measure,
                   const ClickEffects& effects) {
    const int index = hitTest(state.hitTargets, point);
    state.focusShown = false;
    if (index >= 0) {
        state.focus = state.hitTargets[static_cast<std::size_t>(index)].identity();
        actOn(state, *state.focus, effects);
        return true;
    }
    if (!isInPanel(state.log, point)) return false;
    state.focus = kReportId;
    selectLineAt(state.log, point.y, measure);
    return true;
}

void takeLayout(WindowState& state, const Layout& layout) {
    if (state.hoverTarget >= 0) {
        const HitTarget& old = state.hitTargets[static_cast<std::size_t>(state.hoverTarget)];
        const auto same =
            std::find_if(layout.hitTargets.begin(), layout.hitTargets.end(),
                         [&](const HitTarget& t) { return t.kind == old.kind && t.id == old.id; });
        const bool gone = same == layout.hitTargets.end();
        state.hoverTarget = gone ? -1 : static_cast<std::int32_t>(same - layout.hitTargets.begin());
    }
    state.currentTab = layout.currentTab;
    state.hitTargets = layout.hitTargets;
    state.log.panel = layout.logPanel;
}

bool moveHover(WindowState& state, PointDip point) {
    const int target = hitTest(state.hitTargets, point);
    if (target == state.hoverTarget) return false;
    state.hoverTarget = target;
    return true;
}

void copyReport(WindowState& state, const std::function<void(const std::wstring&)>& toClipboard) {
    const LineRange range = linesToCopy(state.log);
    if (range.count() == 0) {
        state.statusText = L"No report to copy";
        return;
    }
    toClipboard(joinedLines(state.log, range));
    state.statusText = L"Report copied (" + decimal(range.count()) + L" lines)";
}

void clearReport(WindowState& state) {
    clearLines(state.log);
    state.statusText = L"Report cleared";
}
