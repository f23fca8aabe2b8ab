#include "app/window_state.h"

#include <gtest/gtest.h>

#include "app/actions.h"
#include "tests/app/fake_measure.h"

namespace {

struct Recorder {
    std::vector<std::int32_t> positions;
    std::vector<std::uint32_t> actions;

    ClickEffects effects() {
        return {[this](std::int32_t position) { positions.push_back(position); },
                [this](std::uint32_t id) { actions.push_back(id); }};
    }
};

WindowState stateWith(HitKind kind, std::uint32_t id) {
    WindowState state;
    state.hitTargets = {{kind, id, 10, 10, 50, 20, L"", TextStyle::button, false}};
    state.log.panel = {0, 100, 400, 200};
    return state;
}

}  // namespace

TEST(WindowState, ActsOnAClickByKind) {
    Recorder recorder;
    const auto click = [&](WindowState& state) {
        EXPECT_TRUE(dispatchClick(state, {20, 20}, fakeMeasure, recorder.effects()));
    };
    WindowState state = stateWith(HitKind::tab, kFirstTabId + kAboutTab);
    click(state);
    EXPECT_EQ(state.currentTab, kAboutTab);
    for (const std::uint32_t noTab : {kFirstTabId + kTabCount, kFirstTabId - 1}) {
        state.hitTargets[0].id = noTab;
        click(state);
        EXPECT_EQ(state.currentTab, kAboutTab);
    }
    state = stateWith(HitKind::instanceRow, kFirstInstanceId + 2);
    click(state);
    EXPECT_EQ(state.selectedInstance, 2);
    state = stateWith(HitKind::languageChoice, kFirstLanguageId + 13);
    click(state);
    EXPECT_EQ(recorder.positions, std::vector<std::int32_t>{13});
    state = stateWith(HitKind::primaryButton, kCaptureAction);
    click(state);
    state = stateWith(HitKind::button, 77);
    click(state);
    EXPECT_EQ(recorder.actions, (std::vector<std::uint32_t>{kCaptureAction, 77}));
}

TEST(WindowState, SelectsALogLineWhereNothingElseIsHit) {
    Recorder recorder;
    WindowState state = stateWith(HitKind::label, 0);
    appendLine(state.log, L"only line");
    EXPECT_FALSE(dispatchClick(state, {20, 20}, fakeMeasure, recorder.effects()));
    EXPECT_TRUE(dispatchClick(state, {20, 110}, fakeMeasure, recorder.effects()));
    EXPECT_EQ(state.log.selectionAnchor, 0);
    EXPECT_TRUE(dispatchClick(state, {20, 290}, fakeMeasure, recorder.effects()));
    EXPECT_EQ(state.log.selectionAnchor, -1);
    EXPECT_EQ(state.log.selectionEnd, -1);
    state.log.panel.width = 10;
    EXPECT_FALSE(dispatchClick(state, {5, 110}, fakeMeasure, recorder.effects()));
}

TEST(WindowState, NoticesWhenTheHoveredElementChanges) {
    WindowState state = stateWith(HitKind::button, kRefreshAction);
    EXPECT_TRUE(moveHover(state, {20, 20}));
    EXPECT_EQ(state.hoverTarget, 0);
    EXPECT_FALSE(moveHover(state, {21, 20}));
    EXPECT_TRUE(moveHover(state, {0, 0}));
    EXPECT_EQ(state.hoverTarget, -1);
}

TEST(WindowState, KeepsTheHoverOnItsElementInANewLayout) {
    WindowState state = stateWith(HitKind::button, kRefreshAction);
    moveHover(state, {20, 20});
    Layout layout;
    layout.hitTargets = {{HitKind::button, kCopyAction, 0, 0, 1, 1, L"", TextStyle::button, false},
                         state.hitTargets[0]};
    takeLayout(state, layout);
    EXPECT_EQ(state.hoverTarget, 1);
    layout.hitTargets.pop_back();
    takeLayout(state, layout);
    EXPECT_EQ(state.hoverTarget, -1);
}

TEST(WindowState, CopiesAndClearsWithAWord) {
    WindowState state;
    std::wstring clipboard = L"untouched";
    const auto toClipboard = [&](const std::wstring& text) { clipboard = text; };
    copyReport(state, toClipboard);
    EXPECT_EQ(state.statusText, L"No report to copy");
    EXPECT_EQ(clipboard, L"untouched");
    appendLine(state.log, L"a");
    appendLine(state.log, L"b");
    copyReport(state, toClipboard);
    EXPECT_EQ(state.statusText, L"Report copied (2 lines)");
    EXPECT_EQ(clipboard, L"a\r\nb\r\n");
    state.log.scrollBack = 1;
    selectAllLines(state.log);
    clearReport(state);
    EXPECT_EQ(state.statusText, L"Report cleared");
    EXPECT_EQ(state.log.lineCount(), 0);
    EXPECT_EQ(state.log.scrollBack, 0);
    EXPECT_EQ(state.log.selectionAnchor, -1);
}

TEST(WindowState, ShowsTheParenthesisOfAStatusOrAllOfIt) {
    EXPECT_EQ(signatureLabel(L"Loaded (7)"), L"Loaded (7)");
    EXPECT_EQ(signatureLabel(L"Loaded\uFF08v7\uFF09"), L"\uFF08v7\uFF09");
    EXPECT_EQ(signatureLabel(L""), L"");
}
