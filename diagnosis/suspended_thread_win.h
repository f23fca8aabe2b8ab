// One thread of another process, held still and certainly let go.
#pragma once

#include <windows.h>

/// A hold that has lasted this long ends by itself.
inline constexpr DWORD kLongestHoldMs = 10000;

/// Suspends a thread of another process and resumes it exactly once, whoever comes first: this
/// object's end, a C++ exception passing it, a fault that nobody handles in any thread of this
/// program, `std::terminate`, or a watchdog after `kLongestHoldMs`. Only an end of this program
/// from outside leaves the thread suspended: Windows keeps no account of who suspended it. So
/// nothing that could wait for the target, a person or the network belongs into a hold.
///
/// One hold at a time in the whole program; a second one fails meanwhile.
class SuspendedThread {
  public:
    /// `thread` is borrowed for as long as this object lives; it needs the right to suspend.
    explicit SuspendedThread(HANDLE thread);
    SuspendedThread(const SuspendedThread&) = delete;
    SuspendedThread& operator=(const SuspendedThread&) = delete;
    ~SuspendedThread();

    /// False when the thread was not suspended, and when it has been let go already: what was read
    /// from it since is worthless.
    [[nodiscard]] bool isHeld() const;

  private:
    bool mine_ = false;
};

/// Resumes the held thread, if there is one, now. Safe in a filter of exceptions.
void letGoOfHeldThread();

/// True when a hold has lasted longer than this, or was ended under its owner.
bool isHoldOverdue(DWORD limitMs);
