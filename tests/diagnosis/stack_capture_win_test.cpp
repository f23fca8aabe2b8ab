// Captures of practice programs that hang in every known way.
#include "diagnosis/stack_capture_win.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>

#include "base/text.h"
#include "cdr/responsiveness_win.h"
#include "diagnosis/classify.h"
#include "diagnosis/system_files_win.h"
#include "tests/base/resources_win.h"
#include "tests/cdr/practice_process_win.h"

namespace {

using enum FrameCategory;

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

const StackFrame* Find(const CaptureResult& capture, const wchar_t* module,
                       const wchar_t* function) {
    const auto found =
        std::find_if(capture.frames.begin(), capture.frames.end(), [&](const StackFrame& frame) {
            return frame.moduleName == module && frame.function == function;
        });
    return found != capture.frames.end() ? &*found : nullptr;
}

bool ReachesTheStart(const CaptureResult& capture) {
    return !capture.frames.empty() && capture.frames.back().function == L"RtlUserThreadStart";
}

std::wstring ErrorOf(DWORD pid, DWORD threadId) {
    return CaptureMainThreadStack(pid, threadId).error;
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

}  // namespace

TEST(Capture, FindsWhatHangsInEveryWayAndLetsItGoOn) {
    if (!OwnCodeHasNames()) GTEST_SKIP() << "needs debug information";
    constexpr const wchar_t* kSystem = L"System-level wait (submit to analyze further)";
    const struct {
        const wchar_t* way;
        FrameCategory category;
        const wchar_t* suspect;
        const wchar_t* function;
        const wchar_t* caller;
    } cases[] = {
        {L"plugin-sleep", plugin, L"slowfilter.cpg", L"ApplySlowFilter", L"ApplyEffect"},
        {L"plugin-spin", plugin, L"slowfilter.cpg", L"ApplyEndlessFilter", L"PreviewEffect"},
        {L"print", print, L"acmeprintdrv", L"AskPrinterForTrays", L"PrintDocument"},
        {L"font", font, L"acmefontpack", L"ReadFontFaces", L"FillFontList"},
        {L"core-dll", cdrCore, L"crlgeometry", L"IntersectOutlines", L"WeldShapes"},
        {L"third-party", thirdParty, L"screenhook", L"ForwardPointerEvent", L"TrackPointer"},
        {L"own-code", cdrCore, L"coreldrw", L"RebuildDrawing", L"HangNow"},
        {L"deep-stack", cdrCore, L"coreldrw", L"OpenGroup", L"OpenGroup"},
        {L"send-message", cdrCore, L"coreldrw", L"AskSilentWindow", L"HangNow"},
        {L"system-wait", systemOnly, kSystem, nullptr, nullptr},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(utf8FromWide(c.way));
        const PracticeProcess practice(c.way);
        const CdrInstance instance = practice.listed();
        const CaptureResult capture = Capture(instance);
        EXPECT_EQ(SuspendCount(instance.mainThreadId), 0U);
        const SuspectFrame suspect = FindSuspect(capture.frames, kSystemFiles);
        EXPECT_EQ(suspect.category, c.category);
        EXPECT_EQ(suspect.module, c.suspect);
        if (c.function != nullptr) {
            EXPECT_EQ(suspect.frame.function, c.function);
            EXPECT_TRUE(Find(capture, L"coreldrw", c.caller));
        }
        const bool isDeep = c.way == std::wstring_view(L"deep-stack");
        EXPECT_EQ(capture.frames.size() == 64, isDeep) << capture.frames.size();
        EXPECT_EQ(ReachesTheStart(capture), !isDeep);

        practice.signal(L"release");
        EXPECT_TRUE(practice.await(L"released"));
        EXPECT_TRUE(IsWindowResponsive(instance.mainWindow, kLongMs));
    }
}

TEST(Capture, TellsWhereEveryFrameIs) {
    if (!OwnCodeHasNames()) GTEST_SKIP() << "needs debug information";
    const PracticeProcess practice(L"plugin-sleep");
    const CaptureResult capture = Capture(practice.listed());
    int unnamed = 0;
    for (const StackFrame& frame : capture.frames) {
        EXPECT_NE(frame.address, 0U);
        EXPECT_FALSE(frame.moduleName.empty());
        EXPECT_EQ(frame.imagePath.substr(1, 2), L":\\") << utf8FromWide(frame.imagePath);
        if (!frame.function.empty()) continue;
        ++unnamed;
        EXPECT_EQ(frame.displacement + frame.line, 0U);
    }
    EXPECT_GT(unnamed, 0) << "no frame without a symbol to try";

    const StackFrame* suspect = Find(capture, L"slowfilter.cpg", L"ApplySlowFilter");
    ASSERT_NE(suspect, nullptr);
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
    EXPECT_TRUE(Find(early, L"screenhook", L"ForwardPointerEvent"));
    EXPECT_FALSE(Find(early, L"slowfilter.cpg", L"ApplySlowFilter"));

    first.signal(L"next");
    ASSERT_TRUE(first.await(L"ready2"));
    const CaptureResult late = Capture(target);
    EXPECT_TRUE(Find(late, L"slowfilter.cpg", L"ApplySlowFilter"));
    EXPECT_TRUE(ReachesTheStart(late)) << "frames of a new module cannot be unwound unknown";

    EXPECT_TRUE(Find(Capture(second.listed()), L"acmeprintdrv", L"AskPrinterForTrays"));
    EXPECT_TRUE(Find(Capture(target), L"slowfilter.cpg", L"ApplySlowFilter"));
}

TEST(Capture, FailsAtAProcessThatEndedOrIsClosed) {
    PracticeProcess captured(L"own-code");
    const CdrInstance gone = captured.listed();
    EXPECT_TRUE(Capture(gone).ok);
    // Neither the registration that the capture left nor a foreign handle keeps it in reach.
    KernelHandle held(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, gone.pid));
    captured.end();
    EXPECT_EQ(ErrorOf(gone.pid, gone.mainThreadId), kProcessClosed);
    held.reset();
    EXPECT_EQ(ErrorOf(gone.pid, gone.mainThreadId), kProcessClosed);

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
        ASSERT_TRUE(Find(Capture(targets[which]), modules[which], functions[which])) << i;
    }
    EXPECT_EQ(OpenHandles(), handles);
    EXPECT_GT(handles, 0);
    for (const CdrInstance& target : targets)
        EXPECT_EQ(SuspendCount(target.mainThreadId), 0U);
}
