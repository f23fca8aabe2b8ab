// A thread that owns a window and waits with nothing but the system's code on its stack.
#pragma once

#include "practice/hang.h"
#include "practice/windows_shown.h"

/// Runs `before` on a thread of a pool of the system's, where it may make windows. Then that thread
/// hangs in the pool's own wait for work (`inPlace` tells when) until `hang` is over, and runs
/// `after`. Returns when `after` has returned.
void HangInSystemWait(const Work& before, Hang& hang, const Work& after);
