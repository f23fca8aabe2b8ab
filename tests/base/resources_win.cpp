#include "tests/base/resources_win.h"

#include <windows.h>

#include <psapi.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace {

// An entry of the table of GDI objects, which every process sees.
struct GdiEntry {
    std::uint64_t object;
    std::uint16_t processId;
    std::uint16_t count;
    std::uint16_t unique;
    std::uint8_t type;
    std::uint8_t flags;
    std::uint64_t user;
};

// Wine has the table where Windows had it up to Windows 10.
int objectsInTheTable() {
    constexpr unsigned kTableInTheEnvironmentBlock = 0xF8;
    constexpr int kEntries = 0x4000;
    const auto blockOfThisProcess =
        reinterpret_cast<const std::byte* (*)()>(reinterpret_cast<void (*)()>(
            GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "RtlGetCurrentPeb")));
    if (blockOfThisProcess == nullptr) return -1;
    const GdiEntry* table = nullptr;
    std::memcpy(&table, blockOfThisProcess() + kTableInTheEnvironmentBlock, sizeof table);
    if (table == nullptr) return -1;
    int objects = 0;
    for (int i = 0; i < kEntries; ++i) {
        objects += table[i].type != 0 ? 1 : 0;
    }
    return objects;
}

BOOL CALLBACK countWindow(HWND, LPARAM count) {
    ++*reinterpret_cast<int*>(count);
    return TRUE;
}

BOOL CALLBACK countWithChildren(HWND window, LPARAM count) {
    EnumChildWindows(window, countWindow, count);
    return countWindow(window, count);
}

}  // namespace

int OpenHandles() {
    constexpr std::uintptr_t kHighest = 0x8000;
    int open = 0;
    for (std::uintptr_t value = 4; value < kHighest; value += 4) {
        DWORD flags = 0;
        open += GetHandleInformation(reinterpret_cast<HANDLE>(value), &flags) ? 1 : 0;
    }
    return open;
}

int GdiObjects() {
    const DWORD counted = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
    return counted != 0 ? static_cast<int>(counted) : objectsInTheTable();
}

int OwnWindows() {
    int windows = 0;
    EnumThreadWindows(GetCurrentThreadId(), countWithChildren, reinterpret_cast<LPARAM>(&windows));
    return windows;
}

std::size_t HeapBytes() {
    const HANDLE heap = GetProcessHeap();
    std::size_t bytes = 0;
    PROCESS_HEAP_ENTRY entry{};
    HeapLock(heap);
    while (HeapWalk(heap, &entry)) {
        if (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) bytes += entry.cbData;
    }
    HeapUnlock(heap);
    return bytes;
}

std::size_t CommittedBytes() {
    PROCESS_MEMORY_COUNTERS counters{};
    K32GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return counters.PagefileUsage;
}

std::size_t ResidentBytes() {
    PROCESS_MEMORY_COUNTERS counters{};
    K32GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return counters.WorkingSetSize;
}
