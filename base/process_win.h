// Processes that may have ended.
#pragma once

#include <windows.h>

/// True when the process has ended although somebody's handle still lets it be opened. The handle
/// needs the right to query limited information.
bool hasExited(HANDLE process);
