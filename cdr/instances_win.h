// Discovery of the running copies of CorelDRAW.
#pragma once

#include <vector>

#include "cdr/cdr_instance.h"

/// Every process named "CorelDRW.exe" (any case) that shows a visible, unowned top-level window, in
/// the order of the system's process snapshot. A hung window of which the system shows its own copy
/// counts as visible. Empty when there is none or no snapshot to be had.
std::vector<CdrInstance> EnumerateCdrInstances();
