#include "app/input_win.h"

#include <iterator>
#include <string_view>

namespace {

BOOL CALLBACK isQuestion(HWND hwnd, LPARAM found) {
    wchar_t name[16] = L"";
    GetClassNameW(hwnd, name, static_cast<int>(std::size(name)));
    if (std::wstring_view(name) != L"#32770" || !IsWindowVisible(hwnd)) return TRUE;
    *reinterpret_cast<HWND*>(found) = hwnd;
    return FALSE;
}

}  // namespace

bool bringQuestionToFront() {
    HWND question = nullptr;
    EnumThreadWindows(GetCurrentThreadId(), isQuestion, reinterpret_cast<LPARAM>(&question));
    if (question != nullptr) SetForegroundWindow(question);
    return question != nullptr;
}

std::optional<Key> keyOf(WPARAM key) {
    switch (key) {
        case VK_TAB:
            return GetKeyState(VK_SHIFT) < 0 ? Key::previous : Key::next;
        case VK_LEFT:
            return Key::left;
        case VK_RIGHT:
            return Key::right;
        case VK_UP:
            return Key::up;
        case VK_DOWN:
            return Key::down;
        case VK_PRIOR:
            return Key::pageUp;
        case VK_NEXT:
            return Key::pageDown;
        case VK_HOME:
            return Key::home;
        case VK_END:
            return Key::end;
        case VK_SPACE:
        case VK_RETURN:
            return Key::act;
        default:
            return std::nullopt;
    }
}

bool acts(WPARAM key) {
    return key == VK_SPACE || key == VK_RETURN || key == VK_F5;
}

void dropInputSince(HWND hwnd, DWORD start) {
    const auto nextIs = [&](MSG& message, UINT kind) {
        return PeekMessageW(&message, hwnd, kind, kind, PM_NOREMOVE) && message.message == kind &&
               static_cast<LONG>(message.time - start) >= 0;
    };
    MSG message;
    while (nextIs(message, WM_LBUTTONDOWN))
        PeekMessageW(&message, hwnd, WM_LBUTTONDOWN, WM_LBUTTONDOWN, PM_REMOVE);
    while (nextIs(message, WM_KEYDOWN) && acts(message.wParam))
        PeekMessageW(&message, hwnd, WM_KEYDOWN, WM_KEYDOWN, PM_REMOVE);
}
