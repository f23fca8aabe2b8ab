// A practice CorelDRAW under test: started, met by its handshake, ended.
#pragma once

#include <windows.h>

#include <filesystem>
#include <string>

#include "base/handle_win.h"
#include "cdr/cdr_instance.h"

/// The practice program in the build folder that this test program is in.
std::filesystem::path PracticeProgram();

/// Owns one running practice program; nothing of it outlives the object, nor the test program.
class PracticeProcess {
  public:
    /// Returns when it is where `way` leads (practice/ways.h). A test failure is recorded when it
    /// does not get there in time.
    explicit PracticeProcess(const std::wstring& way);
    PracticeProcess(const PracticeProcess&) = delete;
    PracticeProcess& operator=(const PracticeProcess&) = delete;
    ~PracticeProcess();

    [[nodiscard]] DWORD pid() const { return pid_; }

    /// The process as the instance list shows it; one with pid 0 when it is not listed.
    [[nodiscard]] CdrInstance listed() const;

    /// Events of the handshake (practice/handshake.h). False when one takes too long.
    void signal(const wchar_t* event) const;
    [[nodiscard]] bool await(const wchar_t* event) const;

    /// How many of its threads somebody holds suspended.
    [[nodiscard]] int heldThreads() const;

    /// Ends the program and keeps no handle to it. False when it had to be terminated.
    bool end();

  private:
    std::wstring name_;
    KernelHandle job_;
    KernelHandle ready_;
    KernelHandle process_;
    DWORD pid_ = 0;
};

/// How often the thread is held suspended.
DWORD SuspendCount(DWORD threadId);
