// What this process holds of the system: equal before and after means that nothing leaked.
#pragma once

#include <cstddef>

/// All handle values that are open. Counted one by one, for the system's own count is not to be had
/// everywhere.
int OpenHandles();

/// Pens, brushes, bitmaps, fonts, device contexts; -1 where they cannot be counted.
int GdiObjects();

/// Windows of this thread, shown or not, with all they contain.
int OwnWindows();

/// Bytes in use on the heap that the C++ runtime and the system's libraries allocate from.
std::size_t HeapBytes();

/// Memory that the process has asked for, and what of it is in use.
std::size_t CommittedBytes();
std::size_t ResidentBytes();
