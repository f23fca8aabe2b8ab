#include "diagnosis/evidence.h"

#include <gtest/gtest.h>

#include <cwchar>
#include <numeric>

#include "diagnosis/gather_evidence.h"
#include "tests/diagnosis/frame.h"

namespace {

constexpr std::uint32_t kPid = 4711;
constexpr std::uint32_t kMain = 42;

const StackFrame kWait = Frame(L"ntdll", L"NtWaitForSingleObject", L"W:\\ntdll.dll");
const StackFrame kPlugin = Frame(L"holder.cpg", L"Hold", L"C:\\p\\holder.cpg");
const StackFrame kDriver = Frame(L"acmeprint", L"", L"C:\\acmeprint.dll");
const StackFrame kHook = Frame(L"hook", L"OnMouse", L"C:\\hook.dll");
const StackFrame kCore = Frame(L"coreldrw", L"Save", L"C:\\CorelDRW.exe");

using Lines = std::vector<std::wstring>;

// Everything on W: belongs to Windows.
const SystemFiles kSystem{[](const std::wstring& path) { return path.starts_with(L"W:"); },
                          [](const std::wstring&) { return true; }};

Lines Told(const HangEvidence& evidence) {
    const auto facts = [](const std::wstring& path) -> FileFacts {
        if (path == kPlugin.imagePath) return {L" Holder Tools ", L"2.1", L"Example Ltd"};
        if (path == kHook.imagePath) return {std::wstring(101, L'x'), L"", L"Hooks"};
        return {L"", L"7", L""};
    };
    Lines lines = EvidenceLines(evidence, {kSystem, facts});
    for (std::wstring& line : lines)
        line.erase(0, std::wcslen(L"[Evidence] "));
    return lines;
}

HangEvidence Captured(std::vector<StackFrame> frames) {
    HangEvidence evidence;
    evidence.pid = kPid;
    evidence.frames = std::move(frames);
    evidence.suspect = FindSuspect(evidence.frames, kSystem);
    return evidence;
}

WaitChain WaitsForThread(std::uint32_t id) {
    using enum WaitObject;
    return {{{thread, {}, kPid, kMain, L"", L""},
             {mutex, {}, 0, 0, L"", L""},
             {thread, {}, kPid, id, L"", L""}},
            false};
}

}  // namespace

TEST(Evidence, TellsStuckFromWorking) {
    const auto place = [](StackFrame frame, std::uint64_t address, std::uint64_t seenUs) {
        frame.address = address;
        return HangPlace{kPid, kMain, {frame}, 88'400'000, seenUs};
    };
    const StackFrame hook = Frame(L"hook");
    const HangPlace now = place(kCore, 1, 100'000'000);
    const struct {
        std::optional<unsigned> percent;
        HangPlace place, earlier;
        std::wstring line;
    } cases[] = {
        {10, now, {}, L"computing part of the time (10 % of one core) during the capture."},
        {97, now, place(kCore, 5, 0),
         L"computing (97 % of one core) during the capture; at the same place as 12 s ago."},
        {9, now, place(Frame(L"coreldrw", L"Load"), 1, 60'500'000),
         L"waiting, 9 % of a core during the capture; moving: at another place than 40 s ago."},
        {{}, place(hook, 0, 1), place(hook, 6, 0), L"moving: at another place than 1 s ago."},
    };
    for (const auto& c : cases) {
        HangEvidence evidence;
        evidence.processorPercent = c.percent;
        evidence.place = c.place;
        evidence.earlier = c.earlier;
        EXPECT_EQ(Told(evidence), Lines{L"Main thread: " + c.line});
    }
}

TEST(Evidence, ShowsTheFileToLookAtAndThreadsWorthALook) {
    std::vector<StackFrame> frames(8, kWait);
    frames.push_back(kHook);
    HangEvidence evidence = Captured(frames);
    evidence.waits = WaitsForThread(9);
    evidence.otherThreads = {{1, {kWait, kDriver}}, {2, {kWait, kCore}},        {3, {kDriver}},
                             {4, {kWait, kPlugin}}, {6, {Frame(L"", L"Made")}}, {9, {kWait}}};
    // Nothing of CorelDRAW, nothing without a file, each function once.
    EXPECT_EQ(Told(evidence),
              (Lines{L"Suspect: hook.dll, frame 9: " + std::wstring(100, L'x') +
                         L"... (Hooks), C:\\hook.dll",
                     L"Waits for thread 9 of the same process, which holds a mutex.",
                     L"Thread 9 is in ntdll.dll!NtWaitForSingleObject.",
                     L"Thread 4 is in holder.cpg!Hold: Holder Tools 2.1 (Example Ltd), "
                     L"C:\\p\\holder.cpg",
                     L"Thread 1 is in acmeprint.dll!(no symbol): version 7, C:\\acmeprint.dll"}));
    for (std::uint32_t id = 10; id < 30; ++id)
        evidence.otherThreads.push_back({id, {Frame(L"hook", std::to_wstring(id).c_str())}});
    EXPECT_EQ(Told(evidence).size(), 2 + kMostThreadLines);
}

TEST(Evidence, IsGatheredWithinItsLimits) {
    std::vector<std::uint32_t> visited, all(100);
    std::iota(all.begin(), all.end(), 1U);
    unsigned pausedMs = 0;
    EvidenceSensors sensors;
    sensors.moment = [&](std::uint32_t) { return ThreadMoment{1000U * pausedMs, 500U * pausedMs}; };
    sensors.pause = [&](unsigned ms) { pausedMs += ms; };
    sensors.isGeneratedCode = [](std::uint32_t, std::uint64_t address) { return address == 77; };
    sensors.waitChain = [](std::uint32_t) { return WaitsForThread(99); };
    sensors.threadsOf = [&](std::uint32_t) { return all; };
    sensors.captureThreads = [&](std::uint32_t, const std::vector<std::uint32_t>& ids) {
        visited = ids;
        return std::vector<ThreadStack>();
    };
    const std::vector<StackFrame> frames = {kWait, kWait};
    CapturedHang hang{{kPid, kMain, frames, 0, 0}, {true, {}, frames, 77}, {}, {}};
    hang.probe = {{0, 0}, {50'000, 0}};
    const HangEvidence evidence = GatherEvidence(sensors, hang, {});
    ASSERT_EQ(visited.size(), kMostThreads);
    EXPECT_EQ(visited[0], 99U) << "the one that the main thread waits for comes first";
    EXPECT_EQ(visited[42], 43U) << "the main thread has been captured";
    EXPECT_EQ(pausedMs, 200U);
    EXPECT_EQ(evidence.processorPercent, 40U);
    EXPECT_EQ(Told(evidence).at(1),
              L"The stack ends behind frame 2, in generated code (a macro, a script or .NET): what "
              L"called it cannot be seen.");
}
