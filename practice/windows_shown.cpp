#include "practice/windows_shown.h"

#include "practice/face.h"

namespace {

constexpr UINT kRunWork = WM_APP;

constexpr wchar_t kMainClass[] = L"CorelDRAW25.Practice.Main";
constexpr wchar_t kSplashClass[] = L"CorelDRAW25.Practice.Splash";
constexpr wchar_t kHelperClass[] = L"CorelDRAW25.Practice.Helper";

LRESULT CALLBACK WindowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case kRunWork: {
            const Work& work = *reinterpret_cast<const Work*>(lParam);
            work.run(work.context);
            return 0;
        }
        case WM_PAINT:
            PaintFace(window);
            return 0;
        case WM_CLOSE:
            PostQuitMessage(0);
            return 0;
        default:
            return DefWindowProcW(window, message, wParam, lParam);
    }
}

void RegisterClasses() {
    for (const wchar_t* name : {kMainClass, kSplashClass, kHelperClass}) {
        WNDCLASSEXW description = {};
        description.cbSize = sizeof(description);
        description.style = CS_HREDRAW | CS_VREDRAW;
        description.lpfnWndProc = WindowProcedure;
        description.hInstance = GetModuleHandleW(nullptr);
        description.hCursor = LoadCursorW(nullptr, IDC_ARROW);
        description.lpszClassName = name;
        RegisterClassExW(&description);
    }
}

struct Placement {
    DWORD style;
    DWORD extendedStyle;
    int x;
    int y;
    int width;
    int height;
};

constexpr Placement kMain = {WS_OVERLAPPEDWINDOW, 0, CW_USEDEFAULT, CW_USEDEFAULT, 780, 560};
constexpr Placement kSplash = {WS_POPUP | WS_BORDER, WS_EX_TOOLWINDOW, 260, 180, 480, 300};
constexpr Placement kHidden = {WS_OVERLAPPEDWINDOW, 0, 0, 0, 200, 100};
constexpr Placement kHiddenOnTop = {WS_POPUP, WS_EX_TOPMOST | WS_EX_TOOLWINDOW, 0, 0, 200, 100};
constexpr Placement kPalette = {WS_POPUP | WS_CAPTION, WS_EX_TOOLWINDOW, 0, 0, 150, 80};

HWND Create(const wchar_t* className, const std::wstring& title, const Placement& at, HWND parent) {
    return CreateWindowExW(at.extendedStyle, className, title.c_str(), at.style, at.x, at.y,
                           at.width, at.height, parent, nullptr, GetModuleHandleW(nullptr),
                           nullptr);
}

/// The windows that the search for the main window must pass over.
struct Helpers {
    HWND frame;    // top-level, without an owner, never shown
    HWND palette;  // visible, owned by the frame
};

Helpers CreateHelpers() {
    Create(kHelperClass, L"Messages", kHidden, HWND_MESSAGE);
    // Before every visible window in the system's order, and never shown.
    Create(kHelperClass, L"Notifications", kHiddenOnTop, nullptr);
    const HWND frame = Create(kHelperClass, L"Frame", kHidden, nullptr);
    return {frame, Create(kHelperClass, L"Object Styles", kPalette, frame)};
}

/// Shows the palette inside the main window's area and before it in the system's order.
void ShowPalette(HWND palette, HWND mainWindow) {
    constexpr int kFromRight = 230;
    constexpr int kFromTop = 110;
    RECT area = {};
    GetWindowRect(mainWindow, &area);
    SetWindowPos(palette, HWND_TOP, area.right - kFromRight, area.top + kFromTop, 0, 0,
                 SWP_NOSIZE | SWP_NOACTIVATE | SWP_SHOWWINDOW);
}

/// Gives the windows the time to reach the screen: a thread that hangs shows nothing any more.
void PumpUntilQuiet() {
    constexpr DWORD kQuietMs = 60;
    constexpr ULONGLONG kLongestMs = 2000;
    const ULONGLONG start = GetTickCount64();
    do {
        MSG message = {};
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            if (message.message == WM_QUIT) {
                PostQuitMessage(static_cast<int>(message.wParam));
                return;
            }
            DispatchMessageW(&message);
        }
    } while (MsgWaitForMultipleObjects(0, nullptr, FALSE, kQuietMs, QS_ALLINPUT) != WAIT_TIMEOUT &&
             GetTickCount64() - start < kLongestMs);
}

}  // namespace

HWND ShowWindows(Face face, const std::wstring& way) {
    RegisterClasses();
    const Helpers helpers = CreateHelpers();
    const std::wstring title = L"CorelDRAW (practice) - " + way;
    HWND window = nullptr;
    if (face == Face::splash) {
        window = Create(kSplashClass, title, kSplash, helpers.frame);
        ShowWindow(window, SW_SHOWNOACTIVATE);
    } else {
        window = Create(kMainClass, title, kMain, nullptr);
        ShowWindow(window, SW_SHOWNOACTIVATE);
        ShowPalette(helpers.palette, window);
    }
    UpdateWindow(window);
    PumpUntilQuiet();
    return window;
}

void PostWork(HWND window, const Work& work) {
    PostMessageW(window, kRunWork, 0, reinterpret_cast<LPARAM>(&work));
}

void RunMessageLoop() {
    MSG message = {};
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}
