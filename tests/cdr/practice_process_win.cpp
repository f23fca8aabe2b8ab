#include "tests/cdr/practice_process_win.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "cdr/instances_win.h"
#include "diagnosis/evidence_sensors_win.h"

namespace {

constexpr DWORD kLimitMs = 20000;

std::filesystem::path PracticeFolder() {
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    return std::filesystem::path(path).parent_path().parent_path() / "practice";
}

std::wstring FreshName() {
    static unsigned count = 0;
    return L"mirelo-test-" + std::to_wstring(GetCurrentProcessId()) + L"-" +
           std::to_wstring(++count);
}

KernelHandle OpenSignal(const std::wstring& name, const wchar_t* event) {
    return KernelHandle(
        CreateEventW(nullptr, TRUE, FALSE, (L"Local\\" + name + L"." + event).c_str()));
}

// Ends its processes when its last handle is closed, be it by a crash of the test program.
KernelHandle EndingJob() {
    KernelHandle job(CreateJobObjectW(nullptr, nullptr));
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    SetInformationJobObject(job.get(), JobObjectExtendedLimitInformation, &limits, sizeof limits);
    return job;
}

}  // namespace

std::filesystem::path PracticeProgram() {
    return PracticeFolder() / "CorelDRW.exe";
}

std::filesystem::path PlainPracticeProgram() {
    return PracticeFolder() / "plain" / "CorelDRW.exe";
}

PracticeProcess::PracticeProcess(const std::wstring& way, const std::filesystem::path& program)
    : name_(FreshName()), job_(EndingJob()), ready_(OpenSignal(name_, L"ready")) {
    std::wstring command =
        L"\"" + program.wstring() + L"\" " + way + L" --name " + name_ + L" --lifetime-s 7200";
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION started{};
    if (!CreateProcessW(program.c_str(), command.data(), nullptr, nullptr, FALSE, CREATE_SUSPENDED,
                        nullptr, nullptr, &startup, &started)) {
        ADD_FAILURE() << "cannot start " << program << ": error " << GetLastError();
        return;
    }
    process_.reset(started.hProcess);
    pid_ = started.dwProcessId;
    const KernelHandle thread(started.hThread);
    EXPECT_TRUE(AssignProcessToJobObject(job_.get(), process_.get()));
    ResumeThread(thread.get());

    const HANDLE either[] = {ready_.get(), process_.get()};
    EXPECT_EQ(WaitForMultipleObjects(2, either, FALSE, kLimitMs), WAIT_OBJECT_0)
        << "practice program never ready: " << std::string(way.begin(), way.end());
}

PracticeProcess::~PracticeProcess() {
    EXPECT_TRUE(end()) << "practice program did not end by itself";
}

CdrInstance PracticeProcess::listed() const {
    const std::vector<CdrInstance> instances = EnumerateCdrInstances();
    const auto found =
        std::find_if(instances.begin(), instances.end(),
                     [&](const CdrInstance& instance) { return instance.pid == pid_; });
    return found == instances.end() ? CdrInstance{} : *found;
}

void PracticeProcess::signal(const wchar_t* event) const {
    SetEvent(OpenSignal(name_, event).get());
}

bool PracticeProcess::await(const wchar_t* event) const {
    return WaitForSingleObject(OpenSignal(name_, event).get(), kLimitMs) == WAIT_OBJECT_0;
}

int PracticeProcess::heldThreads() const {
    int held = 0;
    for (const std::uint32_t id : SystemEvidence().threadsOf(pid_)) {
        if (SuspendCount(id) != 0) ++held;
    }
    return held;
}

bool PracticeProcess::end() {
    if (!process_) return true;
    const KernelHandle process = std::move(process_);
    signal(L"exit");
    if (WaitForSingleObject(process.get(), kLimitMs) == WAIT_OBJECT_0) return true;
    TerminateProcess(process.get(), 1);
    WaitForSingleObject(process.get(), kLimitMs);
    return false;
}

DWORD SuspendCount(DWORD threadId) {
    const KernelHandle thread(OpenThread(THREAD_SUSPEND_RESUME, FALSE, threadId));
    const DWORD count = SuspendThread(thread.get());
    ResumeThread(thread.get());
    return count;
}
