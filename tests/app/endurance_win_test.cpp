// A long day in one process: the real window, the real handlers, CorelDRAWs that hang, a screen
// reader. MIRELO_ENDURANCE is the share of the day in per cent; an ordinary run does a few.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "app/actions.h"
#include "app/main_window_win.h"
#include "cloud/settings_win.h"
#include "tests/cdr/practice_process_win.h"

namespace {

struct Held {
    int handles = 0;
    std::size_t heapBytes = 0;
};

Held heldNow() {
    Held held;
    // Handle values that are open, one by one: the system's own count is not to be had everywhere.
    for (std::uintptr_t value = 4; value < 0x8000; value += 4) {
        DWORD flags = 0;
        held.handles += GetHandleInformation(reinterpret_cast<HANDLE>(value), &flags) ? 1 : 0;
    }
    const HANDLE heap = GetProcessHeap();
    PROCESS_HEAP_ENTRY entry{};
    HeapLock(heap);
    while (HeapWalk(heap, &entry))
        held.heapBytes += (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0 ? entry.cbData : 0;
    HeapUnlock(heap);
    return held;
}

void paint(const MainWindow& window) {
    RedrawWindow(window.hwnd, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
        DispatchMessageW(&message);
}

// What is held after so much, once the report is empty and all messages are handled.
Held live(MainWindow& window, int captures, int lines) {
    for (int i = 0; i < captures; ++i) {
        if (i % 2 == 0) pressButton(window, kRefreshAction);
        // Another process costs a registration with the debug-help library, which is slow.
        window.session.selectedInstance = i / 20 % 2;
        // A window that has gone counts as hung at once: few captures wait for the probe.
        for (CdrInstance& instance : window.session.instances)
            instance.mainWindow = i % 10 != 0 ? nullptr : instance.mainWindow;
        window.session.lastCapture.frames.clear();
        pressButton(window, kCaptureAction);
        EXPECT_FALSE(window.session.lastCapture.frames.empty()) << i;
        if (i % 10 == 0) paint(window);
    }
    for (int i = 0; i < lines; ++i) {
        window.host.appendLog(std::to_wstring(i) + std::wstring(300, L'w') + L" end");
        if (i % 10 == 0) paint(window);
    }
    pressButton(window, kClearAction);
    paint(window);
    return heldNow();
}

}  // namespace

TEST(Endurance, LeavesADayWithWhatItBeganWith) {
    const PracticeProcess waiting(L"lock-held");
    const PracticeProcess alsoWaiting(L"font");
    MainWindow window;
    // The download at the start would hold handles until it ends.
    const bool wasEnabled = IsNetworkEnabled();
    SetNetworkEnabled(false);
    createMainWindow(GetModuleHandleW(nullptr), window);
    SetNetworkEnabled(wasEnabled);
    SendMessageW(window.hwnd, WM_GETOBJECT, 0, kAutomationRootId);
    // Long enough that both are registered and caches of the system are full.
    const Held before = live(window, 21, 30);
    const char* given = std::getenv("MIRELO_ENDURANCE");
    const int percent = given != nullptr ? std::atoi(given) : 2;
    const Held after = live(window, 10 * percent, 20 * percent);
    DestroyWindow(window.hwnd);
    std::printf("handles %d, then %d; heap %zu KB, then %zu KB\n", before.handles, after.handles,
                before.heapBytes >> 10, after.heapBytes >> 10);

    EXPECT_EQ(waiting.heldThreads() + alsoWaiting.heldThreads(), 0);
    EXPECT_EQ(after.handles, before.handles);
    EXPECT_LT(after.heapBytes, before.heapBytes + (64 << 10));
}
