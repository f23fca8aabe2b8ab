// All three functions are looked up by name: the program starts without any of them, on the first
// Windows 10 too.
#include "app/dpi_win.h"

#include "base/handle_win.h"

namespace {

constexpr UINT kDefaultDpi = 96;

template <typename Function>
Function lookUp(HMODULE module, const char* name) {
    if (module == nullptr) return nullptr;
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

}  // namespace

void makeDpiAware() {
    using SetAwareness = BOOL(WINAPI*)(HANDLE);
    const auto setAwareness =
        lookUp<SetAwareness>(GetModuleHandleW(L"user32.dll"), "SetProcessDpiAwarenessContext");
    constexpr LONG_PTR kSystemAware = -2;
    if (setAwareness != nullptr) setAwareness(reinterpret_cast<HANDLE>(kSystemAware));
}

UINT startDpi() {
    const HMONITOR monitor = MonitorFromPoint({0, 0}, MONITOR_DEFAULTTOPRIMARY);
    if (monitor == nullptr) return kDefaultDpi;
    const LibraryHandle shcore(LoadLibraryW(L"shcore.dll"));
    using GetDpi = HRESULT(WINAPI*)(HMONITOR, int, UINT*, UINT*);
    const auto getDpi = lookUp<GetDpi>(shcore.get(), "GetDpiForMonitor");
    constexpr int kEffectiveDpi = 0;
    UINT x = 0;
    UINT y = 0;
    if (getDpi == nullptr || getDpi(monitor, kEffectiveDpi, &x, &y) != S_OK) return kDefaultDpi;
    return x != 0 ? x : kDefaultDpi;
}

UINT dpiOf(HWND window) {
    using GetDpi = UINT(WINAPI*)(HWND);
    static const auto getDpi = lookUp<GetDpi>(GetModuleHandleW(L"user32.dll"), "GetDpiForWindow");
    return getDpi != nullptr ? getDpi(window) : startDpi();
}
