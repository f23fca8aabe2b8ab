// Captures of practice programs that hang in every known way.
#include "diagnosis/stack_capture_win.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>

#include "base/text.h"
#include "cdr/responsiveness_win.h"
#include "diagnosis/capture_action.h"
#include "diagnosis/match.h"
#include "diagnosis/system_files_win.h"
#include "tests/base/resources_win.h"
#include "tests/cdr/practice_process_win.h"

namespace {

constexpr unsigned kLongMs = 20000;

constexpr const wchar_t* kProcessClosed =
    L"Cannot open the CDR process (insufficient rights). Make sure CDR and this tool run as the "
    L"same user.";
constexpr const wchar_t* kThreadClosed =
    L"Cannot access the CDR main thread. It may be protected by security software - try "
    L"whitelisting Mirelo.";

// How often somebody still holds the thread suspended.
DWORD SuspendCount(DWORD threadId) {
    const KernelHandle thread(OpenThread(THREAD_SUSPEND_RESUME, FALSE, threadId));
    const DWORD count = SuspendThread(thread.get());
    ResumeThread(thread.get());
    return count;
}

CaptureResult Capture(const CdrInstance& instance) {
    const CaptureResult result = CaptureMainThreadStack(instance.pid, instance.mainThreadId);
    EXPECT_EQ(result.ok, !result.frames.empty());
    EXPECT_EQ(result.ok, result.error.empty());
    return result;
}

// The practice program's own names are in debug information of a kind that only Wine's library
// reads; what its libraries export has a name everywhere.
bool OwnCodeHasNames() {
    return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}

bool ReachesTheStart(const CaptureResult& capture) {
    return !capture.frames.empty() && capture.frames.back().function == L"RtlUserThreadStart";
}

bool Names(const CaptureResult& capture, const wchar_t* module, const wchar_t* function) {
    return std::any_of(capture.frames.begin(), capture.frames.end(), [&](const StackFrame& frame) {
        return frame.moduleName == module && frame.function == function;
    });
}

std::wstring ErrorOf(DWORD pid, DWORD threadId) {
    return CaptureMainThreadStack(pid, threadId).error;
}

// One press of the button, with the program's own sensors and rules.
std::wstring ReportOf(const CdrInstance& instance, LastCapture& last) {
    std::wstring report;
    Shell shell;
    shell.appendLog = [&](const std::wstring& line) { report += line + L"\n"; };
    SignatureRuleBase rules;
    LoadBuiltInRules(rules);
    OnCaptureNow(shell, &instance, rules,
                 {IsWindowResponsive, CaptureMainThreadStack, kSystemFiles}, last);
    return report;
}

// The system's own frames are not ours to foretell; all others stand in the tests.
std::wstring ShownFrames(const std::vector<StackFrame>& frames) {
    std::wstring text;
    for (std::size_t i = 0; i < std::min<std::size_t>(frames.size(), 8); ++i) {
        const StackFrame& frame = frames[i];
        text += L"  " + frame.moduleName + L"!" +
                (frame.function.empty() ? L"(no symbol)" : frame.function) + L"\n";
    }
    return text;
}

// A thread in another process, with nothing of its own to do.
struct RemoteThread {
    KernelHandle handle;
    DWORD id = 0;

    RemoteThread(HANDLE process, DWORD flags) {
        // The system's libraries are mapped at the same place in every process.
        const auto entry = reinterpret_cast<LPTHREAD_START_ROUTINE>(reinterpret_cast<void (*)()>(
            GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "ExitThread")));
        handle.reset(CreateRemoteThread(process, nullptr, 0, entry, nullptr, flags, &id));
    }
};

// What follows the first line of a diagnosis without patterns in its rules.
std::wstring AdviceFor(FrameCategory category) {
    SignatureRuleBase rules;
    LoadBuiltInRules(rules);
    const Diagnosis diagnosis = MatchRules(rules, {category, {}, {}}, {});
    if (diagnosis.matched) return diagnosis.rule->advice + L"\n";
    return diagnosis.advice +
           L"\n  (No signature matched - you may click 'Submit Unknown' to feed the community "
           L"database anonymously.)\n";
}

struct Hanging {
    const char* way;
    FrameCategory category;
    const wchar_t* headline;
    // The suspect and its callers, below the system's frames; none for the system's own wait.
    const wchar_t* frames;
};

constexpr Hanging kHangings[] = {
    {"plugin-sleep", FrameCategory::plugin, L"[Stuck in a third-party plugin] (severity: high)",
     L"  slowfilter.cpg!ApplySlowFilter\n  coreldrw!HangInLibrary\n  coreldrw!ApplyEffect\n"},
    {"plugin-spin", FrameCategory::plugin, L"[Stuck in a third-party plugin] (severity: high)",
     L"  slowfilter.cpg!ApplyEndlessFilter\n  coreldrw!HangInLibrary\n  coreldrw!PreviewEffect\n"},
    {"print", FrameCategory::print, L"[Stuck in print spooling] (severity: high)",
     L"  acmeprintdrv!AskPrinterForTrays\n  coreldrw!HangInLibrary\n  coreldrw!PrintDocument\n"},
    {"font", FrameCategory::font, L"[Stuck in font enumeration/rendering] (severity: high)",
     L"  acmefontpack!ReadFontFaces\n  coreldrw!HangInLibrary\n  coreldrw!FillFontList\n"},
    {"core-dll", FrameCategory::cdrCore,
     L"[Blocked in a CDR core module]  Suspect module: crlgeometry",
     L"  crlgeometry!IntersectOutlines\n  coreldrw!HangInLibrary\n  coreldrw!WeldShapes\n"},
    {"third-party", FrameCategory::thirdParty,
     L"[Blocked in a third-party component]  Suspect module: screenhook",
     L"  screenhook!ForwardPointerEvent\n  coreldrw!HangInLibrary\n  coreldrw!TrackPointer\n"},
    {"own-code", FrameCategory::cdrCore,
     L"[Blocked in a CDR core module]  Suspect module: coreldrw",
     L"  coreldrw!RebuildDrawing\n  coreldrw!HangNow\n"},
    {"deep-stack", FrameCategory::cdrCore,
     L"[Blocked in a CDR core module]  Suspect module: coreldrw",
     L"  coreldrw!OpenGroup\n  coreldrw!OpenGroup\n"},
    {"send-message", FrameCategory::cdrCore,
     L"[Blocked in a CDR core module]  Suspect module: coreldrw",
     L"  user32!SendMessageTimeoutW\n  coreldrw!AskSilentWindow\n  coreldrw!HangNow\n"},
    {"system-wait", FrameCategory::systemOnly,
     L"[Could not classify automatically]  Suspect module: System-level wait (submit to analyze "
     L"further)",
     L""},
};

class EveryWay : public testing::TestWithParam<Hanging> {};

}  // namespace

TEST_P(EveryWay, IsReportedAndGoesOn) {
    if (!OwnCodeHasNames()) GTEST_SKIP() << "needs debug information";
    const Hanging& hanging = GetParam();
    const PracticeProcess practice(wideFromUtf8(hanging.way));
    const CdrInstance instance = practice.listed();
    LastCapture last;
    const std::wstring report = ReportOf(instance, last);
    EXPECT_EQ(SuspendCount(instance.mainThreadId), 0U);

    const std::wstring shown = ShownFrames(last.frames);
    EXPECT_EQ(report, L"[Capture] Target: PID " + std::to_wstring(practice.pid()) +
                          L"  Version 25.0.0.230\n===== Diagnosis =====\n" + hanging.headline +
                          L"\n" + AdviceFor(hanging.category) + L"--- Top 8 frames ---\n" + shown +
                          L"\n");
    EXPECT_NE(shown.find(hanging.frames), std::wstring::npos) << hanging.frames << "is not in\n"
                                                              << shown;
    EXPECT_EQ(last.category, hanging.category);
    EXPECT_EQ(last.version, L"25.0.0.230");
    EXPECT_GE(last.frames.size(), 4U);
    EXPECT_EQ(last.frames.size() == 64, std::string_view(hanging.way) == "deep-stack");

    practice.signal(L"release");
    EXPECT_TRUE(practice.await(L"released"));
    EXPECT_TRUE(IsWindowResponsive(instance.mainWindow, kLongMs));
}

INSTANTIATE_TEST_SUITE_P(Capture, EveryWay, testing::ValuesIn(kHangings),
                         [](const testing::TestParamInfo<Hanging>& hanging) {
                             std::string name = hanging.param.way;
                             std::replace(name.begin(), name.end(), '-', '_');
                             return name;
                         });

TEST(Capture, TellsWhereEveryFrameIs) {
    if (!OwnCodeHasNames()) GTEST_SKIP() << "needs debug information";
    const PracticeProcess practice(L"plugin-sleep");
    const CaptureResult capture = Capture(practice.listed());
    bool unnamed = false;
    for (const StackFrame& frame : capture.frames) {
        EXPECT_NE(frame.address, 0U);
        EXPECT_FALSE(frame.moduleName.empty());
        EXPECT_TRUE(frame.imagePath.starts_with(L"C:\\") || frame.imagePath.starts_with(L"Z:\\"))
            << frame.imagePath;
        if (!frame.function.empty()) continue;
        unnamed = true;
        EXPECT_EQ(frame.displacement, 0U);
        EXPECT_EQ(frame.line, 0U);
    }
    EXPECT_TRUE(unnamed) << "no frame without a symbol to try";

    const auto suspect =
        std::find_if(capture.frames.begin(), capture.frames.end(),
                     [](const StackFrame& frame) { return frame.function == L"ApplySlowFilter"; });
    ASSERT_NE(suspect, capture.frames.end());
    EXPECT_EQ(suspect->imagePath, (PracticeProgram().parent_path() / "slowfilter.cpg").wstring());
    EXPECT_GT(suspect->displacement, 0U);
    EXPECT_LT(suspect->displacement, 256U);
    EXPECT_TRUE(suspect->sourceFile.ends_with(L"slow_filter.cpp")) << suspect->sourceFile;
    EXPECT_GT(suspect->line, 0U);
}

TEST(Capture, KnowsWhatWasLoadedSinceAndWhoIsAsked) {
    const PracticeProcess first(L"late-plugin");
    const PracticeProcess second(L"print");
    const CdrInstance target = first.listed();
    const CaptureResult early = Capture(target);
    EXPECT_TRUE(Names(early, L"screenhook", L"ForwardPointerEvent"));
    EXPECT_FALSE(Names(early, L"slowfilter.cpg", L"ApplySlowFilter"));

    first.signal(L"next");
    ASSERT_TRUE(first.await(L"ready2"));
    const CaptureResult late = Capture(target);
    EXPECT_TRUE(Names(late, L"slowfilter.cpg", L"ApplySlowFilter"));
    EXPECT_TRUE(ReachesTheStart(late)) << "frames of a new module cannot be unwound unknown";
    EXPECT_FALSE(Names(late, L"screenhook", L"ForwardPointerEvent"));

    const CaptureResult other = Capture(second.listed());
    EXPECT_TRUE(Names(other, L"acmeprintdrv", L"AskPrinterForTrays"));
    EXPECT_TRUE(Names(Capture(target), L"slowfilter.cpg", L"ApplySlowFilter"));
}

TEST(Capture, FailsAtAProcessThatEndedOrIsClosed) {
    PracticeProcess listedOnly(L"exit-on-signal");
    const CdrInstance gone = listedOnly.listed();
    ASSERT_NE(gone.pid, 0U);
    PracticeProcess captured(L"own-code");
    const CdrInstance registered = captured.listed();
    EXPECT_TRUE(Capture(registered).ok);

    // The registration that the capture left must not keep a process that ended in reach.
    captured.end();
    EXPECT_EQ(ErrorOf(registered.pid, registered.mainThreadId), kProcessClosed);

    KernelHandle held(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, gone.pid));
    listedOnly.end();
    EXPECT_EQ(ErrorOf(gone.pid, gone.mainThreadId), kProcessClosed) << "somebody holds it";
    held.reset();
    LastCapture last;
    EXPECT_EQ(ReportOf(gone, last), L"[Capture] Target: PID " + std::to_wstring(gone.pid) +
                                        L"  Version 25.0.0.230\n[Capture] Failed: " +
                                        kProcessClosed + L"\n");

    const PracticeProcess forbidden(L"own-code");
    const CdrInstance instance = forbidden.listed();
    Forbid(forbidden.process());
    EXPECT_EQ(ErrorOf(instance.pid, instance.mainThreadId), kProcessClosed);
    EXPECT_EQ(SuspendCount(instance.mainThreadId), 0U);
}

TEST(Capture, FailsAtAThreadThatIsNotTheTargets) {
    const PracticeProcess practice(L"own-code");
    const PracticeProcess other(L"own-code");
    const CdrInstance instance = practice.listed();
    const DWORD foreign = other.listed().mainThreadId;
    EXPECT_EQ(ErrorOf(instance.pid, foreign), kThreadClosed);
    EXPECT_EQ(SuspendCount(foreign), 0U);

    DWORD ended = 0;
    {
        const RemoteThread thread(practice.process(), 0);
        ASSERT_EQ(WaitForSingleObject(thread.handle.get(), kLongMs), WAIT_OBJECT_0);
        ended = thread.id;
        EXPECT_EQ(ErrorOf(instance.pid, ended), L"Failed to suspend the thread, please retry.");
    }
    EXPECT_EQ(ErrorOf(instance.pid, ended), kThreadClosed);

    const KernelHandle main(OpenThread(WRITE_DAC, FALSE, instance.mainThreadId));
    Forbid(main.get());
    EXPECT_EQ(ErrorOf(instance.pid, instance.mainThreadId), kThreadClosed);
}

TEST(Capture, FailsAtAStackThatCannotBeWalked) {
    const PracticeProcess practice(L"responsive");
    const RemoteThread thread(practice.process(), CREATE_SUSPENDED);
    CONTEXT context{};
    context.ContextFlags = CONTEXT_FULL;
    ASSERT_TRUE(GetThreadContext(thread.handle.get(), &context));
    context.Rip = 0;
    ASSERT_TRUE(SetThreadContext(thread.handle.get(), &context));
    EXPECT_EQ(ErrorOf(practice.pid(), thread.id),
              L"Stack walk failed. CDR may have recovered - capture again while it hangs.");
    EXPECT_EQ(SuspendCount(thread.id), 1U) << "suspended by the test alone";
}

TEST(Capture, LeavesNothingBehindTwoHundredTimes) {
    constexpr unsigned kCaptures = 200;
    // A change of the target costs a registration, which is slow.
    constexpr unsigned kCapturesInARow = 20;
    const PracticeProcess waiting(L"print");
    const PracticeProcess spinning(L"plugin-spin");
    const CdrInstance targets[] = {waiting.listed(), spinning.listed()};
    const wchar_t* const modules[] = {L"acmeprintdrv", L"slowfilter.cpg"};
    const wchar_t* const functions[] = {L"AskPrinterForTrays", L"ApplyEndlessFilter"};

    for (const CdrInstance& target : targets)
        EXPECT_TRUE(Capture(target).ok);
    const int handles = OpenHandles();
    for (unsigned i = 0; i < kCaptures; ++i) {
        const unsigned which = i / kCapturesInARow % 2;
        ASSERT_TRUE(Names(Capture(targets[which]), modules[which], functions[which])) << i;
    }
    EXPECT_EQ(OpenHandles(), handles);
    EXPECT_GT(handles, 0);
    for (const CdrInstance& target : targets)
        EXPECT_EQ(SuspendCount(target.mainThreadId), 0U);
}
