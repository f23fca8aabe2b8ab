#include "base/deadline_win.h"

#include <gtest/gtest.h>

#include <stdexcept>

constexpr unsigned kLong = 60000;

TEST(Deadline, GivesTheAnswerOrNothing) {
    EXPECT_EQ(answerWithin(kLong, [] { return std::wstring(L"Office"); }), L"Office");
    EXPECT_EQ(answerWithin(kLong, []() -> int { throw std::runtime_error("refused"); }),
              std::nullopt);
    EXPECT_TRUE(finishesWithin(
        kLong, [] {}, [] { ADD_FAILURE() << "took back what was in time"; }));
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
