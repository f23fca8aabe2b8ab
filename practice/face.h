// What the practice program's windows look like: a drawing program at rest.
#pragma once

#include <windows.h>

/// Answers WM_PAINT for the main window, the splash (without a caption) and the palette.
void PaintFace(HWND window);
