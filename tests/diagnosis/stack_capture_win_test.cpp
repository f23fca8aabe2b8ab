// Captures of practice programs that hang in every known way.
#include "diagnosis/stack_capture_win.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>

#include "base/text.h"
#include "cdr/responsiveness_win.h"
#include "diagnosis/classify.h"
#include "diagnosis/system_files_win.h"
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

CaptureResult Capture(const CdrInstance& instance) {
    return CaptureMainThreadStack(instance.pid, instance.mainThreadId);
}

// The practice program's own names are in debug information of a kind that only Wine's library
// reads; what its libraries export has a name everywhere.
bool OwnCodeHasNames() {
    return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}

StackFrame Find(const CaptureResult& capture, const wchar_t* module, const wchar_t* function) {
    const auto found =
        std::find_if(capture.frames.begin(), capture.frames.end(), [&](const StackFrame& frame) {
            return frame.moduleName == module && frame.function == function;
        });
    return found != capture.frames.end() ? *found : StackFrame{};
}

bool ReachesTheStart(const CaptureResult& capture) {
    return !capture.frames.empty() && capture.frames.back().function == L"RtlUserThreadStart";
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
        {L"core-dll", cdrCore, L"crlgeometry", L"IntersectOutlines", L"WeldShapes"},
        {L"deep-stack", cdrCore, L"coreldrw", L"OpenGroup", L"OpenGroup"},
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
            EXPECT_NE(Find(capture, L"coreldrw", c.caller).address, 0U);
            EXPECT_LT(suspect.frame.displacement - 1, 255U);
            EXPECT_GT(suspect.frame.line, 0U);
            EXPECT_TRUE(suspect.frame.sourceFile.ends_with(L".cpp"));
            EXPECT_EQ(suspect.frame.imagePath.find(PracticeProgram().parent_path().wstring()), 0U);
        }
        const bool isDeep = c.way == std::wstring_view(L"deep-stack");
        EXPECT_EQ(capture.frames.size() == 64, isDeep) << capture.frames.size();
        EXPECT_EQ(ReachesTheStart(capture), !isDeep);

        practice.signal(L"release");
        EXPECT_TRUE(practice.await(L"released"));
        EXPECT_TRUE(IsWindowResponsive(instance.mainWindow, kLongMs));
    }
}

TEST(Capture, KnowsWhatTookTheBaseOfWhatWasUnloaded) {
    const PracticeProcess first(L"late-plugin");
    const PracticeProcess second(L"print");
    const CdrInstance target = first.listed();
    const StackFrame early = Find(Capture(target), L"screenhook", L"ForwardPointerEvent");
    EXPECT_NE(early.address, 0U);

    first.signal(L"next");
    ASSERT_TRUE(first.await(L"ready2"));
    const CaptureResult late = Capture(target);
    const StackFrame plugIn = Find(late, L"slowfilter.cpg", L"ApplySlowFilter");
    EXPECT_EQ(plugIn.address >> 16, early.address >> 16) << "not the same base";
    EXPECT_TRUE(ReachesTheStart(late)) << "frames of a new module cannot be unwound unknown";

    EXPECT_NE(Find(Capture(second.listed()), L"acmeprintdrv", L"AskPrinterForTrays").address, 0U);
    EXPECT_NE(Find(Capture(target), L"slowfilter.cpg", L"ApplySlowFilter").address, 0U);
}

TEST(Capture, SaysWhatItCannotReach) {
    PracticeProcess captured(L"own-code");
    const CdrInstance gone = captured.listed();
    EXPECT_TRUE(Capture(gone).ok);
    // Neither the registration that the capture left nor a foreign handle keeps it in reach.
    const KernelHandle held(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, gone.pid));
    captured.end();
    EXPECT_EQ(Capture(gone).error, kProcessClosed);

    const PracticeProcess practice(L"own-code");
    CdrInstance instance = practice.listed();
    const PracticeProcess other(L"own-code");
    const DWORD foreign = other.listed().mainThreadId;
    EXPECT_EQ(CaptureMainThreadStack(instance.pid, foreign).error, kThreadClosed);
    EXPECT_EQ(SuspendCount(foreign), 0U);

    const RemoteThread ended(practice.process(), 0);
    ASSERT_EQ(WaitForSingleObject(ended.handle.get(), kLongMs), WAIT_OBJECT_0);
    EXPECT_EQ(CaptureMainThreadStack(instance.pid, ended.id).error,
              L"Failed to suspend the thread, please retry.");

    const KernelHandle main(OpenThread(WRITE_DAC, FALSE, instance.mainThreadId));
    Forbid(main.get());
    EXPECT_EQ(Capture(instance).error, kThreadClosed);
    Forbid(practice.process());
    EXPECT_EQ(Capture(instance).error, kProcessClosed);
}
