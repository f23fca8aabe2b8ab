// A long day in one process: the real window, the real handlers, CorelDRAWs that hang, a screen
// reader. MIRELO_ENDURANCE is the share of the day in per cent; an ordinary run does a few.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "app/actions.h"
#include "app/main_window_win.h"
#include "cloud/settings_win.h"
#include "tests/cdr/practice_process_win.h"

namespace {

int timesOf(int wholeDay) {
    const char* given = std::getenv("MIRELO_ENDURANCE");
    const int percent = given != nullptr ? std::atoi(given) : 2;
    return std::max(1, wholeDay * percent / 100);
}

struct Held {
    int handles;
    DWORD gdiObjects;  // 0 under Wine
    std::size_t heapBytes;
};

// Handle values that are open, one by one: the system's own count is not to be had everywhere.
int openHandles() {
    constexpr std::uintptr_t kHighest = 0x8000;
    int open = 0;
    for (std::uintptr_t value = 4; value < kHighest; value += 4) {
        DWORD flags = 0;
        open += GetHandleInformation(reinterpret_cast<HANDLE>(value), &flags) ? 1 : 0;
    }
    return open;
}

// In use on the heap that the C++ runtime and the system's libraries allocate from.
std::size_t heapBytes() {
    const HANDLE heap = GetProcessHeap();
    std::size_t bytes = 0;
    PROCESS_HEAP_ENTRY entry{};
    HeapLock(heap);
    while (HeapWalk(heap, &entry))
        bytes += (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0 ? entry.cbData : 0;
    HeapUnlock(heap);
    return bytes;
}

class Day {
  public:
    Day() {
        // The download at the start would hold handles until it ends.
        const bool wasEnabled = IsNetworkEnabled();
        SetNetworkEnabled(false);
        createMainWindow(GetModuleHandleW(nullptr), window_);
        SetNetworkEnabled(wasEnabled);
        SendMessageW(window_.hwnd, WM_GETOBJECT, 0, kAutomationRootId);
    }
    Day(const Day&) = delete;
    Day& operator=(const Day&) = delete;
    ~Day() { DestroyWindow(window_.hwnd); }

    void live(int captures, int lines) {
        for (int i = 0; i < captures; ++i) {
            if (i % 2 == 0) pressButton(window_, kRefreshAction);
            ASSERT_EQ(window_.session.instances.size(), 2U);
            // Another process costs a registration with the debug-help library, which is slow.
            window_.session.selectedInstance = i / 20 % 2;
            // A window that has gone counts as hung at once: few captures wait for the probe.
            for (CdrInstance& instance : window_.session.instances)
                instance.mainWindow = i % 10 != 0 ? nullptr : instance.mainWindow;
            window_.session.lastCapture.frames.clear();
            pressButton(window_, kCaptureAction);
            ASSERT_FALSE(window_.session.lastCapture.frames.empty()) << i;
            if (i % 10 == 0) paint();
        }
        for (int i = 0; i < lines; ++i) {
            window_.host.appendLog(std::to_wstring(i) + std::wstring(300, L'w') + L" end");
            if (i % 10 == 0) paint();
        }
    }

    // What is held once the report is empty and all messages are handled.
    Held held() {
        pressButton(window_, kClearAction);
        paint();
        return {openHandles(), GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS), heapBytes()};
    }

  private:
    void paint() {
        RedrawWindow(window_.hwnd, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
            DispatchMessageW(&message);
    }

    MainWindow window_;
};

}  // namespace

TEST(Endurance, LeavesADayWithWhatItBeganWith) {
    const PracticeProcess waiting(L"lock-held");
    const PracticeProcess alsoWaiting(L"font");
    Day day;
    // Long enough that both are registered and caches of the system are full.
    day.live(21, 30);
    const Held before = day.held();
    day.live(timesOf(1000), timesOf(2000));
    const Held after = day.held();
    std::printf("handles %d, then %d; heap %zu KB, then %zu KB\n", before.handles, after.handles,
                before.heapBytes >> 10, after.heapBytes >> 10);

    EXPECT_EQ(waiting.heldThreads() + alsoWaiting.heldThreads(), 0);
    EXPECT_EQ(after.handles, before.handles);
    EXPECT_EQ(after.gdiObjects, before.gdiObjects);
    EXPECT_LT(after.heapBytes, before.heapBytes + (64 << 10));
}
