#include "cloud/submission.h"

#include "base/text.h"

namespace {

std::string FrameBody(const StackFrame& frame) {
    std::string body = R"({"module":")" + utf8FromWide(frame.moduleName) + R"(")";
    if (!frame.function.empty()) body += R"(,"func":")" + utf8FromWide(frame.function) + R"(")";
    return body + "}";
}

}  // namespace

std::string SubmissionBody(const LastCapture& capture) {
    std::string frames;
    for (const StackFrame& frame : capture.frames) {
        if (frame.moduleName.empty()) continue;
        if (!frames.empty()) frames += ",";
        frames += FrameBody(frame);
    }
    return R"({"cdr_version":")" + utf8FromWide(capture.version) +
           R"(","tool_version":"0.1.0","category":)" +
           std::to_string(static_cast<int>(capture.category)) + R"(,"frames":[)" + frames + "]}";
}

std::wstring SubmitLastCapture(const LastCapture& capture, const CloudServices& services) {
    if (!services.isNetworkEnabled()) return L"Network disabled, cannot submit";
    if (services.request(L"POST", kSubmitPath, SubmissionBody(capture)).empty())
        return L"Submit failed (network unreachable), try again later";
    return L"Anonymously submitted " + decimalUnsigned(capture.frames.size()) +
           L" frame signatures, thanks!";
}

void OnSubmit(const ActionHost& host, const LastCapture& capture, const CloudServices& services) {
    if (capture.frames.empty()) {
        host.appendLog(
            L"[Submit] No capture data yet. Use 'Capture Now' first; submit when no signature "
            L"matched.");
        return;
    }
    const bool consents = host.confirm(
        L"Upload the captured stack features anonymously?\n"
        L"(Module/function names and CDR version only - no file paths, no document content.)\n\n"
        L"Continue?",
        L"Anonymous Submission", ConfirmStyle::question);
    if (!consents) return;
    host.appendLog(L"[Submit] " + SubmitLastCapture(capture, services));
}
