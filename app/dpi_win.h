// Dots per inch: awareness, and what to start with.
#pragma once

#include <windows.h>

/// Makes the process system DPI aware where Windows knows how.
void makeDpiAware();

/// The primary monitor's effective DPI, 96 where it cannot be told.
UINT startDpi();

/// A length in device-independent pixels as whole pixels.
int pixelsFromDip(int dip, UINT dpi);
