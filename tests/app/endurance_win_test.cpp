// A long day in one process: the real window, the real handlers, CorelDRAWs that hang, real files.
// MIRELO_ENDURANCE is the share of the day in per cent; an ordinary run does a few.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "app/actions.h"
#include "app/main_window_win.h"
#include "cloud/settings_win.h"
#include "slim/slim_action.h"
#include "slim/slim_files_win.h"
#include "tests/base/files/staged_folder_win.h"
#include "tests/base/resources_win.h"
#include "tests/cdr/practice_process_win.h"
#include "tests/slim/document_builder.h"

namespace {

int timesOf(int wholeDay) {
    const char* given = std::getenv("MIRELO_ENDURANCE");
    const int percent = given != nullptr ? std::atoi(given) : 2;
    return std::max(1, wholeDay * percent / 100);
}

// A paint costs more than all that it shows.
constexpr int kPainted = 10;

struct Held {
    int handles;
    int windows;
    DWORD gdiObjects;  // 0 under Wine
    std::size_t heapBytes;
};

BOOL CALLBACK countWindow(HWND, LPARAM count) {
    ++*reinterpret_cast<int*>(count);
    return TRUE;
}

// Windows of this thread, shown or not, with all they contain.
int ownWindows() {
    int windows = 0;
    const auto withChildren = [](HWND window, LPARAM count) {
        EnumChildWindows(window, countWindow, count);
        return countWindow(window, count);
    };
    EnumThreadWindows(GetCurrentThreadId(), withChildren, reinterpret_cast<LPARAM>(&windows));
    return windows;
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
        window_.host.confirm = [](const std::wstring&, const std::wstring&, ConfirmStyle) {
            return true;
        };
    }
    Day(const Day&) = delete;
    Day& operator=(const Day&) = delete;
    ~Day() { DestroyWindow(window_.hwnd); }

    void captures(int times) {
        for (int i = 0; i < times; ++i) {
            if (i % 2 == 0) pressButton(window_, kRefreshAction);
            ASSERT_EQ(window_.session.instances.size(), 2U);
            // Another process costs a registration with the debug-help library, which is slow.
            constexpr int kInARow = 20;
            window_.session.selectedInstance = i / kInARow % 2;
            // A window that has gone counts as hung at once: few captures wait for the probe.
            constexpr int kProbed = 10;
            if (i % kProbed != 0) {
                for (CdrInstance& instance : window_.session.instances)
                    instance.mainWindow = nullptr;
            }
            window_.session.lastCapture.frames.clear();
            pressButton(window_, kCaptureAction);
            ASSERT_FALSE(window_.session.lastCapture.frames.empty()) << i;
            if (i % kPainted == 0) paint();
        }
    }

    void linesWithScrolling(int times) {
        for (int i = 0; i < times; ++i) {
            window_.host.appendLog(std::to_wstring(i) + std::wstring(300, L'w') + L" end");
            wheel(i % 2 == 0 ? 10 : -10);
            if (i % kPainted == 0) paint();
        }
    }

    void slimmedDocuments(int times) {
        const Bytes document = corpusDocument("x7");
        for (int i = 0; i < times; ++i) {
            const StagedFolder folder;
            const std::wstring path = folder.path() + L"\\plan.cdr";
            WriteStaged(path, std::string(document.begin(), document.end()));
            const std::wstring answer = path + std::wstring(2, L'\0');
            slimSelection(answer, window_.host, realSlimFiles());
            FileImage slimmed;
            ASSERT_TRUE(realSlimFiles().readWhole(path, slimmed));
            ASSERT_LT(slimmed.bytes.size(), document.size());
        }
        paint();
    }

    // What is held once the report is empty and all messages are handled.
    Held held() {
        pressButton(window_, kClearAction);
        paint();
        return {OpenHandles(), ownWindows(), GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS),
                heapBytes()};
    }

  private:
    void paint() {
        RedrawWindow(window_.hwnd, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
            DispatchMessageW(&message);
    }

    void wheel(int notches) {
        const RectDip& panel = window_.state.log.panel;
        POINT point{static_cast<LONG>(panel.x + 5), static_cast<LONG>(panel.y + 5)};
        ClientToScreen(window_.hwnd, &point);
        SendMessageW(window_.hwnd, WM_MOUSEWHEEL,
                     MAKEWPARAM(0, static_cast<WORD>(notches * WHEEL_DELTA)),
                     MAKELPARAM(point.x, point.y));
        EXPECT_EQ(window_.state.log.scrollBack > 0, notches > 0);
    }

    MainWindow window_;
};

void report(const char* when, const Held& held) {
    std::printf("%-10s handles %d, windows %d, heap %zu KB\n", when, held.handles, held.windows,
                held.heapBytes >> 10);
    std::fflush(stdout);
}

}  // namespace

TEST(Endurance, LeavesADayWithWhatItBeganWith) {
    const PracticeProcess waiting(L"lock-held");
    const PracticeProcess alsoWaiting(L"font");
    Day day;
    const auto live = [&](int captures, int lines, int documents) {
        day.captures(captures);
        day.linesWithScrolling(lines);
        day.slimmedDocuments(documents);
    };
    // Long enough that both are registered and caches of the system are full.
    live(21, 30, 1);
    const Held before = day.held();
    report("warmed up", before);
    live(timesOf(1000), timesOf(2000), timesOf(200));
    const Held after = day.held();
    report("after", after);

    EXPECT_EQ(waiting.heldThreads() + alsoWaiting.heldThreads(), 0);
    EXPECT_EQ(after.handles, before.handles);
    EXPECT_EQ(after.windows, before.windows);
    EXPECT_EQ(after.gdiObjects, before.gdiObjects);
    EXPECT_LT(after.heapBytes, before.heapBytes + (64 << 10));
}
