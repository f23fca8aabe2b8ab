#include "app/main_window_win.h"

#include <gtest/gtest.h>

#include "app/actions.h"
#include "app/window_place.h"
#include "base/text.h"

namespace {

// The real window, in the test's own process.
class MainWindowTest : public testing::Test {
  protected:
    MainWindowTest() { createMainWindow(GetModuleHandleW(nullptr), window_); }
    ~MainWindowTest() override {
        if (window_.hwnd != nullptr) DestroyWindow(window_.hwnd);
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        }
    }

    void paint() { RedrawWindow(window_.hwnd, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW); }

    MainWindow window_;
};

}  // namespace

TEST_F(MainWindowTest, FollowsAChangeOfDpi) {
    const UINT systemDpi = window_.dpi;
    RECT suggested{10, 20, 1390, 1020};
    const auto change = [&](WPARAM dpi) {
        SendMessageW(window_.hwnd, WM_DPICHANGED, MAKEWPARAM(dpi, dpi),
                     reinterpret_cast<LPARAM>(&suggested));
    };
    change(144);
    EXPECT_EQ(window_.dpi, 144U);
    RECT rect{};
    GetWindowRect(window_.hwnd, &rect);
    EXPECT_TRUE(EqualRect(&rect, &suggested));
    MINMAXINFO info{};
    SendMessageW(window_.hwnd, WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&info));
    EXPECT_EQ(info.ptMinTrackSize.x, 1320);
    EXPECT_EQ(info.ptMinTrackSize.y, 960);
    RECT client{};
    GetClientRect(window_.hwnd, &client);
    EXPECT_FLOAT_EQ(window_.clientWidthDip, static_cast<float>(client.right) * 96 / 144);
    EXPECT_TRUE(window_.renderer.hasTarget());
    change(0);
    EXPECT_EQ(window_.dpi, systemDpi);
    EXPECT_EQ(pixelsFromDip(1040, 144), 1560);
    EXPECT_EQ(pixelsFromDip(1, 120), 1) << "not rounded up";
}

TEST_F(MainWindowTest, PaintsAgainAfterTheTargetIsLost) {
    paint();
    EXPECT_GT(window_.state.log.panel.width, 0);
    window_.renderer.release();
    window_.renderer.createFormats();
    EXPECT_FALSE(window_.renderer.hasTarget());
    paint();
    EXPECT_TRUE(window_.renderer.hasTarget());
    SendMessageW(window_.hwnd, WM_SIZE, SIZE_MINIMIZED, 0);
    paint();
    EXPECT_EQ(window_.clientWidthDip, 0);
}

TEST_F(MainWindowTest, DrawsAndCopiesAnyText) {
    for (const std::wstring& text :
         {std::wstring(L"a\0b", 3), std::wstring(L"line\nbreak\r\n\ttab\u202Eto the left\u2069"),
          std::wstring(1, static_cast<wchar_t>(0xD83D)), std::wstring(100000, L'W')}) {
        window_.host.appendLog(text);
        paint();
    }
    pressButton(window_, kCopyAction);
    EXPECT_EQ(window_.state.statusText,
              L"Report copied (" + decimal(window_.state.log.lineCount()) + L" lines)");
    ASSERT_TRUE(OpenClipboard(nullptr));
    const auto* copied = static_cast<const wchar_t*>(GlobalLock(GetClipboardData(CF_UNICODETEXT)));
    const std::wstring text = copied != nullptr ? copied : L"";
    CloseClipboard();
    EXPECT_NE(text.find(L"a\uFFFDb\r\n"), std::wstring::npos);
    EXPECT_TRUE(text.ends_with(L"W\r\n"));
}

TEST_F(MainWindowTest, RunsOneActionAtATime) {
    const int before = window_.state.log.lineCount();
    window_.actionRunning = true;
    pressButton(window_, kDashboardAction);
    EXPECT_EQ(window_.state.log.lineCount(), before);
    window_.actionRunning = false;
    window_.session.selectedInstance = -1;
    pressButton(window_, kDashboardAction);
    EXPECT_EQ(window_.state.log.lineCount(), before + 1);
    pressButton(window_, 12345);
    EXPECT_FALSE(window_.actionRunning);
}
