// A limit for calls into Windows that wait for somebody else: a spooler, a file server, a driver.
#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <new>
#include <optional>
#include <type_traits>
#include <utility>

/// Runs `work` on a thread of its own and waits `limitMs` milliseconds at most. True when it came
/// to its end by then; false when it did not, when it threw, and when there was no thread or memory
/// for it.
///
/// A thread that nobody waits for any more goes on until its call returns, so `work` must own all
/// that it touches. When it then still succeeds, `tooLate` runs behind it, to take back what the
/// caller believes has not happened.
///
/// The caller answers messages that other threads send to its windows meanwhile, because the call
/// may be waiting for just that; posted ones, input and paints wait.
bool finishesWithin(DWORD limitMs, std::function<void()> work,
                    std::function<void()> tooLate = {}) noexcept;

/// Starts `work` on a thread of its own that nobody waits for; what it throws is lost. False when
/// there is no thread or memory for it.
bool startDetached(std::function<void()> work) noexcept;

/// `finishesWithin` with an answer; nothing where that says false.
template <typename Work>
auto answerWithin(DWORD limitMs, Work work, std::function<void()> tooLate = {}) noexcept
    -> std::optional<std::invoke_result_t<Work&>> try {
    auto answer = std::make_shared<std::optional<std::invoke_result_t<Work&>>>();
    const bool finished = finishesWithin(
        limitMs, [answer, work = std::move(work)]() mutable { answer->emplace(work()); },
        std::move(tooLate));
    if (!finished) return std::nullopt;
    return std::move(*answer);
} catch (const std::bad_alloc&) {
    return std::nullopt;
}
