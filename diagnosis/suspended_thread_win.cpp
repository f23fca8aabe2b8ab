// The watchdog is a thread that runs before anything is suspended: whatever the debug-help library
// may be stuck in, the watchdog needs no memory, no loader and no other thread to do its work.
#include "diagnosis/suspended_thread_win.h"

#include <cstdint>
#include <cstdlib>
#include <exception>

#include "base/handle_win.h"

namespace {

constexpr SIZE_T kWatchdogStackBytes = 64 << 10;

struct Hold {
    SRWLOCK lock = SRWLOCK_INIT;
    CONDITION_VARIABLE changed = CONDITION_VARIABLE_INIT;
    bool isOn = false;
    /// Suspended and not yet resumed.
    HANDLE thread = nullptr;
    /// Which hold this is, and the last one that a watchdog stands by.
    std::uintptr_t number = 0;
    std::uintptr_t watched = 0;
    ULONGLONG sinceMs = 0;
    LPTOP_LEVEL_EXCEPTION_FILTER previousFilter = nullptr;
    std::terminate_handler previousTerminate = nullptr;
};
constinit Hold hold;

void resumeLocked() {
    if (hold.thread != nullptr) ResumeThread(hold.thread);
    hold.thread = nullptr;
}

// False when the time is over.
bool awaitChange(DWORD limitMs) {
    return SleepConditionVariableSRW(&hold.changed, &hold.lock, limitMs, 0) != FALSE;
}

DWORD WINAPI watch(void* parameter) {
    const auto number = reinterpret_cast<std::uintptr_t>(parameter);
    const LockGuard lock(hold.lock);
    const auto isMine = [number] { return hold.isOn && hold.number == number; };
    if (!isMine()) return 0;
    hold.watched = number;
    WakeAllConditionVariable(&hold.changed);
    while (isMine()) {
        if (hold.thread == nullptr) {
            awaitChange(INFINITE);
            continue;
        }
        const ULONGLONG heldMs = GetTickCount64() - hold.sinceMs;
        const bool isOver =
            heldMs >= kLongestHoldMs || !awaitChange(static_cast<DWORD>(kLongestHoldMs - heldMs));
        if (isOver && isMine()) resumeLocked();
    }
    return 0;
}

bool startWatchdogLocked() {
    const KernelHandle watchdog(CreateThread(nullptr, kWatchdogStackBytes, watch,
                                             reinterpret_cast<void*>(hold.number),
                                             STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr));
    if (!watchdog) return false;
    while (hold.watched != hold.number) {
        if (!awaitChange(kLongestHoldMs)) return false;
    }
    return true;
}

LONG WINAPI letGoAndFail(EXCEPTION_POINTERS* fault) {
    letGoOfHeldThread();
    return hold.previousFilter != nullptr ? hold.previousFilter(fault) : EXCEPTION_CONTINUE_SEARCH;
}

void letGoAndTerminate() {
    letGoOfHeldThread();
    if (hold.previousTerminate != nullptr) hold.previousTerminate();
    std::abort();
}

}  // namespace

SuspendedThread::SuspendedThread(HANDLE thread) {
    const LockGuard lock(hold.lock);
    if (hold.isOn) return;
    mine_ = hold.isOn = true;
    ++hold.number;
    hold.previousFilter = SetUnhandledExceptionFilter(letGoAndFail);
    hold.previousTerminate = std::set_terminate(letGoAndTerminate);
    if (!startWatchdogLocked()) return;
    hold.sinceMs = GetTickCount64();
    if (SuspendThread(thread) == static_cast<DWORD>(-1)) return;
    hold.thread = thread;
    WakeAllConditionVariable(&hold.changed);
}

SuspendedThread::~SuspendedThread() {
    if (!mine_) return;
    const LockGuard lock(hold.lock);
    resumeLocked();
    hold.isOn = false;
    std::set_terminate(hold.previousTerminate);
    SetUnhandledExceptionFilter(hold.previousFilter);
    WakeAllConditionVariable(&hold.changed);
}

bool SuspendedThread::isHeld() const {
    const LockGuard lock(hold.lock);
    return mine_ && hold.thread != nullptr;
}

void letGoOfHeldThread() {
    const LockGuard lock(hold.lock);
    resumeLocked();
}

bool isHoldOverdue(DWORD limitMs) {
    const LockGuard lock(hold.lock);
    if (!hold.isOn) return false;
    return hold.thread == nullptr || GetTickCount64() - hold.sinceMs > limitMs;
}
