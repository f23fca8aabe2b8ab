// What is told of a hang beside its diagnosis.
#include "diagnosis/evidence.h"

#include <gtest/gtest.h>

#include "diagnosis/gather_evidence.h"

namespace {

using enum FrameCategory;

StackFrame Frame(const wchar_t* module, const wchar_t* function, const wchar_t* path = L"",
                 std::uint64_t address = 1) {
    StackFrame frame;
    frame.address = address;
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
const EvidenceFiles kFiles{{[](const std::wstring& path) { return path.starts_with(L"W:"); },
                            [](const std::wstring& path) { return path.starts_with(L"W:"); }},
                           [](const std::wstring& path) -> FileFacts {
                               if (path == kPlugin.imagePath)
                                   return {L" Holder Tools ", L"2.1", L"Example Ltd"};
                               if (path == kDriver.imagePath) return {L"", L"7", L""};
                               if (path == kHook.imagePath)
                                   return {std::wstring(101, L'x'), L"", L"Hooks"};
                               return {};
                           }};

using Lines = std::vector<std::wstring>;

HangEvidence Captured(std::vector<StackFrame> frames) {
    HangEvidence evidence;
    evidence.pid = 4711;
    evidence.frames = std::move(frames);
    evidence.suspect = FindSuspect(evidence.frames, kFiles.system);
    return evidence;
}

HangPlace Place(std::vector<StackFrame> frames, std::uint64_t sinceUs, std::uint64_t seenUs) {
    return {4711, 42, std::move(frames), sinceUs, seenUs};
}

}  // namespace

TEST(Evidence, SaysNothingWhenNothingIsKnown) {
    EXPECT_EQ(EvidenceLines({}, kFiles), Lines());
    EXPECT_EQ(EvidenceLines(Captured({kWait}), kFiles), Lines());
    EXPECT_EQ(EvidenceLines(Captured({Frame(L"", L"")}), kFiles), Lines());
}

TEST(Evidence, CountsTheShareOfOneCore) {
    const auto span = [](std::uint64_t fromUs, std::uint64_t toUs, std::uint64_t usedFromUs,
                         std::uint64_t usedToUs) {
        return ThreadSpan{{fromUs, usedFromUs}, {toUs, usedToUs}};
    };
    EXPECT_EQ(ProcessorPercent({span(0, 800, 50, 450), span(900, 1100, 460, 560)}), 50U);
    EXPECT_EQ(ProcessorPercent({span(0, 100, 0, 116)}), 100U) << "ticks are coarser than the clock";
    EXPECT_EQ(ProcessorPercent({span(0, 100, 90, 0)}), 0U);
    EXPECT_EQ(ProcessorPercent({span(7, 7, 0, 9)}), std::nullopt);
    EXPECT_EQ(ProcessorPercent({span(0, 9, 0, 9), {{9, 9}, {20, std::nullopt}}}), std::nullopt);
}

TEST(Evidence, TellsStuckFromWorking) {
    const HangPlace now = Place({kCore}, 88'400'000, 100'000'000);
    const HangPlace byAddress = Place({Frame(L"hook", L"", L"", 5)}, 0, 100'000'000);
    HangPlace otherProcess = Place({kCore}, 0, 0);
    otherProcess.pid = 1;
    const struct {
        std::optional<unsigned> percent;
        HangPlace place;
        HangPlace earlier;
        Lines lines;
    } cases[] = {
        {0, now, {}, {L"[Evidence] Main thread: waiting, 0 % of a core during the capture."}},
        {9,
         now,
         otherProcess,
         {L"[Evidence] Main thread: waiting, 9 % of a core during the capture."}},
        {10,
         now,
         Place({kCore}, 0, 0),
         {L"[Evidence] Main thread: computing part of the time (10 % of one core) during the "
          L"capture; at the same place as 12 s ago."}},
        {97,
         now,
         Place({kWait, kCore}, 0, 60'500'000),
         {L"[Evidence] Main thread: computing (97 % of one core) during the capture; moving: at "
          L"another place than 40 s ago."}},
        {{},
         byAddress,
         Place({Frame(L"hook", L"", L"", 5)}, 0, 0),
         {L"[Evidence] Main thread: at the same place as 100 s ago."}},
        {{},
         byAddress,
         Place({Frame(L"hook", L"", L"", 6)}, 0, 99'999'999),
         {L"[Evidence] Main thread: moving: at another place than 1 s ago."}},
    };
    for (const auto& c : cases) {
        HangEvidence evidence;
        evidence.processorPercent = c.percent;
        evidence.place = c.place;
        evidence.earlier = c.earlier;
        EXPECT_EQ(EvidenceLines(evidence, kFiles), c.lines);
    }
    const std::vector<StackFrame> stack = {kWait, kCore, kHook};
    EXPECT_EQ(FramesToSuspect(stack, FindSuspect(stack, kFiles.system)).size(), 2U);
    EXPECT_EQ(FramesToSuspect({kWait, kWait}, Captured({kWait, kWait}).suspect).size(), 2U);
}

TEST(Evidence, ShowsTheFileToLookAt) {
    const std::vector<StackFrame> deep(11, kWait);
    const auto below = [&](const StackFrame& frame) {
        std::vector<StackFrame> frames = deep;
        frames.push_back(frame);
        return frames;
    };
    const StackFrame spooler = Frame(L"winspool", L"Print", L"W:\\winspool.drv", 9);
    const struct {
        std::vector<StackFrame> frames;
        Lines lines;
    } cases[] = {
        {below(kPlugin),
         {L"Suspect: holder.cpg, frame 12: Holder Tools 2.1 (Example Ltd), C:\\p\\holder.cpg"}},
        {{kDriver}, {L"Suspect: acmeprint.dll, frame 1: version 7, C:\\acmeprint.dll"}},
        {{kWait, kHook},
         {L"Suspect: hook.dll, frame 2: " + std::wstring(100, L'x') +
          L"... (Hooks), C:\\hook.dll"}},
        {{kWait, kCore},
         {L"Suspect: CorelDRW.exe, frame 2: a file without a description, C:\\CorelDRW.exe"}},
        {{spooler}, {}},
        {below(spooler), {L"Suspect: winspool.drv, frame 12."}},
    };
    for (const auto& c : cases) {
        Lines lines;
        for (const std::wstring& line : c.lines)
            lines.push_back(L"[Evidence] " + line);
        EXPECT_EQ(EvidenceLines(Captured(c.frames), kFiles), lines);
    }
}

TEST(Evidence, ShowsThreadsWorthALook) {
    HangEvidence evidence = Captured({kWait});
    const WaitNode lock{WaitObject::criticalSection, {}, 0, 0, L"", L""};
    const auto thread = [](std::uint32_t id) {
        return WaitNode{WaitObject::thread, {}, 4711, id, L"", L""};
    };
    evidence.waits.nodes = {thread(42), lock, thread(9)};
    evidence.otherThreads = {{1, {kWait, kHook}},   {2, {kWait, kCore}}, {3, {kWait, kHook}},
                             {4, {kWait, kPlugin}}, {5, {kDriver}},      {9, {kWait}}};
    const Lines lines = EvidenceLines(evidence, kFiles);
    ASSERT_EQ(lines.size(), 5U);
    EXPECT_EQ(lines[0],
              L"[Evidence] Waits for thread 9 of the same process, which holds a critical "
              L"section.");
    EXPECT_EQ(lines[1], L"[Evidence] Thread 9 is in ntdll.dll!NtWaitForSingleObject.");
    EXPECT_EQ(lines[2],
              L"[Evidence] Thread 4 is in holder.cpg!Hold: Holder Tools 2.1 (Example Ltd), "
              L"C:\\p\\holder.cpg");
    EXPECT_EQ(lines[3],
              L"[Evidence] Thread 5 is in acmeprint.dll!(no symbol): version 7, "
              L"C:\\acmeprint.dll");
    EXPECT_TRUE(lines[4].starts_with(L"[Evidence] Thread 1 is in hook.dll!OnMouse: x"));

    for (std::uint32_t id = 10; id < 30; ++id) {
        StackFrame other = kHook;
        other.function += std::to_wstring(id);
        evidence.otherThreads.push_back({id, {other}});
    }
    EXPECT_EQ(EvidenceLines(evidence, kFiles).size(), 1 + kMostThreadLines);
}

TEST(Evidence, GathersAroundACapture) {
    std::vector<std::uint32_t> visited;
    unsigned pausedMs = 0;
    EvidenceSensors sensors;
    sensors.moment = [&](std::uint32_t) { return ThreadMoment{1000U * pausedMs, 500U * pausedMs}; };
    sensors.pause = [&](unsigned ms) { pausedMs += ms; };
    sensors.isGeneratedCode = [](std::uint32_t, std::uint64_t address) { return address == 77; };
    sensors.threadsOf = [](std::uint32_t) {
        std::vector<std::uint32_t> ids;
        for (std::uint32_t id = 1; id <= 100; ++id)
            ids.push_back(id);
        return ids;
    };
    sensors.waitChain = [](std::uint32_t id) {
        const WaitNode lock{WaitObject::mutex, {}, 0, 0, L"", L""};
        return WaitChain{{{WaitObject::thread, {}, 4711, id, L"", L""},
                          lock,
                          {WaitObject::thread, {}, 4711, 99, L"", L""}},
                         false};
    };
    sensors.captureThreads = [&](std::uint32_t, const std::vector<std::uint32_t>& ids) {
        visited = ids;
        return std::vector<ThreadStack>();
    };
    CapturedHang hang{Place({kWait}, 0, 0), {true, {}, {kWait, kWait}, 77}, {}, {}};
    hang.probe = {{0, 0}, {50'000, 0}};
    const HangEvidence evidence = GatherEvidence(sensors, hang, {});
    ASSERT_EQ(visited.size(), kMostThreads);
    EXPECT_EQ(visited[0], 99U);
    EXPECT_EQ(visited[41], 41U);
    EXPECT_EQ(visited[42], 43U) << "the main thread has been captured";
    EXPECT_EQ(pausedMs, 200U);
    EXPECT_EQ(evidence.processorPercent, 40U);
    EXPECT_EQ(EvidenceLines(evidence, kFiles).at(1),
              L"[Evidence] The stack ends behind frame 2, in generated code (a macro, a script or "
              L".NET): what called it cannot be seen.");

    hang.stack.stoppedAt = 78;
    hang.stack.frames[1] = Frame(L"", L"", L"", 77);
    hang.probe.to.atUs = 800'000;
    EXPECT_EQ(GatherEvidence(sensors, hang, {}).generatedFrame, 1U);
    EXPECT_EQ(pausedMs, 200U) << "the probe took long enough";
    hang.stack.frames.push_back(kCore);
    for (const std::wstring& line : EvidenceLines(GatherEvidence(sensors, hang, {}), kFiles))
        EXPECT_EQ(line.find(L"generated"), std::wstring::npos) << "the stack goes on";
}
