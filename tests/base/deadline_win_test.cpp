#include "base/deadline_win.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "base/handle_win.h"

namespace {

constexpr DWORD kLong = 60000;
constexpr DWORD kShort = 20;

struct Event {
    KernelHandle handle{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    void set() const { SetEvent(handle.get()); }
    [[nodiscard]] bool comesWithin(DWORD limitMs) const {
        return WaitForSingleObject(handle.get(), limitMs) == WAIT_OBJECT_0;
    }
};

}  // namespace

TEST(Deadline, GivesTheAnswerOrNothing) {
    EXPECT_EQ(answerWithin(kLong, [] { return std::wstring(L"Office"); }), L"Office");
    EXPECT_EQ(answerWithin(kLong, []() -> int { throw std::runtime_error("refused"); }),
              std::nullopt);
    bool tookBack = false;
    EXPECT_TRUE(finishesWithin(
        kLong, [] {}, [&] { tookBack = true; }));
    EXPECT_FALSE(tookBack);
}

TEST(Deadline, WhoeverIsAbandonedTakesBackWhatItDid) {
    struct Stage {
        Event release, tookBack;
    };
    const auto stage = std::make_shared<Stage>();
    const auto wait = [stage] { return stage->release.comesWithin(kLong); };
    EXPECT_EQ(answerWithin(kShort, wait, [stage] { stage->tookBack.set(); }), std::nullopt);
    EXPECT_FALSE(stage->tookBack.comesWithin(0));
    stage->release.set();
    EXPECT_TRUE(stage->tookBack.comesWithin(kLong));
}

// As the spooler does when the default printer changes: it tells every window and waits.
TEST(Deadline, TheCallMaySendMessagesToItsCaller) {
    const HWND window =
        CreateWindowW(L"STATIC", L"before", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    ASSERT_NE(window, nullptr);
    EXPECT_TRUE(finishesWithin(kLong, [window] {
        SendMessageW(window, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"after"));
    }));
    wchar_t text[16] = {};
    GetWindowTextW(window, text, 16);
    EXPECT_STREQ(text, L"after");
    DestroyWindow(window);
}
