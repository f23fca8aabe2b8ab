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
    constexpr const wchar_t* kNoCapture =
        L"No capture data yet. Use 'Capture Now' first; submit when no signature matched.";
    const struct {
        bool captured, consents, networkEnabled;
        std::string answer;
        std::size_t questions, requests;
        std::wstring line;  // empty: none
    } cases[] = {
        {true, true, true, "{}", 1, 1, L"Anonymously submitted 4 frame signatures, thanks!"},
        {true, true, true, "", 1, 1, L"Submit failed (network unreachable), try again later"},
        {true, true, false, "{}", 1, 0, L"Network disabled, cannot submit"},
        {true, false, true, "{}", 1, 0, L""},
        {false, true, true, "{}", 0, 0, kNoCapture},
    };
    for (const auto& c : cases) {
        FakeCloud cloud{c.networkEnabled, "", true, c.answer, {}};
        FakeHost report;
        report.consents = c.consents;
        OnSubmit(report.host(), c.captured ? Captured() : LastCapture(), cloud.services());
        EXPECT_EQ(report.lines,
                  std::vector<std::wstring>(c.line.empty() ? 0 : 1, L"[Submit] " + c.line));
        EXPECT_EQ(report.questions,
                  std::vector<std::wstring>(
                      c.questions,
                      L"Anonymous Submission|Upload the captured stack features "
                      L"anonymously?\n(Module/function names and CDR version only - no file paths, "
                      L"no document content.)\n\nContinue?"));
        EXPECT_EQ(cloud.requests,
                  std::vector<std::string>(
                      c.requests, std::string("POST /api/mirelo/submit.php ") + kCapturedBody));
    }
}
