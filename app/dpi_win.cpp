// Both functions are looked up by name: they came with later versions of Windows 10 and 8.1.
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

int pixelsFromDip(int dip, UINT dpi) {
    return static_cast<int>(dip * static_cast<double>(dpi) / 96);
}
