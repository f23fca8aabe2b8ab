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

DWORD WINAPI runWork(void* argument) noexcept try {
    const std::unique_ptr<std::function<void()>> work(
        static_cast<std::function<void()>*>(argument));
    (*work)();
    return 0;
} catch (const std::exception&) {
    return 1;
}

KernelHandle startThread(std::function<void()> work) {
    auto owned = std::make_unique<std::function<void()>>(std::move(work));
    KernelHandle thread(CreateThread(nullptr, 0, runWork, owned.get(), 0, nullptr));
    if (thread) static_cast<void>(owned.release());  // now the thread's
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
    const KernelHandle thread = startThread([call] { call->run(); });
    if (!thread) return false;
    waitAnsweringSentMessages(thread.get(), limitMs);
    return !call->settle(Outcome::abandoned) && call->outcome == Outcome::done;
} catch (const std::exception&) {
    return false;
}

bool startDetached(std::function<void()> work) noexcept try {
    return static_cast<bool>(startThread(std::move(work)));
} catch (const std::exception&) {
    return false;
}
