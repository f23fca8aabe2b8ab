#include "diagnosis/capture_action.h"

#include <gtest/gtest.h>

#include "tests/diagnosis/frame.h"
#include "tests/fake_host.h"

namespace {

const std::wstring kTarget = L"[Capture] Target: PID 4711  Version 25.0.0.230\n";

struct Desk {
    CdrInstance instance = {4711, 42, this, L"C:\\CorelDRW.exe", L"25.0.0.230"};
    bool responsive = false;
    CaptureResult capture;
    EvidenceSensors evidence;
    LastCapture last = {{Frame(L"kept")}, FrameCategory::font, L"24"};

    std::wstring press(bool selected = true) {
        FakeHost fake;
        const auto no = [](const std::wstring&) { return false; };
        const auto isResponsive = [&](WindowHandle window, unsigned timeoutMs) {
            EXPECT_TRUE(window == instance.mainWindow && timeoutMs == 800);
            return responsive;
        };
        const auto captureStack = [&](std::uint32_t pid, std::uint32_t threadId) {
            EXPECT_TRUE(!responsive && pid == 4711 && threadId == 42);
            return capture;
        };
        const CaptureSensors sensors{isResponsive, captureStack, {no, no}, evidence};
        OnCaptureNow(fake.host(), selected ? &instance : nullptr, {}, sensors, last);
        return fake.report();
    }
};

}  // namespace

TEST(CaptureNow, StopsWhereNothingCanBeCaptured) {
    Desk desk;
    EXPECT_EQ(desk.press(false), L"[Capture] Please select a CDR instance first.\n");
    desk.responsive = true;
    EXPECT_EQ(desk.press(), kTarget +
                                L"[Capture] CDR main thread is responsive right now. Click "
                                L"'Capture Now' again while it hangs.\n");
    desk.responsive = false;
    desk.capture.error = L"Why it failed.";
    EXPECT_EQ(desk.press(), kTarget + L"[Capture] Failed: Why it failed.\n");
    EXPECT_EQ(desk.last.frames.at(0).moduleName, L"kept");
}

TEST(CaptureNow, ReportsAnUnmatchedSuspectAndTheEvidence) {
    Desk desk;
    desk.capture = {true, {}, {Frame(L"hook", L"OnMouse"), Frame(L"")}};
    std::uint64_t nowUs = 0;
    desk.evidence.moment = [&](std::uint32_t threadId) {
        EXPECT_EQ(threadId, 42U);
        return ThreadMoment{nowUs += 1'000'000, 0};
    };
    const std::wstring told =
        kTarget +
        L"===== Diagnosis =====\n[Blocked in a third-party component]  Suspect module: hook\nThis "
        L"component is not part of CDR itself - submit the signature to confirm its source.\n"
        L"  (No signature matched - you may click 'Submit Unknown' to feed the community database "
        L"anonymously.)\n--- Top 8 frames ---\n  hook!OnMouse\n  ?!(no symbol)\n\n"
        L"===== Evidence =====\n[Evidence] Main thread: waiting, 0 % of a core during the capture";
    EXPECT_EQ(desk.press(), told + L".\n\n");
    desk.press();
    EXPECT_EQ(desk.press(), told + L"; at the same place as 4 s ago.\n\n");
    EXPECT_EQ(desk.last.frames[0].function, L"OnMouse");
    EXPECT_EQ(desk.last.category, FrameCategory::thirdParty);
    EXPECT_EQ(desk.last.version, L"25.0.0.230");
}
