// Captures on a Windows whose functions fail, crash and block: whatever happens, the target goes
// on.
#include <windows.h>

#include <gtest/gtest.h>

#include "diagnosis/stack_capture_win.h"
#include "tests/cdr/practice_process_win.h"
#include "tests/hostile/imitation.h"

IMITATE("kernel32.dll", GetThreadContext);

namespace {

// How often somebody still holds the thread suspended.
DWORD SuspendCount(DWORD threadId) {
    const KernelHandle thread(OpenThread(THREAD_SUSPEND_RESUME, FALSE, threadId));
    const DWORD count = SuspendThread(thread.get());
    ResumeThread(thread.get());
    return count;
}

}  // namespace

TEST(HostileCapture, LetsTheThreadGo) {
    const PracticeProcess practice(L"plugin-sleep");
    const CdrInstance target = practice.listed();
    const Staged fails(GetThreadContextImitation, [](HANDLE, CONTEXT*) { return FALSE; });
    EXPECT_EQ(CaptureMainThreadStack(target.pid, target.mainThreadId).error,
              L"Failed to read thread context.");
    EXPECT_EQ(SuspendCount(target.mainThreadId), 0U);
}
