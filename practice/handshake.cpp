#include "practice/handshake.h"

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <vector>

namespace {

constexpr ULONGLONG kExitLimitMs = 5000;

/// A manual-reset event; named for a handshake with a name, the process's own without.
KernelHandle OpenEvent(const Options& options, const wchar_t* signal) {
    const std::wstring name = L"Local\\" + options.name + L"." + signal;
    return KernelHandle(
        CreateEventW(nullptr, TRUE, FALSE, options.name.empty() ? nullptr : name.c_str()));
}

struct Reaction {
    HANDLE signal;
    std::function<void()> react;
};

}  // namespace

Handshake::Handshake(const Options& options)
    : options_(options),
      ready_(OpenEvent(options, L"ready")),
      next_(OpenEvent(options, L"next")),
      ready2_(OpenEvent(options, L"ready2")),
      release_(OpenEvent(options, L"release")),
      released_(OpenEvent(options, L"released")),
      exit_(OpenEvent(options, L"exit")),
      done_(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {}

Handshake::~Handshake() {
    SetEvent(done_.get());
    if (watcher_.joinable()) watcher_.join();
}

void Handshake::watch(DWORD uiThreadId) {
    watcher_ = std::thread([this, uiThreadId] { answer(uiThreadId); });
}

void Handshake::tellReleased() {
    SetEvent(released_.get());
}

void Handshake::answer(DWORD uiThreadId) {
    ULONGLONG deadline = GetTickCount64() + 1000ULL * options_.lifetimeS;
    UINT exitCodeWhenLate = kExitLifetimeOver;
    bool done = false;
    std::vector<Reaction> pending = {
        {done_.get(), [&] { done = true; }},
        {first.inPlace.get(),
         [&] {
             writeReadyFile();
             SetEvent(ready_.get());
         }},
        {next_.get(), [&] { first.end(); }},
        {second.inPlace.get(), [&] { SetEvent(ready2_.get()); }},
        {release_.get(),
         [&] {
             first.end();
             second.end();
         }},
        {exit_.get(),
         [&] {
             first.end();
             second.end();
             PostThreadMessageW(uiThreadId, WM_QUIT, 0, 0);
             deadline = GetTickCount64() + kExitLimitMs;
             exitCodeWhenLate = kExitStuck;
         }},
    };

    while (!done) {
        std::vector<HANDLE> signals;
        for (const Reaction& reaction : pending)
            signals.push_back(reaction.signal);
        const ULONGLONG now = GetTickCount64();
        const ULONGLONG leftMs = deadline > now ? deadline - now : 0;
        const DWORD waitMs = static_cast<DWORD>(std::min<ULONGLONG>(leftMs, INFINITE - 1));
        const DWORD hit = WaitForMultipleObjects(static_cast<DWORD>(signals.size()), signals.data(),
                                                 FALSE, waitMs);
        if (hit >= signals.size()) EndProcess(exitCodeWhenLate);
        // Each signal is answered once; it stays set, so it must leave the list.
        const Reaction reaction = pending[hit];
        pending.erase(pending.begin() + hit);
        reaction.react();
    }
}

void Handshake::writeReadyFile() const {
    if (options_.readyFile.empty()) return;
    std::string text = std::to_string(GetCurrentProcessId()) + " ";
    // The names of the ways are ASCII.
    for (const wchar_t letter : options_.way)
        text += static_cast<char>(letter);
    text += "\n";

    // Written beside its place and moved there: whoever sees the file sees all of it.
    const std::wstring draft = options_.readyFile + L".draft";
    {
        const FileHandle file(CreateFileW(draft.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                          FILE_ATTRIBUTE_NORMAL, nullptr));
        if (!file) return;
        DWORD written = 0;
        if (!WriteFile(file.get(), text.data(), static_cast<DWORD>(text.size()), &written, nullptr))
            return;
    }
    MoveFileExW(draft.c_str(), options_.readyFile.c_str(), MOVEFILE_REPLACE_EXISTING);
}

void EndProcess(UINT exitCode) {
    TerminateProcess(GetCurrentProcess(), exitCode);
    std::abort();
}
