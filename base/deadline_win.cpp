#include "base/deadline_win.h"

#include <atomic>
#include <exception>

#include "base/handle_win.h"

namespace {

// Who comes second, the worker with its answer or the caller with the end of its patience, finds
// what the other did.
enum class Outcome { pending, done, failed, abandoned };

// Shared by both threads, and gone with the last of them.
struct Call {
    std::function<void()> work;
    std::function<void()> tooLate;
    std::atomic<Outcome> outcome{Outcome::pending};

    bool settle(Outcome settled) {
        Outcome expected = Outcome::pending;
        return outcome.compare_exchange_strong(expected, settled);
    }

    void run() noexcept try {
        work();
        if (!settle(Outcome::done) && tooLate) tooLate();
    } catch (const std::exception&) {
        settle(Outcome::failed);
    }
};

DWORD WINAPI runCall(void* argument) {
    const std::unique_ptr<std::shared_ptr<Call>> call(
        static_cast<std::shared_ptr<Call>*>(argument));
    (*call)->run();
    return 0;
}

KernelHandle startThread(const std::shared_ptr<Call>& call) {
    auto owned = std::make_unique<std::shared_ptr<Call>>(call);
    KernelHandle thread(CreateThread(nullptr, 0, runCall, owned.get(), 0, nullptr));
    if (thread) owned.release();  // now the thread's
    return thread;
}

void waitAnsweringSentMessages(HANDLE object, DWORD limitMs) {
    const ULONGLONG deadline = GetTickCount64() + limitMs;
    for (;;) {
        const ULONGLONG now = GetTickCount64();
        const DWORD remainingMs = now < deadline ? static_cast<DWORD>(deadline - now) : 0;
        const DWORD waited = MsgWaitForMultipleObjectsEx(1, &object, remainingMs, QS_SENDMESSAGE,
                                                         MWMO_INPUTAVAILABLE);
        if (waited != WAIT_OBJECT_0 + 1) return;
        MSG message;
        PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
    }
}

}  // namespace

bool finishesWithin(DWORD limitMs, std::function<void()> work,
                    std::function<void()> tooLate) noexcept try {
    const auto call = std::make_shared<Call>();
    call->work = std::move(work);
    call->tooLate = std::move(tooLate);
    const KernelHandle thread = startThread(call);
    if (!thread) return false;
    waitAnsweringSentMessages(thread.get(), limitMs);
    return !call->settle(Outcome::abandoned) && call->outcome == Outcome::done;
} catch (const std::exception&) {
    return false;
}
