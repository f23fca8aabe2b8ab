#include "cloud/submission.h"

#include <gtest/gtest.h>

#include "tests/cloud/fake_cloud.h"

namespace {

StackFrame Frame(std::wstring module, std::wstring function) {
    StackFrame frame;
    frame.moduleName = std::move(module);
    frame.function = std::move(function);
    frame.imagePath = L"C:\\Users\\somebody\\secret.dll";
    frame.sourceFile = L"secret.cpp";
    return frame;
}

LastCapture Captured() {
    return {
        {Frame(L"ntdll", L"NtDelayExecution"), Frame(L"", L"Orphan"), Frame(L"slowfilter.cpg", L""),
         Frame(L"\u63d2\u4ef6", L"\u0424\u0438\u043b\u044c\u0442\u0440")},
        FrameCategory::plugin,
        L"25.0.0.230"};
}

constexpr const char* kCapturedBody =
    "{\"cdr_version\":\"25.0.0.230\",\"tool_version\":\"0.1.0\",\"category\":0,\"frames\":["
    "{\"module\":\"ntdll\",\"func\":\"NtDelayExecution\"},"
    "{\"module\":\"slowfilter.cpg\"},"
    "{\"module\":\"\xE6\x8F\x92\xE4\xBB\xB6\",\"func\":"
    "\"\xD0\xA4\xD0\xB8\xD0\xBB\xD1\x8C\xD1\x82\xD1\x80\"}]}";

}  // namespace

TEST(Submission, HoldsNamesAndVersionAndNothingElse) {
    EXPECT_EQ(SubmissionBody(Captured()), kCapturedBody);
    EXPECT_EQ(SubmissionBody({{Frame(L"", L"f")}, FrameCategory::unknown, L""}),
              R"({"cdr_version":"","tool_version":"0.1.0","category":7,"frames":[]})");
}

TEST(Submission, SendsOnlyWithACaptureConsentAndTheNetwork) {
    const struct {
        const char* name;
        LastCapture capture;
        bool consents;
        bool networkEnabled;
        std::string answer;
        std::vector<std::wstring> lines;
        bool asked;
        bool sent;
    } cases[] = {
        {"good",
         Captured(),
         true,
         true,
         "{}",
         {L"[Submit] Anonymously submitted 4 frame signatures, thanks!"},
         true,
         true},
        {"unreachable",
         Captured(),
         true,
         true,
         "",
         {L"[Submit] Submit failed (network unreachable), try again later"},
         true,
         true},
        {"switched off",
         Captured(),
         true,
         false,
         "{}",
         {L"[Submit] Network disabled, cannot submit"},
         true,
         false},
        {"declined", Captured(), false, true, "{}", {}, true, false},
        {"no capture",
         {},
         true,
         true,
         "{}",
         {L"[Submit] No capture data yet. Use 'Capture Now' first; submit when no signature "
          L"matched."},
         false,
         false},
    };
    for (const auto& c : cases) {
        FakeCloud cloud;
        cloud.networkEnabled = c.networkEnabled;
        cloud.answer = c.answer;
        FakeShell report;
        report.consents = c.consents;
        OnSubmit(report.shell(), c.capture, cloud.services());
        EXPECT_EQ(report.lines, c.lines) << c.name;
        EXPECT_EQ(report.questions.size(), c.asked ? 1U : 0U) << c.name;
        const std::vector<std::string> requests = {std::string("POST /api/mirelo/submit.php ") +
                                                   kCapturedBody};
        EXPECT_EQ(cloud.requests, c.sent ? requests : std::vector<std::string>()) << c.name;
    }
}

TEST(Submission, AsksInTheseWords) {
    FakeCloud cloud;
    FakeShell report;
    OnSubmit(report.shell(), Captured(), cloud.services());
    ASSERT_EQ(report.questions.size(), 1U);
    EXPECT_EQ(report.questions[0],
              L"Anonymous Submission|Upload the captured stack features anonymously?\n"
              L"(Module/function names and CDR version only - no file paths, no document "
              L"content.)\n\nContinue?");
}
