// One snapshot of another process's main-thread stack, taken from outside.
#pragma once

#include <cstdint>
#include <vector>

#include "diagnosis/stack_frame.h"

/// Suspends the thread, walks and symbolises its stack with the debug-help library (x64 only) and
/// resumes it; a thread that was suspended is resumed exactly once on every path. Captures exclude
/// each other. Blocks for the walk; the first look-up in a module loads its symbols.
///
/// On failure `error` is one of five texts: the process or the thread cannot be opened, the thread
/// cannot be suspended, its context cannot be read, no frame was walked.
///
/// Should the tool die between suspending and resuming, the target stays suspended: Windows keeps
/// no account of who suspended a thread. Nothing that could wait for the target is called
/// meanwhile.
CaptureResult CaptureMainThreadStack(std::uint32_t pid, std::uint32_t threadId);

/// The stacks of further threads of the process that was captured last, in the order of their ids.
/// Each thread is suspended alone, under the same guard, and only for the walk: names are looked up
/// once it runs again, source lines not at all. Threads that cannot be read, or not within
/// `limitMs` for all together, are left out.
std::vector<ThreadStack> CaptureThreadStacks(std::uint32_t pid,
                                             const std::vector<std::uint32_t>& threadIds,
                                             unsigned limitMs);
