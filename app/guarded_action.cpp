#include "app/guarded_action.h"

#include <new>

void runGuarded(const ActionHost& host, const std::function<void()>& action) noexcept {
    try {
        action();
    } catch (const std::bad_alloc&) {
        // What the action held is free again: mostly enough for a line.
        try {
            host.appendLog(
                L"[Mirelo] Failed: not enough memory. Close other programs and try again.");
        } catch (const std::bad_alloc&) {
            return;
        }
    }
}
