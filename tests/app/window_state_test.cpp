#include "app/window_state.h"

#include <gtest/gtest.h>

#include "app/actions.h"
#include "app/session.h"
#include "tests/app/fake_measure.h"

namespace {

WindowState stateWith(HitKind kind, std::uint32_t id) {
    WindowState state;
    state.hitTargets = {{kind, id, 10, 10, 50, 20, L"", TextStyle::button, false}};
    state.log.panel = {0, 100, 400, 200};
    return state;
}

}  // namespace

TEST(WindowState, ActsOnAClickByKind) {
    const struct {
        HitKind kind;
        std::uint32_t id;
        std::int32_t tab, instance, language, action;  // -1: untouched
    } cases[] = {
        {HitKind::tab, kFirstTabId + kAboutTab, kAboutTab, -1, -1, -1},
        {HitKind::tab, kFirstTabId + kTabCount, -1, -1, -1, -1},
        {HitKind::tab, kFirstTabId - 1, -1, -1, -1, -1},
        {HitKind::instanceRow, kFirstInstanceId + 2, -1, 2, -1, -1},
        {HitKind::languageChoice, kFirstLanguageId + 13, -1, -1, 13, -1},
        {HitKind::primaryButton, kCaptureAction, -1, -1, -1, kCaptureAction},
        {HitKind::button, 77, -1, -1, -1, 77},
    };
    for (const auto& c : cases) {
        std::int32_t instance = -1;
        std::int32_t language = -1;
        std::int32_t action = -1;
        WindowState state = stateWith(c.kind, c.id);
        state.currentTab = -1;
        EXPECT_TRUE(
            dispatchClick(state, {20, 20}, fakeMeasure,
                          {[&](std::int32_t index) { instance = index; },
                           [&](std::int32_t position) { language = position; },
                           [&](std::uint32_t id) { action = static_cast<std::int32_t>(id); }}));
        EXPECT_EQ(state.currentTab, c.tab) << c.id;
        EXPECT_EQ(instance, c.instance) << c.id;
        EXPECT_EQ(language, c.language) << c.id;
        EXPECT_EQ(action, c.action) << c.id;
    }
}

TEST(WindowState, SelectsALogLineWhereNothingElseIsHit) {
    WindowState state = stateWith(HitKind::label, 0);
    appendLine(state.log, L"only line");
    const struct {
        PointDip point;
        bool painted;
        int selected;
    } clicks[] = {
        {{20, 20}, false, -1}, {{20, 110}, true, 0}, {{401, 110}, false, 0}, {{20, 290}, true, -1}};
    for (const auto& click : clicks) {
        EXPECT_EQ(dispatchClick(state, click.point, fakeMeasure, {}), click.painted);
        EXPECT_EQ(state.log.selectionAnchor, click.selected);
        EXPECT_EQ(state.log.selectionEnd, click.selected);
    }
    state.log.panel.width = 10;
    EXPECT_FALSE(dispatchClick(state, {5, 110}, fakeMeasure, {}));
}

TEST(WindowState, KeepsTheHoverOnItsElement) {
    WindowState state = stateWith(HitKind::button, kRefreshAction);
    EXPECT_TRUE(moveHover(state, {20, 20}));
    EXPECT_EQ(state.hoverTarget, 0);
    EXPECT_FALSE(moveHover(state, {21, 20}));
    Layout layout;
    layout.hitTargets = {{HitKind::button, kCopyAction, 0, 0, 1, 1, L"", TextStyle::button, false},
                         state.hitTargets[0]};
    takeLayout(state, layout);
    EXPECT_EQ(state.hoverTarget, 1);
    EXPECT_TRUE(moveHover(state, {0.5, 0.5}));
    EXPECT_EQ(state.hoverTarget, 0);
    layout.hitTargets.erase(layout.hitTargets.begin());
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
    state.log.selectionAnchor = state.log.selectionEnd = state.log.scrollBack = 1;
    clearReport(state);
    EXPECT_EQ(state.statusText, L"Report cleared");
    EXPECT_EQ(state.log.lineCount() + state.log.scrollBack, 0);
    EXPECT_EQ(state.log.selectionAnchor + state.log.selectionEnd, -2);
}

TEST(WindowState, ShowsTheParenthesisOfAStatusOrAllOfIt) {
    EXPECT_EQ(signatureLabel(L"Loaded (7)"), L"Loaded (7)");
    EXPECT_EQ(signatureLabel(L"Loaded\uFF08v7\uFF09"), L"\uFF08v7\uFF09");
    EXPECT_EQ(signatureLabel(L""), L"");
}
