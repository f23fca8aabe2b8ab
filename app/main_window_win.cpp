// The window procedure is dispatch: one call per message.
#include "app/main_window_win.h"

#include <windowsx.h>

#include "app/actions.h"
#include "app/actions_win.h"
#include "app/background_update_win.h"
#include "app/dpi_win.h"
#include "app/guarded_action.h"
#include "app/input_win.h"
#include "app/language.h"
#include "app/language_file_win.h"
#include "app/strings.h"
#include "app/window_place.h"
#include "base/text.h"
#include "cloud/services_win.h"
#include "cloud/signatures.h"
#include "fixes/health/printer_win.h"

namespace {

constexpr const wchar_t* kClassName = L"MireloMain";
constexpr int kIconId = 100;

RectPx fromRect(const RECT& rect) {
    return {static_cast<int>(rect.left), static_cast<int>(rect.top), static_cast<int>(rect.right),
            static_cast<int>(rect.bottom)};
}

RectPx primaryWorkArea() {
    RECT work{};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
    return fromRect(work);
}

RectPx workAreaAround(HWND hwnd) {
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    const HMONITOR nearest = MonitorFromWindow(hwnd, MONITOR_DEFAULTTONEAREST);
    return GetMonitorInfoW(nearest, &monitor) ? fromRect(monitor.rcWork) : primaryWorkArea();
}

void moveTo(HWND hwnd, const RectPx& rect, UINT flags) {
    SetWindowPos(hwnd, nullptr, rect.left, rect.top, rect.width(), rect.height(), flags);
}

void invalidate(const MainWindow& window) {
    InvalidateRect(window.hwnd, nullptr, FALSE);
}

PointDip dipFromPixels(const MainWindow& window, POINT point) {
    return {static_cast<float>(point.x) * 96 / window.dpiScale,
            static_cast<float>(point.y) * 96 / window.dpiScale};
}

PointDip pointOf(const MainWindow& window, LPARAM lParam) {
    return dipFromPixels(window, {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)});
}

MeasureText measurerOf(const MainWindow& window) {
    return [&window](const std::wstring& text, TextStyle style, float maxWidthDip) {
        return window.renderer.measure(text, style, maxWidthDip);
    };
}

void setDpi(MainWindow& window, UINT dpi) {
    if (dpi == 0) return;
    window.dpi = dpi;
    window.dpiScale = static_cast<float>(dpi);
}

void setClientSize(MainWindow& window, LONG widthPx, LONG heightPx) {
    const PointDip corner = dipFromPixels(window, {widthPx, heightPx});
    window.clientWidthDip = corner.x;
    window.clientHeightDip = corner.y;
}

void readClientSize(MainWindow& window) {
    RECT client{};
    GetClientRect(window.hwnd, &client);
    setClientSize(window, client.right, client.bottom);
}

ActionHost hostOf(MainWindow& window) {
    return {
        [&window](std::wstring text) { appendLine(window.state.log, std::move(text)); },
        // A box without an owner outlives a window that is closed meanwhile: its Yes comes too
        // late.
        [&window](const std::wstring& text, const std::wstring& caption, ConfirmStyle style) {
            const int answer =
                MessageBoxW(nullptr, text.c_str(), caption.c_str(), static_cast<UINT>(style));
            SetCursor(LoadCursorW(nullptr, IDC_WAIT));
            return answer == IDYES && IsWindow(window.hwnd);
        },
        // An action that takes long shows how far it has come.
        [&window](std::wstring text) {
            window.state.statusText = std::move(text);
            if (window.actionRunning)
                RedrawWindow(window.hwnd, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
        },
    };
}

ActionSite siteOf(MainWindow& window) {
    return {window.session, window.host, window.state, window.hwnd};
}

void loadSignatures(MainWindow& window) {
    LoadBuiltInRules(window.session.rules);
    const SignatureLoad load = LoadSignatureBase(window.session.rules, window.session.cloud);
    window.session.signatureStatus = signatureLabel(load.status);
    window.host.appendLog(
        L"Mirelo ready. When CDR hangs, switch to the Diagnose tab and click Capture Now.");
    window.host.appendLog(L"[Signatures] " + decimal(load.version) + L" (" +
                          decimalUnsigned(load.ruleCount) + L" rules)");
}

void onSignaturesUpdated(MainWindow& window) {
    const SignatureLoad load = LoadSignatureBase(window.session.rules, window.session.cloud);
    if (load.ruleCount > 0) {
        window.host.appendLog(L"[Cloud] Signatures hot-updated to v" + decimal(load.version) +
                              L" in background (" + decimalUnsigned(load.ruleCount) + L" rules).");
    }
    invalidate(window);
}

void onCreate(MainWindow& window) {
    setDpi(window, dpiOf(window.hwnd));
    moveTo(window.hwnd, firstPlace(window.dpi, primaryWorkArea()), SWP_NOZORDER);
    window.renderer.createFormats();
    window.renderer.createTarget(window.hwnd, window.dpi);
    readClientSize(window);
    window.host = hostOf(window);
    window.session.cloud = SystemCloudServices();
    loadSignatures(window);
    window.painted = startBackgroundUpdate(window.hwnd, kSignaturesUpdated, window.session.cloud);
    runAction(kRefreshAction, siteOf(window));
}

void onDestroy(MainWindow& window) {
    window.accessibility.close(window.hwnd);
    RestoreDefaultPrinterAtExit(window.session.printerSwitch,
                                SystemPrinters(kSpoolerLimitAtExitMs));
    saveLanguage();
    window.renderer.release();
    PostQuitMessage(0);
}

void onSize(MainWindow& window, LPARAM lParam) {
    const UINT widthPx = LOWORD(lParam);
    const UINT heightPx = HIWORD(lParam);
    window.renderer.resizeTarget(widthPx, heightPx);
    setClientSize(window, static_cast<LONG>(widthPx), static_cast<LONG>(heightPx));
    invalidate(window);
}

void onDpiChanged(MainWindow& window, WPARAM wParam, LPARAM lParam) {
    const UINT dpi = HIWORD(wParam);
    setDpi(window, dpi != 0 ? dpi : dpiOf(window.hwnd));
    moveTo(window.hwnd, fromRect(*reinterpret_cast<const RECT*>(lParam)),
           SWP_NOZORDER | SWP_NOACTIVATE);
    window.renderer.createTarget(window.hwnd, window.dpi);
    readClientSize(window);
    invalidate(window);
}

void onGetMinMaxInfo(const MainWindow& window, LPARAM lParam) {
    reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = {
        pixelsFromDip(kSmallestSizeDip.width, window.dpi),
        pixelsFromDip(kSmallestSizeDip.height, window.dpi)};
}

Layout layOut(MainWindow& window) {
    LayoutInput input;
    input.clientWidthDip = window.clientWidthDip;
    input.clientHeightDip = window.clientHeightDip;
    input.currentTab = window.state.currentTab;
    for (const CdrInstance& instance : window.session.instances) {
        input.instanceRows.push_back(InstanceRowText(instance));
    }
    input.selectedInstance = window.session.selectedInstance;
    input.signatureStatus = window.session.signatureStatus;
    input.networkEnabled = window.session.cloud.isNetworkEnabled();
    Layout layout = buildLayout(input, measurerOf(window));
    takeLayout(window.state, layout);
    return layout;
}

void publish(MainWindow& window, const Layout& layout) {
    if (!window.accessibility.isAsked()) return;
    const auto before = window.accessibility.current();
    const AccessibleSource source{
        layout, window.state, visibleLines(window.state.log, measurerOf(window)), tr("app_title")};
    window.accessibility.publish(
        std::make_shared<const AccessibleTree>(buildAccessibleTree(source, before.get())),
        window.dpiScale);
}

void onPaint(MainWindow& window) {
    PAINTSTRUCT paint{};
    BeginPaint(window.hwnd, &paint);
    if (!window.renderer.hasTarget()) window.renderer.createTarget(window.hwnd, window.dpi);
    const Layout layout = layOut(window);
    const bool painted = window.renderer.paint(
        {layout, window.state.log, window.state.statusText, window.state.hoverTarget,
         window.state.focusShown ? window.state.focus : std::nullopt});
    EndPaint(window.hwnd, &paint);
    if (window.painted) SetEvent(window.painted->get());
    publish(window, layout);
    // Once more at once, but not for ever: a target that is lost again waits for the next occasion.
    if (!painted && !window.targetLost) invalidate(window);
    window.targetLost = !painted;
}

void onMouseMove(MainWindow& window, LPARAM lParam) {
    TRACKMOUSEEVENT track{sizeof track, TME_LEAVE, window.hwnd, 0};
    TrackMouseEvent(&track);
    if (moveHover(window.state, pointOf(window, lParam))) invalidate(window);
}

void onMouseLeave(MainWindow& window) {
    if (window.state.hoverTarget == -1) return;
    window.state.hoverTarget = -1;
    invalidate(window);
}

// While an action runs the cursor waits; over this window it can be moved then only because a
// question is open.
const wchar_t* cursorAt(const MainWindow& window, POINT client) {
    if (window.actionRunning) return IDC_ARROW;
    const bool clickable = hitTest(window.state.hitTargets, dipFromPixels(window, client)) >= 0;
    return clickable ? IDC_HAND : IDC_ARROW;
}

// The system asks before every mouse move: the answer must not depend on the move's handling.
bool showCursor(const MainWindow& window) {
    POINT cursor{};
    if (!GetCursorPos(&cursor)) return false;
    ScreenToClient(window.hwnd, &cursor);
    SetCursor(LoadCursorW(nullptr, cursorAt(window, cursor)));
    return true;
}

void chooseLanguage(MainWindow& window, std::int32_t position) {
    setLanguage(languageAt(position));
    saveLanguage();
    SetWindowTextW(window.hwnd, tr("app_title"));
}

ClickEffects effectsOf(MainWindow& window) {
    return {
        [&window](std::int32_t index) { window.session.selectedInstance = index; },
        [&window](std::int32_t position) { chooseLanguage(window, position); },
        [&window](std::uint32_t id) { pressButton(window, id); },
    };
}

void showOpenQuestion(MainWindow& window) {
    if (!bringQuestionToFront()) return;
    window.host.setStatus(L"Please answer the open question first.");
    invalidate(window);
}

// The second half of a double click would undo what the first one did.
bool undoesItself(MainWindow& window, ElementId pressed) {
    const LONG now = GetMessageTime();
    const LONG since = now - window.lastPressTime;
    const bool isSecond = pressed == window.lastPressed && since > 0 &&
                          since <= static_cast<LONG>(GetDoubleClickTime());
    window.lastPressTime = now;
    window.lastPressed = pressed;
    return isSecond && pressed.id == kNetworkAction;
}

void onLeftButtonDown(MainWindow& window, LPARAM lParam) {
    if (window.actionRunning) {
        showOpenQuestion(window);
        return;
    }
    const PointDip point = pointOf(window, lParam);
    const int target = hitTest(window.state.hitTargets, point);
    const ElementId pressed =
        target >= 0 ? window.state.hitTargets[static_cast<std::size_t>(target)].identity()
                    : ElementId{};
    if (undoesItself(window, pressed)) return;
    if (dispatchClick(window.state, point, measurerOf(window), effectsOf(window))) {
        invalidate(window);
    }
}

void onMouseWheel(MainWindow& window, WPARAM wParam, LPARAM lParam) {
    POINT cursor{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
    ScreenToClient(window.hwnd, &cursor);
    if (!isInPanel(window.state.log, dipFromPixels(window, cursor))) return;
    scrollLog(window.state.log, GET_WHEEL_DELTA_WPARAM(wParam));
    invalidate(window);
}

// A screen reader's wish, which takes the same path as a click.
void onElementMessage(MainWindow& window, UINT message, ElementId element) {
    if (message == kFocusElement) {
        window.state.focus = element;
    } else if (window.actionRunning) {
        showOpenQuestion(window);
        return;
    } else {
        actOn(window.state, element, effectsOf(window));
    }
    invalidate(window);
}

// Whoever asks first finds the content of the window as it is now.
LRESULT onGetObject(MainWindow& window, WPARAM wParam, LPARAM lParam) {
    const bool wasAsked = window.accessibility.isAsked();
    const LRESULT answer = window.accessibility.answer(window.hwnd, wParam, lParam);
    if (!wasAsked && window.accessibility.isAsked()) publish(window, layOut(window));
    return answer;
}

void onControlKey(MainWindow& window, WPARAM key) {
    if (key == 'A') {
        selectAll(window.state.log);
        invalidate(window);
    } else if (key == 'C') {
        pressButton(window, kCopyAction);
        invalidate(window);
    }
}

void onKeyDown(MainWindow& window, WPARAM key, LPARAM lParam) {
    if (GetKeyState(VK_CONTROL) < 0) {
        onControlKey(window, key);
        return;
    }
    const bool isHeld = (HIWORD(lParam) & KF_REPEAT) != 0;
    if (acts(key) && (isHeld || window.actionRunning)) {
        if (!isHeld) showOpenQuestion(window);
        return;
    }
    if (key == VK_F5) {
        pressButton(window, kRefreshAction);
        invalidate(window);
        return;
    }
    const std::optional<Key> known = keyOf(key);
    if (known && dispatchKey(window.state, *known, measurerOf(window), effectsOf(window))) {
        invalidate(window);
    }
}

LRESULT handle(MainWindow& window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_CREATE:
            onCreate(window);
            return 0;
        case WM_DESTROY:
            onDestroy(window);
            return 0;
        case WM_ENDSESSION:
            // The session may be over before the window is: what must be put back is put back now.
            if (wParam != 0) DestroyWindow(window.hwnd);
            return 0;
        case WM_SIZE:
            onSize(window, lParam);
            return 0;
        case WM_DPICHANGED:
            onDpiChanged(window, wParam, lParam);
            return 0;
        case WM_GETMINMAXINFO:
            onGetMinMaxInfo(window, lParam);
            return 0;
        case WM_PAINT:
            onPaint(window);
            return 0;
        case WM_ERASEBKGND:
            return 1;
        case WM_MOUSEMOVE:
            onMouseMove(window, lParam);
            return 0;
        case WM_MOUSELEAVE:
            onMouseLeave(window);
            return 0;
        case WM_LBUTTONDOWN:
            onLeftButtonDown(window, lParam);
            return 0;
        case WM_MOUSEWHEEL:
            onMouseWheel(window, wParam, lParam);
            return 0;
        case WM_KEYDOWN:
            onKeyDown(window, wParam, lParam);
            return 0;
        case kSignaturesUpdated:
            onSignaturesUpdated(window);
            return 0;
        case kActOnElement:
        case kFocusElement:
            onElementMessage(window, message,
                             {static_cast<HitKind>(wParam), static_cast<std::uint32_t>(lParam)});
            return 0;
        case WM_GETOBJECT:
            if (const LRESULT answer = onGetObject(window, wParam, lParam)) return answer;
            break;
        case WM_SETCURSOR:
            if (LOWORD(lParam) == HTCLIENT && showCursor(window)) return TRUE;
            break;
        default:
            break;
    }
    return DefWindowProcW(window.hwnd, message, wParam, lParam);
}

// An exception must not travel through the system that called: it ends the program here.
LRESULT CALLBACK windowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    if (message == WM_NCCREATE) {
        auto* window = static_cast<MainWindow*>(
            reinterpret_cast<const CREATESTRUCTW*>(lParam)->lpCreateParams);
        window->hwnd = hwnd;
        SetWindowLongPtrW(hwnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(window));
    }
    auto* window = reinterpret_cast<MainWindow*>(GetWindowLongPtrW(hwnd, GWLP_USERDATA));
    if (window == nullptr) return DefWindowProcW(hwnd, message, wParam, lParam);
    return handle(*window, message, wParam, lParam);
}

// The frame drawn for the size, not the large one scaled.
HICON loadIcon(HINSTANCE module, int widthMetric, int heightMetric) {
    return static_cast<HICON>(LoadImageW(module, MAKEINTRESOURCEW(kIconId), IMAGE_ICON,
                                         GetSystemMetrics(widthMetric),
                                         GetSystemMetrics(heightMetric), LR_DEFAULTCOLOR));
}

// The window may stand on another monitor than the one its first size was made for.
void correctSizeForDpi(HWND hwnd, UINT usedDpi) {
    const UINT dpi = dpiOf(hwnd);
    if (dpi == 0 || dpi == usedDpi) return;
    RECT old{};
    GetWindowRect(hwnd, &old);
    moveTo(hwnd, placeAround(fromRect(old), dpi, workAreaAround(hwnd)), SWP_NOZORDER);
}

// Marks that an action runs, for the window and for the eye, for as long as it lives.
class RunningAction {
  public:
    explicit RunningAction(MainWindow& window) : window_(window) {
        window_.actionRunning = true;
        SetCursor(LoadCursorW(nullptr, IDC_WAIT));
    }
    RunningAction(const RunningAction&) = delete;
    RunningAction& operator=(const RunningAction&) = delete;
    ~RunningAction() {
        if (IsWindow(window_.hwnd)) dropInputSince(window_.hwnd, start_);
        window_.actionRunning = false;
        showCursor(window_);
    }

  private:
    MainWindow& window_;
    DWORD start_ = GetTickCount();
};

}  // namespace

HWND createMainWindow(HINSTANCE module, MainWindow& window) {
    const UINT dpi = startDpi();
    setDpi(window, dpi);

    WNDCLASSEXW windowClass{};
    windowClass.cbSize = sizeof windowClass;
    windowClass.lpfnWndProc = windowProc;
    windowClass.hInstance = module;
    windowClass.hIcon = loadIcon(module, SM_CXICON, SM_CYICON);
    windowClass.hIconSm = loadIcon(module, SM_CXSMICON, SM_CYSMICON);
    windowClass.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    windowClass.lpszClassName = kClassName;
    RegisterClassExW(&windowClass);

    const RectPx rect = firstPlace(dpi, primaryWorkArea());
    HWND hwnd =
        CreateWindowExW(0, kClassName, tr("app_title"), WS_OVERLAPPEDWINDOW | WS_VISIBLE, rect.left,
                        rect.top, rect.width(), rect.height(), nullptr, nullptr, module, &window);
    if (hwnd != nullptr) correctSizeForDpi(hwnd, dpi);
    return hwnd;
}

void pressButton(MainWindow& window, std::uint32_t id) {
    if (window.actionRunning) return;
    const RunningAction running(window);
    runGuarded(window.host, [&] { runAction(id, siteOf(window)); });
}
