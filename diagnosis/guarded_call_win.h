// Calls into libraries that may crash.
#pragma once

#include <utility>

/// Runs `work(context)`. False when a fault that the called code did not handle itself (an access
/// violation, say) ended it: a held thread (diagnosis/suspended_thread_win.h) has been resumed
/// then, and destructors between the fault and this call have not run. C++ exceptions pass through.
bool runGuarded(void (*work)(void* context), void* context);

/// The same for anything callable without arguments.
template <typename Work>
bool runGuarded(Work work) {
    return runGuarded([](void* context) { (*static_cast<Work*>(context))(); }, &work);
}
