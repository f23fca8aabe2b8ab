#include "app/main_window_win.h"

#include <gtest/gtest.h>
#include <wrl/client.h>

#include "app/actions.h"
#include "app/uia_interfaces_win.h"

using Microsoft::WRL::ComPtr;

namespace {

// The real window, in the test's own process.
class MainWindowTest : public testing::Test {
  protected:
    MainWindowTest() { createMainWindow(GetModuleHandleW(nullptr), window_); }
    ~MainWindowTest() override {
        DestroyWindow(window_.hwnd);
        handlePosted();
    }

    void paint() { RedrawWindow(window_.hwnd, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW); }
    static void handlePosted() {
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
            DispatchMessageW(&message);
    }

    MainWindow window_;
};

// An element as a screen reader holds it.
using Element = ComPtr<IRawElementProviderSimple>;

template <typename Interface>
ComPtr<Interface> as(const Element& element) {
    ComPtr<Interface> other;
    if (element) element.As(&other);
    return other;
}

VARIANT valueOf(const Element& element, PROPERTYID property) {
    VARIANT value{};
    if (element) element->GetPropertyValue(property, &value);
    return value;
}

Element step(const Element& from, NavigateDirection direction) {
    ComPtr<IRawElementProviderFragment> next;
    as<IRawElementProviderFragment>(from)->Navigate(direction, &next);
    Element element;
    if (next) next.As(&element);
    return element;
}

// The first of a kind and a name below another one.
Element find(const Element& from, int type, const std::wstring& name) {
    for (Element child = step(from, NavigateDirection_FirstChild); child;
         child = step(child, NavigateDirection_NextSibling)) {
        if (valueOf(child, UIA_ControlTypePropertyId).lVal == type &&
            valueOf(child, UIA_NamePropertyId).bstrVal == name)
            return child;
        if (Element below = find(child, type, name)) return below;
    }
    return {};
}

}  // namespace

TEST_F(MainWindowTest, FollowsAChangeOfDpi) {
    RECT suggested{10, 20, 1390, 1020};
    SendMessageW(window_.hwnd, WM_DPICHANGED, MAKEWPARAM(144, 144),
                 reinterpret_cast<LPARAM>(&suggested));
    RECT rect{};
    GetWindowRect(window_.hwnd, &rect);
    EXPECT_TRUE(EqualRect(&rect, &suggested));
    MINMAXINFO info{};
    SendMessageW(window_.hwnd, WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&info));
    EXPECT_TRUE(info.ptMinTrackSize.x == 1320 && info.ptMinTrackSize.y == 960);
    GetClientRect(window_.hwnd, &rect);
    EXPECT_FLOAT_EQ(window_.clientWidthDip, static_cast<float>(rect.right) * 96 / 144);
}

TEST_F(MainWindowTest, PaintsAnyTextAgainAfterTheTargetIsLost) {
    for (const std::wstring& text : {std::wstring(1, wchar_t{0xD83D}), std::wstring(100000, L'W')})
        window_.host.appendLog(text);
    window_.renderer.release();
    window_.renderer.createFormats();
    paint();
    EXPECT_TRUE(window_.renderer.hasTarget() && window_.state.log.panel.width > 0);
    SendMessageW(window_.hwnd, WM_SIZE, SIZE_MINIMIZED, 0);
    paint();
    EXPECT_EQ(window_.clientWidthDip, 0);
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

TEST_F(MainWindowTest, AnswersAScreenReader) {
    EXPECT_EQ(window_.accessibility.root(), nullptr) << "nobody has asked yet";
    ASSERT_NE(SendMessageW(window_.hwnd, WM_GETOBJECT, 0, kAutomationRootId), 0);
    Element root;
    root.Attach(window_.accessibility.root());
    const Element refresh = find(root, uia::kButtonType, L"Refresh");
    const Element fix = find(root, uia::kTabItemType, L"Fix");
    window_.host.setStatus(L"a status");
    handlePosted();
    EXPECT_TRUE(find(root, uia::kStatusBarType, L"a status"));
    EXPECT_TRUE(find(root, uia::kListItemType, L"[Signatures] 0 (4 rules)"));
    const auto dashboard = as<IInvokeProvider>(find(root, uia::kButtonType, L"Dashboard"));
    ASSERT_TRUE(dashboard && !as<IInvokeProvider>(fix));
    dashboard->Invoke();
    EXPECT_EQ(as<ISelectionItemProvider>(fix)->Select(), S_OK);
    as<IRawElementProviderFragment>(refresh)->SetFocus();
    handlePosted();
    EXPECT_TRUE(
        find(root, uia::kStatusBarType, L"[Dashboard] Please select a CDR instance first."));
    BOOL selected = FALSE;
    as<ISelectionItemProvider>(fix)->get_IsSelected(&selected);
    EXPECT_TRUE(selected && window_.state.currentTab == kFixTab);
    EXPECT_TRUE(window_.state.focus == ElementId(HitKind::button, kRefreshAction));
    EXPECT_EQ(as<IInvokeProvider>(refresh)->Invoke(), uia::kNotAvailable) << "left with its page";
}
