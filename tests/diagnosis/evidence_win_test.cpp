// Captures of practice programs that hang in every way.
#include <windows.h>

#include <gtest/gtest.h>

#include "diagnosis/capture_action.h"
#include "diagnosis/evidence_sensors_win.h"
#include "diagnosis/stack_capture_win.h"
#include "diagnosis/system_files_win.h"
#include "tests/cdr/practice_process_win.h"
#include "tests/fake_host.h"

TEST(CapturedHang, IsDiagnosedWithWhatTheStackDoesNotName) {
    const struct {
        const wchar_t *way, *fact;
    } cases[] = {
        {L"print", L"]  Suspect module: acmeprintdrv\n"},
        {L"deep-stack", L"]  Suspect module: coreldrw\n"},
        {L"system-wait", L"]  Suspect module: System-level wait (submit to analyze further)\n"},
        {L"own-spin", L"] Main thread: computing "},
        {L"deep-plugin", L"] Suspect: deepfilter.cpg, frame 12: a file without a description, "},
        {L"lock-held", L" is in holder.cpg!HoldDocumentLock: Holder Tools 2.1 (Example Ltd), "},
        {L"mutex-held", L" is in holder.cpg!HoldDocumentLock: Holder Tools 2.1 (Example Ltd), "},
        {L"com-wait", L" is in linkserver.dll!ServeLinkedObject: a file without a description, "},
        {L"generated-code", L", in generated code ("},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.way);
        const PracticeProcess practice(c.way);
        const CdrInstance target = practice.listed();
        LastCapture last;
        for (const bool isFirst : {true, false}) {
            FakeHost fake;
            OnCaptureNow(fake.host(), &target, {},
                         {[](WindowHandle, unsigned) { return false; }, CaptureMainThreadStack,
                          kSystemFiles, SystemEvidence()},
                         last);
            expectParts(fake.report(), {c.fact});
            EXPECT_NE(holds(fake.report(), L"; at the same place as "), isFirst) << fake.report();
            EXPECT_EQ(practice.heldThreads(), 0);
        }
    }
}
