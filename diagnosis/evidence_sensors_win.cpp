#include "diagnosis/evidence_sensors_win.h"

#include <windows.h>

#include <tlhelp32.h>

#include "base/handle_win.h"
#include "cdr/version_string_win.h"
#include "diagnosis/stack_capture_win.h"
#include "diagnosis/wait_chain_win.h"

namespace {

constexpr unsigned kThreadsLimitMs = 1500;
constexpr unsigned kWaitChainLimitMs = 300;

std::uint64_t Counted(const FILETIME& time) {
    constexpr std::uint64_t kUnitsPerUs = 10;
    return (static_cast<std::uint64_t>(time.dwHighDateTime) << 32 | time.dwLowDateTime) /
           kUnitsPerUs;
}

std::uint64_t NowUs() {
    LARGE_INTEGER frequency{};
    LARGE_INTEGER count{};
    QueryPerformanceFrequency(&frequency);
    QueryPerformanceCounter(&count);
    constexpr double kUsPerSecond = 1e6;
    return static_cast<std::uint64_t>(static_cast<double>(count.QuadPart) * kUsPerSecond /
                                      static_cast<double>(frequency.QuadPart));
}

ThreadMoment ReadMoment(std::uint32_t threadId) {
    const KernelHandle thread(OpenThread(THREAD_QUERY_LIMITED_INFORMATION, FALSE, threadId));
    FILETIME created{};
    FILETIME ended{};
    FILETIME inSystem{};
    FILETIME outside{};
    ThreadMoment moment;
    if (thread && GetThreadTimes(thread.get(), &created, &ended, &inSystem, &outside))
        moment.usedUs = Counted(inSystem) + Counted(outside);
    moment.atUs = NowUs();
    return moment;
}

// Code in memory that no file was mapped to; a damaged stack leads to no code at all.
bool IsGeneratedCode(std::uint32_t pid, std::uint64_t address) {
    constexpr DWORD kExecutable =
        PAGE_EXECUTE | PAGE_EXECUTE_READ | PAGE_EXECUTE_READWRITE | PAGE_EXECUTE_WRITECOPY;
    const KernelHandle process(OpenProcess(PROCESS_QUERY_INFORMATION, FALSE, pid));
    MEMORY_BASIC_INFORMATION memory{};
    if (!process || VirtualQueryEx(process.get(), reinterpret_cast<void*>(address), &memory,
                                   sizeof memory) == 0) {
        return false;
    }
    return memory.State == MEM_COMMIT && memory.Type != MEM_IMAGE &&
           (memory.Protect & kExecutable) != 0;
}

std::vector<std::uint32_t> ThreadsOf(std::uint32_t pid) {
    std::vector<std::uint32_t> ids;
    const FileHandle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0));
    THREADENTRY32 entry{};
    entry.dwSize = sizeof entry;
    for (BOOL isThere = snapshot && Thread32First(snapshot.get(), &entry); isThere;
         isThere = Thread32Next(snapshot.get(), &entry)) {
        if (entry.th32OwnerProcessID == pid) ids.push_back(entry.th32ThreadID);
    }
    return ids;
}

FileFacts ReadFacts(const std::wstring& path) {
    return {ReadVersionString(path, L"FileDescription"), ReadVersionString(path, L"ProductVersion"),
            ReadVersionString(path, L"CompanyName")};
}

}  // namespace

EvidenceSensors SystemEvidence() {
    EvidenceSensors sensors;
    sensors.moment = ReadMoment;
    sensors.pause = [](unsigned ms) { Sleep(ms); };
    sensors.isGeneratedCode = IsGeneratedCode;
    sensors.waitChain = [](std::uint32_t threadId) {
        return ReadWaitChain(threadId, kWaitChainLimitMs);
    };
    sensors.threadsOf = ThreadsOf;
    sensors.captureThreads = [](std::uint32_t pid, const std::vector<std::uint32_t>& threadIds) {
        return CaptureThreadStacks(pid, threadIds, kThreadsLimitMs);
    };
    sensors.fileFacts = ReadFacts;
    return sensors;
}
