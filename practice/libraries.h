// The libraries that the practice program hangs in.
#pragma once

#include "practice/hang.h"

/// Hangs in `function` of a library beside the program or one folder up, and keeps it loaded.
void HangInLibrary(const wchar_t* library, const char* function, Hang& hang);
