// What this process holds of the system: equal before and after means that nothing leaked.
#pragma once

#include <windows.h>

#include <cstdint>

/// All handle values that are open. Counted one by one, for the system's own count is not to be had
/// everywhere.
inline int OpenHandles() {
    constexpr std::uintptr_t kHighest = 0x8000;
    int open = 0;
    for (std::uintptr_t value = 4; value < kHighest; value += 4) {
        DWORD flags = 0;
        open += GetHandleInformation(reinterpret_cast<HANDLE>(value), &flags) ? 1 : 0;
    }
    return open;
}
