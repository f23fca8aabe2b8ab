#include "app/window_state.h"

#include <gtest/gtest.h>

#include <new>

#include "app/actions.h"
#include "app/guarded_action.h"
#include "app/keyboard.h"
#include "tests/app/fake_measure.h"
#include "tests/fake_host.h"

namespace {

// What a click or a key sets off, such as "i2".
ClickEffects into(std::string& done) {
    return {[&](std::int32_t index) { done += "i" + std::to_string(index); },
            [&](std::int32_t position) { done += "l" + std::to_string(position); },
            [&](std::uint32_t id) { done += "a" + std::to_string(id); }};
}

WindowState stateWith(ElementId element) {
    WindowState state;
    state.hitTargets = {{element.kind, element.id, 10, 10, 50, 20, L"", TextStyle::button, false}};
    state.log.panel = {0, 100, 400, 200};
    return state;
}

WindowState pageWith(int instances) {
    WindowState state;
    takeLayout(state, layoutOf(kDiagnoseTab, instances));
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
        ElementId element;
        std::int32_t tab;
        std::string effect;
    } cases[] = {
        {{HitKind::tab, kFirstTabId + kAboutTab}, kAboutTab, ""},
        {{HitKind::tab, kFirstTabId + kTabCount}, -1, ""},
        {{HitKind::instanceRow, kFirstInstanceId + 2}, -1, "i2"},
        {{HitKind::languageChoice, kFirstLanguageId + 13}, -1, "l13"},
        {{HitKind::primaryButton, 77}, -1, "a77"},
    };
    for (const auto& c : cases) {
        for (const bool byKey : {false, true}) {
            std::string done;
            WindowState state = stateWith(c.element);
            state.currentTab = -1;
            if (byKey) press(state, "n");
            EXPECT_TRUE(byKey ? dispatchKey(state, Key::act, fakeMeasure, into(done))
                              : dispatchClick(state, {20, 20}, fakeMeasure, into(done)));
            EXPECT_TRUE(state.currentTab == c.tab && done == c.effect) << c.element.id;
            EXPECT_TRUE(state.focus == c.element && state.focusShown == byKey);
            EXPECT_FALSE(dispatchClick(state, {61, 20}, fakeMeasure, {})) << "beside it";
        }
    }
}

TEST(WindowState, WalksTheFocusInReadingOrderAndKeepsItOnItsElement) {
    const std::pair<const char*, ElementId> cases[] = {
        {"pn", {HitKind::tab, kFirstTabId}},
        {"pp", {HitKind::button, kClearAction}},
        {"nnnnn", {HitKind::button, kRefreshAction}},
        {"nnnnnnnnd", {HitKind::instanceRow, kFirstInstanceId + 1}},
        {"nnnnnnnnul", {HitKind::instanceRow, kFirstInstanceId}},
        {"nnnnnnnnn", {HitKind::primaryButton, kCaptureAction}},
        {"nrrrrr", {HitKind::tab, kFirstTabId + 3}},
        {"nehrd", {HitKind::tab, kFirstTabId + 1}},
    };
    for (const auto& [keys, focus] : cases) {
        WindowState state = pageWith(2);
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
    WindowState state = stateWith({HitKind::label, 0});
    appendLine(state.log, std::wstring(60, L'l'));  // two lines high
    for (const auto& [y, line] : {std::pair{146.F, 0}, {148.F, -1}}) {
        EXPECT_TRUE(dispatchClick(state, {20, y}, fakeMeasure, {}));
        EXPECT_EQ(state.log.selectionAnchor, line);
    }
    for (int i = 1; i < 50; ++i)
        appendLine(state.log, L"line");
    EXPECT_TRUE(dispatchClick(state, {20, 110}, fakeMeasure, {}));
    EXPECT_TRUE(state.log.selectionAnchor == 42 && state.log.selectionEnd == 42);
    EXPECT_FALSE(dispatchClick(state, {401, 110}, fakeMeasure, {}));
    const std::pair<const char*, int> cases[] = {{"u", 1},  {"uud", 2}, {"g", 10}, {"G", 2},
                                                 {"h", 42}, {"ud", 41}, {"e", 0}};
    for (const auto& [keys, scrollBack] : cases) {
        press(state, keys);
        EXPECT_EQ(state.log.scrollBack, scrollBack) << keys;
    }
    state.log.scrollBack = 1000;  // the wheel goes on without an end
    press(state, "d");
    EXPECT_EQ(state.log.scrollBack, 41);
}

TEST(GuardedAction, MakesALineOfMemoryThatIsNotThere) {
    FakeHost fake;
    ActionHost host = fake.host();
    runGuarded(host, [] { throw std::bad_alloc(); });
    EXPECT_NE(fake.report().find(L"Failed: not enough memory"), std::wstring::npos);
    host.appendLog = [](const std::wstring&) { throw std::bad_alloc(); };
    runGuarded(host, [] { throw std::bad_alloc(); });
}
