// How a test and the practice program meet without a sleep: named events, and a file for scripts.
#pragma once

#include <windows.h>

#include <string>
#include <thread>

#include "practice/hang.h"
#include "practice/options.h"

/// With `--name NAME` these manual-reset events exist from the program's start; whoever comes first
/// creates them. NAME must not have been used before by a process that still holds them.
///
///   Local\NAME.ready     set by the program: the hang is in place (its code is on the window
///                        thread's stack), or the message loop runs where nothing hangs
///   Local\NAME.next      set by the test: leave the first hang, go on with the second
///   Local\NAME.ready2    set by the program: the second hang is in place
///   Local\NAME.release   set by the test: every hang ends
///   Local\NAME.released  set by the program: the window's thread is back in its message loop
///   Local\NAME.exit      set by the test: end the process, hanging or not; exit code 0
///
/// Together with `ready`, the file of `--ready-file` appears, complete: "PID WAY" and a line feed.
class Handshake {
  public:
    explicit Handshake(const Options& options);
    Handshake(const Handshake&) = delete;
    Handshake& operator=(const Handshake&) = delete;
    /// Stops watching.
    ~Handshake();

    /// Begins to answer the events. `exit` asks the message loop of `uiThreadId` to end. A process
    /// that outlives its lifetime, or does not end within seconds of `exit`, is terminated.
    void watch(DWORD uiThreadId);

    /// The window's thread pumps messages again.
    void tellReleased();

    Hang first;
    Hang second;

  private:
    void answer(DWORD uiThreadId);
    void writeReadyFile() const;

    Options options_;
    KernelHandle ready_;
    KernelHandle next_;
    KernelHandle ready2_;
    KernelHandle release_;
    KernelHandle released_;
    KernelHandle exit_;
    KernelHandle done_;
    std::thread watcher_;
};

/// Ends the process at once, whatever its threads are doing.
[[noreturn]] void EndProcess(UINT exitCode);

constexpr UINT kExitUsage = 2;
constexpr UINT kExitLifetimeOver = 3;
constexpr UINT kExitLibraryMissing = 4;
constexpr UINT kExitStuck = 5;
