// Dots per inch: awareness, and what a monitor and a window have.
#pragma once

#include <windows.h>

/// Makes the process system DPI aware where Windows knows how.
void makeDpiAware();

/// The primary monitor's effective DPI, 96 where it cannot be told.
UINT startDpi();

/// The window's DPI; where Windows keeps none for windows, the primary monitor's.
UINT dpiOf(HWND window);
