// Processes by name, and processes that may have ended.
#pragma once

#include <windows.h>

#include <vector>

/// The ids of all processes whose executable has this file name in any case, in the order of the
/// system's snapshot.
std::vector<DWORD> processesNamed(const wchar_t* fileName);

/// True when the process has ended although somebody's handle still lets it be opened. The handle
/// needs the right to query limited information.
bool hasExited(HANDLE process);
