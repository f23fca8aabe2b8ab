// The least program that paints a window with Direct2D: what a start costs before anything of ours.
#include <windows.h>

#include <d2d1.h>
#include <wrl/client.h>

namespace {

Microsoft::WRL::ComPtr<ID2D1HwndRenderTarget> target;

void createTarget(HWND window) {
    Microsoft::WRL::ComPtr<ID2D1Factory> factory;
    D2D1CreateFactory(D2D1_FACTORY_TYPE_SINGLE_THREADED, __uuidof(ID2D1Factory), nullptr,
                      reinterpret_cast<void**>(factory.GetAddressOf()));
    RECT client{};
    GetClientRect(window, &client);
    const D2D1_RENDER_TARGET_PROPERTIES properties{};
    const D2D1_HWND_RENDER_TARGET_PROPERTIES windowProperties{
        window,
        {static_cast<UINT32>(client.right), static_cast<UINT32>(client.bottom)},
        D2D1_PRESENT_OPTIONS_NONE};
    factory->CreateHwndRenderTarget(properties, windowProperties, &target);
}

LRESULT CALLBACK windowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_CREATE) createTarget(window);
    if (message == WM_PAINT && target) {
        constexpr D2D1_COLOR_F kWhite{1, 1, 1, 1};
        target->BeginDraw();
        target->Clear(&kWhite);
        target->EndDraw();
        ValidateRect(window, nullptr);
        return 0;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

}  // namespace

int WINAPI wWinMain(HINSTANCE module, HINSTANCE, PWSTR, int) {
    WNDCLASSEXW windowClass{};
    windowClass.cbSize = sizeof windowClass;
    windowClass.lpfnWndProc = windowProc;
    windowClass.hInstance = module;
    windowClass.lpszClassName = L"Bare";
    RegisterClassExW(&windowClass);
    CreateWindowExW(0, L"Bare", L"Bare", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 180, 110, 1040, 880,
                    nullptr, nullptr, module, nullptr);
    MSG message{};
    while (GetMessageW(&message, nullptr, 0, 0))
        DispatchMessageW(&message);
    return 0;
}
