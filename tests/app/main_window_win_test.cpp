#include "app/main_window_win.h"

#include <gtest/gtest.h>
#include <wrl/client.h>

#include "app/actions.h"
#include "app/uia_interfaces_win.h"
#include "base/text.h"
#include "tests/base/files/staged_folder_win.h"

using Microsoft::WRL::ComPtr;

namespace {

// The real window, in the test's own process.
class MainWindowTest : public testing::Test {
  protected:
    MainWindowTest() { createMainWindow(GetModuleHandleW(nullptr), window_); }
    ~MainWindowTest() override {
        if (IsWindow(window_.hwnd)) DestroyWindow(window_.hwnd);
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        }
    }

    void paint() { RedrawWindow(window_.hwnd, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW); }
    void handlePosted() {
        MSG message;
        while (PeekMessageW(&message, window_.hwnd, WM_APP, WM_APP + 100, PM_REMOVE))
            DispatchMessageW(&message);
        paint();
    }

    MainWindow window_;
};

// Names a file in the slimming dialog as soon as it is there, and says OK.
constexpr wchar_t kDialogTitle[] = L"Select CDR files to slim (multi-select supported)";
std::wstring g_chosenFile;
void CALLBACK answerDialog(HWND, UINT, UINT_PTR timer, DWORD) {
    HWND dialog = FindWindowW(nullptr, kDialogTitle);
    if (dialog == nullptr || !IsWindowVisible(dialog)) return;
    constexpr int kFileNameField = 0x47C;
    const bool named = SetDlgItemTextW(dialog, kFileNameField, g_chosenFile.c_str()) != FALSE;
    PostMessageW(dialog, WM_COMMAND, named ? IDOK : IDCANCEL, 0);
    KillTimer(nullptr, timer);
}

// An element as a screen reader holds it.
class Found {
  public:
    static Found from(IRawElementProviderSimple* element) {
        Found found;
        found.element_.Attach(element);
        return found;
    }
    explicit operator bool() const { return element_ != nullptr; }
    template <typename Interface>
    [[nodiscard]] ComPtr<Interface> as() const {
        ComPtr<Interface> other;
        if (element_) element_.As(&other);
        return other;
    }
    [[nodiscard]] VARIANT value(PROPERTYID property) const {
        VARIANT value{};
        if (element_) element_->GetPropertyValue(property, &value);
        return value;
    }
    [[nodiscard]] bool flag(PROPERTYID property) const {
        return value(property).boolVal != VARIANT_FALSE;
    }
    [[nodiscard]] Found go(NavigateDirection direction) const {
        ComPtr<IRawElementProviderFragment> next;
        as<IRawElementProviderFragment>()->Navigate(direction, &next);
        Found found;
        if (next) next.As(&found.element_);
        return found;
    }
    [[nodiscard]] int parentType() const {
        return go(NavigateDirection_Parent).value(UIA_ControlTypePropertyId).lVal;
    }
    /// The first of a kind and a name below this one.
    [[nodiscard]] Found find(int type, const std::wstring& name) const {
        for (Found child = go(NavigateDirection_FirstChild); child;
             child = child.go(NavigateDirection_NextSibling)) {
            if (child.value(UIA_ControlTypePropertyId).lVal == type &&
                child.value(UIA_NamePropertyId).bstrVal == name)
                return child;
            if (const Found below = child.find(type, name)) return below;
        }
        return {};
    }

  private:
    ComPtr<IRawElementProviderSimple> element_;
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
    EXPECT_TRUE(info.ptMinTrackSize.x == 1320 && info.ptMinTrackSize.y == 960);
    RECT client{};
    GetClientRect(window_.hwnd, &client);
    EXPECT_FLOAT_EQ(window_.clientWidthDip, static_cast<float>(client.right) * 96 / 144);
    change(0);
    EXPECT_EQ(window_.dpi, systemDpi);
}

TEST_F(MainWindowTest, PaintsAgainAfterTheTargetIsLost) {
    window_.renderer.release();
    window_.renderer.createFormats();
    EXPECT_FALSE(window_.renderer.hasTarget());
    paint();
    EXPECT_TRUE(window_.renderer.hasTarget() && window_.state.log.panel.width > 0);
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
    EXPECT_NE(text.find(L"a b\r\n"), std::wstring::npos);
    EXPECT_TRUE(text.ends_with(L"W\r\n"));
}

TEST_F(MainWindowTest, DropsWhatIsClickedBesideAnOpenQuestion) {
    paint();
    HWND box = CreateWindowW(L"#32770", L"", WS_POPUP | WS_VISIBLE, 0, 0, 50, 50, nullptr, nullptr,
                             nullptr, nullptr);
    const float scale = window_.dpiScale / 96;
    const LPARAM onFix = MAKELPARAM(static_cast<int>(150 * scale), static_cast<int>(80 * scale));
    window_.host.confirm = [&](const std::wstring&, const std::wstring&, ConfirmStyle) {
        SendMessageW(window_.hwnd, WM_LBUTTONDOWN, 0, onFix);
        PostMessageW(window_.hwnd, WM_LBUTTONDOWN, 0, onFix);
        return false;
    };
    pressButton(window_, kPrinterAction);
    DestroyWindow(box);
    MSG message;
    EXPECT_FALSE(PeekMessageW(&message, window_.hwnd, WM_LBUTTONDOWN, WM_LBUTTONDOWN, PM_REMOVE));
    EXPECT_EQ(window_.state.statusText, L"Please answer the open question first.");
    EXPECT_EQ(window_.state.currentTab, kDiagnoseTab);
    SendMessageW(window_.hwnd, WM_LBUTTONDOWN, 0, onFix);
    EXPECT_EQ(window_.state.currentTab, kFixTab) << "a click counts again";
}

TEST_F(MainWindowTest, LeavesTheProcessInItsFolderAfterTheDialog) {
    const StagedFolder folder;
    g_chosenFile = folder.path() + L"\\some.cdr";
    WriteStaged(g_chosenFile, "RIFF");
    bool asked = false;
    window_.host.confirm = [&](const std::wstring&, const std::wstring&, ConfirmStyle) {
        asked = true;
        return false;
    };
    wchar_t before[MAX_PATH] = L"";
    wchar_t after[MAX_PATH] = L"";
    GetCurrentDirectoryW(MAX_PATH, before);
    SetTimer(nullptr, 0, 20, answerDialog);
    pressButton(window_, kSlimAction);
    GetCurrentDirectoryW(MAX_PATH, after);
    EXPECT_TRUE(asked) << "the file was chosen";
    EXPECT_STREQ(after, before);
}

TEST_F(MainWindowTest, AnswersAScreenReader) {
    EXPECT_EQ(window_.accessibility.root(), nullptr) << "nobody has asked yet";
    // As a client asks: through the window's handle alone.
    const LibraryHandle core(LoadLibraryW(L"uiautomationcore.dll"));
    const auto nodeFromHandle = reinterpret_cast<HRESULT(WINAPI*)(HWND, void**)>(
        reinterpret_cast<void*>(GetProcAddress(core.get(), "UiaNodeFromHandle")));
    const auto propertyOf = reinterpret_cast<HRESULT(WINAPI*)(void*, PROPERTYID, VARIANT*)>(
        reinterpret_cast<void*>(GetProcAddress(core.get(), "UiaGetPropertyValue")));
    void* node = nullptr;
    VARIANT title{};
    ASSERT_EQ(nodeFromHandle(window_.hwnd, &node), S_OK);
    ASSERT_EQ(propertyOf(node, UIA_NamePropertyId, &title), S_OK);
    EXPECT_EQ(std::wstring(title.bstrVal).substr(0, 13), L"Mirelo v0.2 -");

    const Found root = Found::from(window_.accessibility.root());
    Found refresh = root.find(uia::kButtonType, L"Refresh");
    const Found fix = root.find(uia::kTabItemType, L"Fix");
    window_.host.setStatus(L"a status");
    handlePosted();
    EXPECT_EQ(root.find(uia::kStatusBarType, L"a status").flag(UIA_IsOffscreenPropertyId), false);
    EXPECT_EQ(root.find(uia::kListItemType, L"[Signatures] 0 (4 rules)").parentType(),
              uia::kListType);
    EXPECT_FALSE(fix.as<IInvokeProvider>());

    ASSERT_TRUE(root.find(uia::kButtonType, L"Dashboard").as<IInvokeProvider>());
    root.find(uia::kButtonType, L"Dashboard").as<IInvokeProvider>()->Invoke();
    EXPECT_EQ(fix.as<ISelectionItemProvider>()->Select(), S_OK);
    refresh.as<IRawElementProviderFragment>()->SetFocus();
    handlePosted();
    EXPECT_TRUE(root.find(uia::kStatusBarType, L"[Dashboard] Please select a CDR instance first."));
    BOOL selected = FALSE;
    fix.as<ISelectionItemProvider>()->get_IsSelected(&selected);
    EXPECT_TRUE(selected && window_.state.currentTab == kFixTab);
    EXPECT_EQ(refresh.as<IInvokeProvider>()->Invoke(), uia::kNotAvailable) << "left with its page";
}
