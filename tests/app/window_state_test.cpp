#include "app/window_state.h"

#include <gtest/gtest.h>

#include <new>

#include "app/actions.h"
#include "app/guarded_action.h"
#include "app/keyboard.h"
#include "tests/app/fake_measure.h"
#include "tests/fake_host.h"

namespace {

// What a click or a key set off; -1: nothing of the kind.
struct Effects {
    std::int32_t instance = -1, language = -1, action = -1;
    ClickEffects effects() {
        return {[this](std::int32_t index) { instance = index; },
                [this](std::int32_t position) { language = position; },
                [this](std::uint32_t id) { action = static_cast<std::int32_t>(id); }};
    }
};

WindowState stateWith(HitKind kind, std::uint32_t id) {
    WindowState state;
    state.hitTargets = {{kind, id, 10, 10, 50, 20, L"", TextStyle::button, false}};
    state.log.panel = {0, 100, 400, 200};
    return state;
}

WindowState pageWith(int instances) {
    LayoutInput input{1024, 841, kDiagnoseTab, {}, 0, L"", true};
    input.instanceRows.assign(static_cast<std::size_t>(instances), L"PID");
    WindowState state;
    takeLayout(state, buildLayout(input, fakeMeasure));
    return state;
}

// "n": next, "p": previous, "l", "r", "u", "d": arrows, "h", "e": home and end, "g": page up.
void press(WindowState& state, const char* keys) {
    for (; *keys != '\0'; ++keys) {
        constexpr std::string_view kNames = "nplrudgGhe";
        dispatchKey(state, static_cast<Key>(kNames.find(*keys)), fakeMeasure, {});
    }
}

}  // namespace

TEST(WindowState, ActsOnAClickAndOnAKeyByKind) {
    const struct {
        HitKind kind;
        std::uint32_t id;
        std::int32_t tab, instance, language, action;
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
        for (const bool byKey : {false, true}) {
            Effects done;
            WindowState state = stateWith(c.kind, c.id);
            state.currentTab = -1;
            state.focusShown = !byKey;
            if (byKey) press(state, "n");
            EXPECT_TRUE(byKey ? dispatchKey(state, Key::act, fakeMeasure, done.effects())
                              : dispatchClick(state, {20, 20}, fakeMeasure, done.effects()));
            EXPECT_EQ(state.currentTab, c.tab) << c.id;
            EXPECT_EQ(done.instance, c.instance) << c.id;
            EXPECT_EQ(done.language, c.language) << c.id;
            EXPECT_EQ(done.action, c.action) << c.id;
            EXPECT_TRUE(state.focus == ElementId(c.kind, c.id) && state.focusShown == byKey);
        }
    }
}

TEST(WindowState, WalksTheFocusInReadingOrderAndKeepsItOnItsElement) {
    const struct {
        const char* keys;
        int instances;
        ElementId focus;
    } cases[] = {
        {"n", 2, {HitKind::tab, kFirstTabId}},
        {"p", 2, kReportId},
        {"pp", 2, {HitKind::button, kClearAction}},
        {"nnnnn", 2, {HitKind::button, kRefreshAction}},
        {"nnnnnnn", 2, {HitKind::instanceRow, kFirstInstanceId}},
        {"nnnnnnnn", 2, {HitKind::instanceRow, kFirstInstanceId + 1}},
        {"nnnnnnnnd", 2, {HitKind::instanceRow, kFirstInstanceId + 1}},
        {"nnnnnnnnul", 2, {HitKind::instanceRow, kFirstInstanceId}},
        {"nnnnnnnnn", 2, {HitKind::primaryButton, kCaptureAction}},
        {"nrrrrr", 2, {HitKind::tab, kFirstTabId + 3}},
        {"nehrd", 2, {HitKind::tab, kFirstTabId + 1}},
        {"pn", 0, {HitKind::tab, kFirstTabId}},
    };
    for (const auto& [keys, instances, focus] : cases) {
        WindowState state = pageWith(instances);
        press(state, keys);
        EXPECT_TRUE(state.focus == focus) << keys << ": " << state.focus->id;
    }
    // The row goes; whoever walks on begins anew, and nothing is done in its name.
    WindowState state = pageWith(1);
    press(state, "nnnnnnn");
    takeLayout(state, {0, {}, pageWith(0).hitTargets, {}, {}, {}});
    EXPECT_FALSE(dispatchKey(state, Key::act, fakeMeasure, {}));
    press(state, "n");
    EXPECT_EQ(state.focus->id, kFirstTabId);
}

TEST(WindowState, ScrollsTheReportThatHasTheFocus) {
    WindowState state = stateWith(HitKind::label, 0);
    for (int i = 0; i < 50; ++i)
        appendLine(state.log, L"line");
    press(state, "u");
    EXPECT_EQ(state.log.scrollBack, 0) << "the focus is elsewhere";
    EXPECT_TRUE(dispatchClick(state, {20, 290}, fakeMeasure, {}));
    const struct {
        const char* keys;
        int scrollBack;
    } cases[] = {{"u", 1}, {"uud", 2}, {"g", 10}, {"G", 2}, {"h", 42}, {"ud", 41}, {"e", 0}};
    for (const auto& [keys, scrollBack] : cases) {
        press(state, keys);
        EXPECT_EQ(state.log.scrollBack, scrollBack) << keys;
    }
    state.log.scrollBack = 1000;  // the wheel goes on without an end
    press(state, "d");
    EXPECT_EQ(state.log.scrollBack, 41);
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
}

TEST(WindowState, KeepsTheHoverOnItsElement) {
    WindowState state = pageWith(0);
    EXPECT_TRUE(moveHover(state, {790, 140}));
    EXPECT_FALSE(moveHover(state, {791, 140}));
    const std::vector<HitTarget> other = pageWith(2).hitTargets;
    takeLayout(state, {0, {}, {other.rbegin(), other.rend()}, {}, {}, {}});
    EXPECT_EQ(state.hitTargets[static_cast<std::size_t>(state.hoverTarget)].id, kRefreshAction);
    takeLayout(state, {});
    EXPECT_EQ(state.hoverTarget, -1);
}

TEST(GuardedAction, MakesALineOfMemoryThatIsNotThere) {
    FakeHost host;
    runGuarded(host.host(), [] { throw std::bad_alloc(); });
    EXPECT_NE(host.report().find(L"Failed: not enough memory"), std::wstring::npos);
    ActionHost none = host.host();
    none.appendLog = [](const std::wstring&) { throw std::bad_alloc(); };
    runGuarded(none, [] { throw std::bad_alloc(); });
}
