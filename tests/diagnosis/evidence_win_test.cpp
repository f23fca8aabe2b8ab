// The evidence of practice programs that hang in every way that a stack alone does not explain.
#include <windows.h>

#include <gtest/gtest.h>

#include "base/text.h"
#include "diagnosis/capture_action.h"
#include "diagnosis/evidence_sensors_win.h"
#include "diagnosis/stack_capture_win.h"
#include "diagnosis/system_files_win.h"
#include "tests/cdr/practice_process_win.h"
#include "tests/fake_host.h"

namespace {

std::string ReportOf(const CdrInstance& target, LastCapture& last) {
    FakeHost fake;
    OnCaptureNow(fake.host(), &target, {},
                 {[](WindowHandle, unsigned) { return false; }, CaptureMainThreadStack,
                  kSystemFiles, SystemEvidence()},
                 last);
    return utf8FromWide(fake.report());
}

}  // namespace

TEST(CapturedEvidence, NamesWhatTheStackDoesNot) {
    const struct {
        const wchar_t* way;
        const char* fact;
    } cases[] = {
        {L"own-spin", "] Main thread: computing "},
        {L"deep-plugin", "] Suspect: deepfilter.cpg, frame 12: a file without a description, "},
        {L"lock-held", " is in holder.cpg!HoldDocumentLock: Holder Tools 2.1 (Example Ltd), "},
        {L"mutex-held", " is in holder.cpg!HoldDocumentLock: Holder Tools 2.1 (Example Ltd), "},
        {L"com-wait", " is in linkserver.dll!ServeLinkedObject: a file without a description, "},
        {L"generated-code", ", in generated code ("},
    };
    for (const auto& c : cases) {
        const PracticeProcess practice(c.way);
        const CdrInstance target = practice.listed();
        LastCapture last;
        const std::string first = ReportOf(target, last);
        EXPECT_NE(first.find(c.fact), std::string::npos) << first;
        EXPECT_EQ(first.find("same place"), std::string::npos) << first;
        const std::string second = ReportOf(target, last);
        EXPECT_NE(second.find("; at the same place as "), std::string::npos) << second;
        EXPECT_EQ(practice.heldThreads(), 0);
    }
}
