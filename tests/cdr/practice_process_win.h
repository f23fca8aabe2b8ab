// A practice CorelDRAW under test: started, met by its handshake, ended.
#pragma once

#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>

#include "base/handle_win.h"
#include "cdr/instances_win.h"
#include "diagnosis/evidence_sensors_win.h"

inline std::filesystem::path PracticeProgram() {
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    return std::filesystem::path(path).parent_path().parent_path() / "practice" / "CorelDRW.exe";
}

inline DWORD SuspendCount(DWORD threadId) {
    const KernelHandle thread(OpenThread(THREAD_SUSPEND_RESUME, FALSE, threadId));
    const DWORD count = SuspendThread(thread.get());
    ResumeThread(thread.get());
    return count;
}

/// Owns one running practice program; nothing of it outlives the object, nor the test program.
class PracticeProcess {
  public:
    /// Returns when it is where `way` leads (practice/ways.h). A test failure is recorded when it
    /// does not get there in time.
    explicit PracticeProcess(const std::wstring& way) {
        // Ends it when the last handle is closed, be it by a crash of the test program.
        JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
        limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
        SetInformationJobObject(job_.get(), JobObjectExtendedLimitInformation, &limits,
                                sizeof limits);
        const std::wstring program = PracticeProgram().wstring();
        std::wstring command =
            L"\"" + program + L"\" " + way + L" --name " + name_ + L" --lifetime-s 7200";
        STARTUPINFOW startup{};
        startup.cb = sizeof startup;
        PROCESS_INFORMATION started{};
        EXPECT_TRUE(CreateProcessW(program.c_str(), command.data(), nullptr, nullptr, FALSE,
                                   CREATE_SUSPENDED, nullptr, nullptr, &startup, &started))
            << program << ": error " << GetLastError();
        process_.reset(started.hProcess);
        pid_ = started.dwProcessId;
        const KernelHandle thread(started.hThread);
        EXPECT_TRUE(AssignProcessToJobObject(job_.get(), process_.get()));
        ResumeThread(thread.get());
        const HANDLE either[] = {ready_.get(), process_.get()};
        EXPECT_EQ(WaitForMultipleObjects(2, either, FALSE, kLimitMs), WAIT_OBJECT_0)
            << "practice program never ready: " << way;
    }
    PracticeProcess(const PracticeProcess&) = delete;
    PracticeProcess& operator=(const PracticeProcess&) = delete;
    ~PracticeProcess() { end(); }

    [[nodiscard]] DWORD pid() const { return pid_; }

    /// The process as the instance list shows it; one with pid 0 when it is not listed.
    [[nodiscard]] CdrInstance listed() const {
        for (const CdrInstance& instance : EnumerateCdrInstances())
            if (instance.pid == pid_) return instance;
        return {};
    }

    /// Events of the handshake (practice/handshake.h). False when one takes too long.
    void signal(const wchar_t* event) const { SetEvent(openSignal(event).get()); }
    [[nodiscard]] bool await(const wchar_t* event) const {
        return WaitForSingleObject(openSignal(event).get(), kLimitMs) == WAIT_OBJECT_0;
    }

    [[nodiscard]] int heldThreads() const {
        const auto ids = SystemEvidence().threadsOf(pid_);
        return static_cast<int>(std::ranges::count_if(ids, SuspendCount));
    }

    void end() {
        if (!process_) return;
        const KernelHandle process = std::move(process_);
        signal(L"exit");
        if (WaitForSingleObject(process.get(), kLimitMs) == WAIT_OBJECT_0) return;
        ADD_FAILURE() << "practice program did not end by itself";
        TerminateProcess(process.get(), 1);
        WaitForSingleObject(process.get(), kLimitMs);
    }

  private:
    static constexpr DWORD kLimitMs = 20000;
    static inline unsigned count = 0;

    [[nodiscard]] KernelHandle openSignal(const wchar_t* event) const {
        return KernelHandle(
            CreateEventW(nullptr, TRUE, FALSE, (L"Local\\" + name_ + L"." + event).c_str()));
    }

    const std::wstring name_ =
        std::to_wstring(GetCurrentProcessId()) + L"-" + std::to_wstring(++count);
    const KernelHandle job_{CreateJobObjectW(nullptr, nullptr)};
    const KernelHandle ready_ = openSignal(L"ready");
    KernelHandle process_;
    DWORD pid_ = 0;
};
