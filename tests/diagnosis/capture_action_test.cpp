#include "diagnosis/capture_action.h"

#include <gtest/gtest.h>

namespace {

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
    EvidenceSensors evidence;
    LastCapture last = {{Frame(L"kept", L"")}, FrameCategory::font, L"24"};

    std::wstring report(bool selected = true) {
        std::wstring lines;
        ActionHost host;
        host.appendLog = [&](const std::wstring& line) { lines += line + L"\n"; };
        const CaptureSensors sensors{
            [&](WindowHandle window, unsigned timeoutMs) {
                EXPECT_EQ(window, instance.mainWindow);
                EXPECT_EQ(timeoutMs, 800U);
                return responsive;
            },
            [&](std::uint32_t pid, std::uint32_t threadId) {
                EXPECT_FALSE(responsive);
                EXPECT_EQ(pid, 4711U);
                EXPECT_EQ(threadId, 42U);
                return capture;
            },
            {[](const std::wstring&) { return false; }, [](const std::wstring&) { return false; }},
            evidence};
        SignatureRuleBase rules;
        LoadBuiltInRules(rules);
        OnCaptureNow(host, selected ? &instance : nullptr, rules, sensors, last);
        return lines;
    }
};

const std::wstring kTarget = L"[Capture] Target: PID 4711  Version 25.0.0.230\n";

}  // namespace

TEST(CaptureNow, StopsWhereNothingCanBeCaptured) {
    Press press;
    EXPECT_EQ(press.report(false), L"[Capture] Please select a CDR instance first.\n");
    press.responsive = true;
    EXPECT_EQ(press.report(), kTarget +
                                  L"[Capture] CDR main thread is responsive right now. Click "
                                  L"'Capture Now' again while it hangs.\n");
    press.responsive = false;
    press.capture.error = L"Why it failed.";
    press.instance.version.clear();
    EXPECT_EQ(press.report(),
              L"[Capture] Target: PID 4711  Version (unknown)\n[Capture] Failed: Why it failed.\n");

    ASSERT_EQ(press.last.frames.size(), 1U) << "the last capture is kept";
    EXPECT_EQ(press.last.frames[0].moduleName, L"kept");
}

TEST(CaptureNow, ReportsAMatchedRuleAndEightFrames) {
    Press press;
    press.capture.ok = true;
    press.capture.frames.assign(10, Frame(L"ntdll", L"NtWaitForSingleObject"));
    press.capture.frames[6] = Frame(L"slow.cpg", L"");
    press.capture.frames[8] = Frame(L"ninth", L"");

    std::wstring frames;
    for (int i = 0; i < 8; ++i)
        frames += i == 6 ? L"  slow.cpg!(no symbol)\n" : L"  ntdll!NtWaitForSingleObject\n";
    EXPECT_EQ(press.report(),
              kTarget +
                  L"===== Diagnosis =====\n"
                  L"[Stuck in a third-party plugin] (severity: high)\n"
                  L"The block happens inside a plugin module. Temporarily move its .cpg file "
                  L"out of the Plugins folder to verify, then contact the plugin author or "
                  L"find a replacement.\n--- Top 8 frames ---\n" +
                  frames + L"\n");
    ASSERT_EQ(press.last.frames.size(), 10U);
    EXPECT_EQ(press.last.frames[8].moduleName, L"ninth");
    EXPECT_EQ(press.last.category, FrameCategory::plugin);
    EXPECT_EQ(press.last.version, L"25.0.0.230");
}

TEST(CaptureNow, TellsTheEvidenceBehindTheDiagnosis) {
    Press press;
    press.capture = {true, {}, {Frame(L"hook", L"OnMouse")}};
    const std::wstring alone = press.report();
    std::uint64_t nowUs = 0;
    press.evidence.moment = [&](std::uint32_t threadId) {
        EXPECT_EQ(threadId, 42U);
        return ThreadMoment{nowUs += 1'000'000, 0};
    };
    const std::wstring work =
        L"===== Evidence =====\n[Evidence] Main thread: waiting, 0 % of a core during the capture";
    press.last = {};
    EXPECT_EQ(press.report(), alone + work + L".\n\n");
    EXPECT_EQ(press.report(), alone + work + L"; at the same place as 2 s ago.\n\n");
    EXPECT_EQ(press.report(), alone + work + L"; at the same place as 4 s ago.\n\n");
    EXPECT_EQ(press.last.frames[0].function, L"OnMouse") << "what may be submitted";
    press.capture.frames[0].function = L"Elsewhere";
    EXPECT_NE(press.report().find(L"; moving: at another place than 2 s ago.\n\n"),
              std::wstring::npos);
}

TEST(CaptureNow, ReportsAnUnmatchedSuspect) {
    const std::pair<StackFrame, std::wstring> cases[] = {
        {Frame(L"hook", L"OnMouse"),
         L"[Blocked in a third-party component]  Suspect module: hook\nThis component is not part "
         L"of CDR itself - submit the signature to confirm its source.\n"},
        {Frame(L"", L"OnMouse"),
         L"[Blocked in a third-party component]\nThis component is not part of CDR itself - submit "
         L"the signature to confirm its source.\n"},
        {Frame(L"user32", L"GetMessageW"),
         L"[Could not classify automatically]  Suspect module: System-level wait (submit to "
         L"analyze further)\nCopy the raw stack, or click 'Submit Unknown' to help improve the "
         L"signature database.\n"},
    };
    for (const auto& [frame, diagnosis] : cases) {
        Press press;
        press.capture = {true, {}, {frame}};
        const std::wstring module = frame.moduleName.empty() ? L"?" : frame.moduleName;
        EXPECT_EQ(press.report(), kTarget + L"===== Diagnosis =====\n" + diagnosis +
                                      L"  (No signature matched - you may click 'Submit Unknown' "
                                      L"to feed the community database anonymously.)\n"
                                      L"--- Top 8 frames ---\n  " +
                                      module + L"!" + frame.function + L"\n\n");
    }
}
