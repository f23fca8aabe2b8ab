#include "diagnosis/capture_action.h"

#include <gtest/gtest.h>

namespace {

using Lines = std::vector<std::wstring>;

StackFrame Frame(const wchar_t* module, const wchar_t* function) {
    StackFrame frame;
    frame.moduleName = module;
    frame.function = function;
    return frame;
}

// One press of the button on a machine that is told what to sense.
struct Press {
    CdrInstance instance = {4711, 42, this, L"C:\\CorelDRW.exe", L"25.0.0.230"};
    bool responsive = false;
    CaptureResult capture;
    SignatureRuleBase rules;
    LastCapture last;
    int captures = 0;

    Lines report(bool selected = true) {
        Lines lines;
        Shell shell;
        shell.appendLog = [&](std::wstring line) { lines.push_back(std::move(line)); };
        CaptureSensors sensors;
        sensors.isResponsive = [&](WindowHandle window, unsigned timeoutMs) {
            EXPECT_EQ(window, instance.mainWindow);
            EXPECT_EQ(timeoutMs, 800U);
            return responsive;
        };
        sensors.captureStack = [&](std::uint32_t pid, std::uint32_t threadId) {
            EXPECT_EQ(pid, 4711U);
            EXPECT_EQ(threadId, 42U);
            ++captures;
            return capture;
        };
        sensors.systemFiles = {[](const std::wstring&) { return false; },
                               [](const std::wstring&) { return false; }};
        OnCaptureNow(shell, selected ? &instance : nullptr, rules, sensors, last);
        return lines;
    }
};

constexpr const wchar_t* kTarget = L"[Capture] Target: PID 4711  Version 25.0.0.230";
constexpr const wchar_t* kNoMatch =
    L"  (No signature matched - you may click 'Submit Unknown' to feed the community database "
    L"anonymously.)";

}  // namespace

TEST(CaptureNow, StopsWhereNothingCanBeCaptured) {
    Press press;
    press.last.frames = {Frame(L"kept", L"")};
    press.last.category = FrameCategory::font;
    press.last.version = L"24";

    EXPECT_EQ(press.report(false), Lines{L"[Capture] Please select a CDR instance first."});
    press.responsive = true;
    EXPECT_EQ(press.report(),
              (Lines{kTarget,
                     L"[Capture] CDR main thread is responsive right now. Click 'Capture Now' "
                     L"again while it hangs."}));
    EXPECT_EQ(press.captures, 0);

    press.responsive = false;
    press.capture.error = L"Why it failed.";
    press.instance.version.clear();
    EXPECT_EQ(press.report(), (Lines{L"[Capture] Target: PID 4711  Version (unknown)",
                                     L"[Capture] Failed: Why it failed."}));
    EXPECT_EQ(press.captures, 1);

    EXPECT_EQ(press.last.frames.size(), 1U);
    EXPECT_EQ(press.last.category, FrameCategory::font);
    EXPECT_EQ(press.last.version, L"24");
}

TEST(CaptureNow, ReportsAMatchedRuleAndEightFrames) {
    Press press;
    LoadBuiltInRules(press.rules);
    press.capture.ok = true;
    press.capture.frames.assign(10, Frame(L"ntdll", L"NtWaitForSingleObject"));
    press.capture.frames[6] = Frame(L"slow.cpg", L"");
    press.capture.frames[8] = Frame(L"ninth", L"");

    const std::wstring wait = L"  ntdll!NtWaitForSingleObject";
    EXPECT_EQ(press.report(),
              (Lines{kTarget, L"===== Diagnosis =====",
                     L"[Stuck in a third-party plugin] (severity: high)",
                     L"The block happens inside a plugin module. Temporarily move its .cpg file "
                     L"out of the Plugins folder to verify, then contact the plugin author or "
                     L"find a replacement.",
                     L"--- Top 8 frames ---", wait, wait, wait, wait, wait, wait,
                     L"  slow.cpg!(no symbol)", wait, L""}));
    EXPECT_EQ(press.last.frames.size(), 10U);
    EXPECT_EQ(press.last.frames[8].moduleName, L"ninth");
    EXPECT_EQ(press.last.category, FrameCategory::plugin);
    EXPECT_EQ(press.last.version, L"25.0.0.230");
}

TEST(CaptureNow, ReportsAnUnmatchedSuspect) {
    constexpr const wchar_t* kHeads[] = {L"===== Diagnosis =====", L"--- Top 8 frames ---"};
    constexpr const wchar_t* kThirdParty =
        L"This component is not part of CDR itself - submit the signature to confirm its source.";
    constexpr const wchar_t* kUnclassified =
        L"Copy the raw stack, or click 'Submit Unknown' to help improve the signature database.";
    const struct {
        std::vector<StackFrame> frames;
        Lines diagnosis;
        Lines shownFrames;
    } cases[] = {
        {{Frame(L"ntdll", L""), Frame(L"hook", L"OnMouse"), Frame(L"", L"main")},
         {L"[Blocked in a third-party component]  Suspect module: hook", kThirdParty, kNoMatch},
         {L"  ntdll!(no symbol)", L"  hook!OnMouse", L"  ?!main"}},
        {{Frame(L"", L"")},
         {L"[Blocked in a third-party component]", kThirdParty, kNoMatch},
         {L"  ?!(no symbol)"}},
        {{Frame(L"user32", L"GetMessageW")},
         {L"[Could not classify automatically]  Suspect module: System-level wait (submit to "
          L"analyze further)",
          kUnclassified, kNoMatch},
         {L"  user32!GetMessageW"}},
    };
    for (const auto& c : cases) {
        Press press;
        LoadBuiltInRules(press.rules);
        press.capture = {true, {}, c.frames};
        Lines expected = {kTarget, kHeads[0]};
        expected.insert(expected.end(), c.diagnosis.begin(), c.diagnosis.end());
        expected.push_back(kHeads[1]);
        expected.insert(expected.end(), c.shownFrames.begin(), c.shownFrames.end());
        expected.push_back(L"");
        EXPECT_EQ(press.report(), expected);
    }
}
