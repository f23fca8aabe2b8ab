// The sensor of the module list.
#pragma once

#include <windows.h>

#include <vector>

#include "diagnosis/module_list.h"

/// The modules of a process, as far as they can be read; needs the rights to query information and
/// to read memory. Empty when the process cannot be read at all.
std::vector<LoadedModule> ReadModules(HANDLE process);
