// What is told of a hang beside its diagnosis.
#include "diagnosis/evidence.h"

#include <gtest/gtest.h>

#include <numeric>

#include "diagnosis/gather_evidence.h"

namespace {

constexpr std::uint32_t kPid = 4711;
constexpr std::uint32_t kMain = 42;

StackFrame Frame(const wchar_t* module, const wchar_t* function, const wchar_t* path = L"") {
    StackFrame frame;
    frame.moduleName = module;
    frame.function = function;
    frame.imagePath = path;
    return frame;
}

const StackFrame kWait = Frame(L"ntdll", L"NtWaitForSingleObject", L"W:\\ntdll.dll");
const StackFrame kPlugin = Frame(L"holder.cpg", L"Hold", L"C:\\p\\holder.cpg");
const StackFrame kDriver = Frame(L"acmeprint", L"", L"C:\\acmeprint.dll");
const StackFrame kHook = Frame(L"hook", L"OnMouse", L"C:\\hook.dll");
const StackFrame kCore = Frame(L"coreldrw", L"Save", L"C:\\CorelDRW.exe");

// Everything on W: belongs to Windows.
const auto kIsWindows = [](const std::wstring& path) { return path.starts_with(L"W:"); };
const EvidenceFiles kFiles{{kIsWindows, kIsWindows}, [](const std::wstring& path) -> FileFacts {
                               if (path == kPlugin.imagePath)
                                   return {L" Holder Tools ", L"2.1", L"Example Ltd"};
                               if (path == kDriver.imagePath) return {L"", L"7", L""};
                               if (path == kHook.imagePath)
                                   return {std::wstring(101, L'x'), L"", L"Hooks"};
                               return {};
                           }};

// The lines without their common beginning.
std::vector<std::wstring> Told(const HangEvidence& evidence) {
    std::vector<std::wstring> lines = EvidenceLines(evidence, kFiles);
    for (std::wstring& line : lines) {
        EXPECT_EQ(line.substr(0, 11), L"[Evidence] ");
        line.erase(0, 11);
    }
    return lines;
}

HangEvidence Captured(std::vector<StackFrame> frames) {
    HangEvidence evidence;
    evidence.pid = kPid;
    evidence.frames = std::move(frames);
    evidence.suspect = FindSuspect(evidence.frames, kFiles.system);
    return evidence;
}

WaitChain WaitsForThread(std::uint32_t id) {
    return {{{WaitObject::thread, {}, kPid, kMain, L"", L""},
             {WaitObject::mutex, {}, 0, 0, L"", L""},
             {WaitObject::thread, {}, kPid, id, L"", L""}},
            false};
}

using Lines = std::vector<std::wstring>;

}  // namespace

TEST(Evidence, TellsStuckFromWorking) {
    const auto place = [](StackFrame frame, std::uint64_t sinceUs, std::uint64_t seenUs) {
        return HangPlace{kPid, kMain, {std::move(frame)}, sinceUs, seenUs};
    };
    StackFrame furtherOn = kCore;
    furtherOn.address = 5;
    StackFrame elsewhere = Frame(L"hook", L"");
    elsewhere.address = 6;
    const HangPlace now = place(kCore, 88'400'000, 100'000'000);
    HangPlace otherThread = now;
    otherThread.threadId = 1;
    const struct {
        std::optional<unsigned> percent;
        HangPlace place;
        HangPlace earlier;
        std::wstring line;
    } cases[] = {
        {9, now, {}, L"waiting, 9 % of a core during the capture."},
        {10, now, otherThread,
         L"computing part of the time (10 % of one core) during the capture."},
        {97, now, place(furtherOn, 0, 0),
         L"computing (97 % of one core) during the capture; at the same place as 12 s ago."},
        {0, now, place(kWait, 0, 60'500'000),
         L"waiting, 0 % of a core during the capture; moving: at another place than 40 s ago."},
        {{},
         place(Frame(L"hook", L""), 0, 1),
         place(elsewhere, 0, 0),
         L"moving: at another place than 1 s ago."},
    };
    for (const auto& c : cases) {
        HangEvidence evidence;
        evidence.processorPercent = c.percent;
        evidence.place = c.place;
        evidence.earlier = c.earlier;
        EXPECT_EQ(Told(evidence), Lines{L"Main thread: " + c.line});
    }
    const std::vector<StackFrame> stack = {kWait, kCore, kHook};
    EXPECT_EQ(FramesToSuspect(stack, Captured(stack).suspect).size(), 2U);
}

TEST(Evidence, ShowsTheFileToLookAt) {
    const auto below = [](std::size_t count, const StackFrame& frame) {
        std::vector<StackFrame> frames(count, kWait);
        frames.push_back(frame);
        return frames;
    };
    const StackFrame spooler = Frame(L"winspool", L"Print", L"W:\\winspool.drv");
    const struct {
        std::vector<StackFrame> frames;
        Lines lines;
    } cases[] = {
        {below(11, kPlugin),
         {L"Suspect: holder.cpg, frame 12: Holder Tools 2.1 (Example Ltd), "
          L"C:\\p\\holder.cpg"}},
        {below(0, kDriver), {L"Suspect: acmeprint.dll, frame 1: version 7, C:\\acmeprint.dll"}},
        {below(1, kHook),
         {L"Suspect: hook.dll, frame 2: " + std::wstring(100, L'x') +
          L"... (Hooks), C:\\hook.dll"}},
        {below(1, kCore),
         {L"Suspect: CorelDRW.exe, frame 2: a file without a description, C:\\CorelDRW.exe"}},
        {below(7, spooler), {}},
        {below(8, spooler), {L"Suspect: winspool.drv, frame 9."}},
        {below(3, kWait), {}},
        {below(0, Frame(L"", L"")), {}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Told(Captured(c.frames)), c.lines);
}

TEST(Evidence, ShowsThreadsWorthALook) {
    HangEvidence evidence = Captured({kWait});
    evidence.waits = WaitsForThread(9);
    evidence.otherThreads = {{1, {kWait, kHook}},   {2, {kWait, kCore}}, {3, {kHook}},
                             {4, {kWait, kPlugin}}, {5, {kDriver}},      {6, {Frame(L"", L"Made")}},
                             {9, {kWait}}};
    const Lines lines = Told(evidence);
    ASSERT_EQ(lines.size(), 5U)
        << "nothing of CorelDRAW, nothing without a file, each function once";
    EXPECT_EQ(lines[1], L"Thread 9 is in ntdll.dll!NtWaitForSingleObject.");
    EXPECT_EQ(lines[2],
              L"Thread 4 is in holder.cpg!Hold: Holder Tools 2.1 (Example Ltd), "
              L"C:\\p\\holder.cpg");
    EXPECT_EQ(lines[3], L"Thread 5 is in acmeprint.dll!(no symbol): version 7, C:\\acmeprint.dll");
    EXPECT_TRUE(lines[4].starts_with(L"Thread 1 is in hook.dll!OnMouse: x"));

    for (std::uint32_t id = 10; id < 30; ++id)
        evidence.otherThreads.push_back({id, {Frame(L"hook", std::to_wstring(id).c_str())}});
    EXPECT_EQ(Told(evidence).size(), 1 + kMostThreadLines);
}

TEST(Evidence, IsGatheredWithinItsLimits) {
    std::vector<std::uint32_t> visited;
    unsigned pausedMs = 0;
    EvidenceSensors sensors;
    sensors.moment = [&](std::uint32_t) { return ThreadMoment{1000U * pausedMs, 500U * pausedMs}; };
    sensors.pause = [&](unsigned ms) { pausedMs += ms; };
    sensors.isGeneratedCode = [](std::uint32_t, std::uint64_t address) { return address == 77; };
    sensors.waitChain = [](std::uint32_t) { return WaitsForThread(99); };
    sensors.threadsOf = [](std::uint32_t) {
        std::vector<std::uint32_t> ids(100);
        std::iota(ids.begin(), ids.end(), 1U);
        return ids;
    };
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

    hang.probe.to = {800'000, 900'000};
    hang.stack.frames[0] = Frame(L"", L"");
    hang.stack.frames[0].address = 77;
    const HangEvidence next = GatherEvidence(sensors, hang, {});
    EXPECT_EQ(pausedMs, 200U) << "the probe took long enough";
    EXPECT_EQ(next.processorPercent, 100U) << "ticks are coarser than the clock";
    EXPECT_EQ(next.generatedFrame, 0U);
    EXPECT_EQ(Told(next).size(), 2U) << "the stack goes on behind the generated code";
}
