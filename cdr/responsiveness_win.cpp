#include "cdr/responsiveness_win.h"

#include <windows.h>

bool IsWindowResponsive(WindowHandle window, unsigned timeoutMs) {
    if (window == nullptr) return false;
    DWORD_PTR result = 0;
    return SendMessageTimeoutW(static_cast<HWND>(window), WM_NULL, 0, 0,
                               SMTO_BLOCK | SMTO_ABORTIFHUNG, timeoutMs, &result) != 0;
}
