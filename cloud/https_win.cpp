// Each request runs on a thread of its own. WinHTTP's time-outs bound a step and not the whole: a
// server that sends one byte a second passes them all, so the caller waits for the thread with a
// time limit and goes on without it when that is over. The thread owns everything it uses and ends
// at its next step.
#include "cloud/https_win.h"

#include <windows.h>

#include <winhttp.h>

#include <chrono>
#include <exception>
#include <future>
#include <thread>
#include <utility>

#include "base/handle_win.h"
#include "build_settings.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kStepTimeoutMs = 5000;
// One second below what callers are promised.
constexpr std::chrono::seconds kWholeTimeout{29};
constexpr std::size_t kLongestAnswer = 0x200000;
constexpr DWORD kToleratedCertificateFaults =
    SECURITY_FLAG_IGNORE_UNKNOWN_CA | SECURITY_FLAG_IGNORE_CERT_WRONG_USAGE |
    SECURITY_FLAG_IGNORE_CERT_CN_INVALID | SECURITY_FLAG_IGNORE_CERT_DATE_INVALID;

struct InternetTraits {
    using Type = HINTERNET;
    static Type invalid() { return nullptr; }
    static void close(Type handle) { WinHttpCloseHandle(handle); }
};
using InternetHandle = UniqueHandle<InternetTraits>;

struct Request {
    HttpsEndpoint endpoint;
    std::wstring method;
    std::wstring path;
    std::string body;
    Clock::time_point deadline;
};

bool Configure(HINTERNET request) {
    DWORD certificateFaults = kToleratedCertificateFaults;
    if (!WinHttpSetOption(request, WINHTTP_OPTION_SECURITY_FLAGS, &certificateFaults,
                          sizeof(certificateFaults))) {
        return false;
    }
    // Only the host that the build names is ever spoken to.
    DWORD disabled = WINHTTP_DISABLE_REDIRECTS;
    return WinHttpSetOption(request, WINHTTP_OPTION_DISABLE_FEATURE, &disabled, sizeof(disabled));
}

bool Send(HINTERNET request, std::string& body) {
    if (body.empty()) {
        return WinHttpSendRequest(request, WINHTTP_NO_ADDITIONAL_HEADERS, 0,
                                  WINHTTP_NO_REQUEST_DATA, 0, 0, 0);
    }
    const auto byteCount = static_cast<DWORD>(body.size());
    return WinHttpSendRequest(request, L"Content-Type: application/json\r\n",
                              static_cast<DWORD>(-1), body.data(), byteCount, byteCount, 0);
}

DWORD Status(HINTERNET request) {
    DWORD status = 0;
    DWORD byteCount = sizeof(status);
    WinHttpQueryHeaders(request, WINHTTP_QUERY_STATUS_CODE | WINHTTP_QUERY_FLAG_NUMBER,
                        WINHTTP_HEADER_NAME_BY_INDEX, &status, &byteCount, WINHTTP_NO_HEADER_INDEX);
    return status;
}

std::string ReadAnswer(HINTERNET request, Clock::time_point deadline) {
    std::string answer;
    while (Clock::now() < deadline) {
        DWORD available = 0;
        if (!WinHttpQueryDataAvailable(request, &available)) return {};
        if (available == 0 || answer.size() + available > kLongestAnswer) return answer;

        const std::size_t before = answer.size();
        answer.resize(before + available);
        DWORD readBytes = 0;
        if (!WinHttpReadData(request, answer.data() + before, available, &readBytes)) return {};
        answer.resize(before + readBytes);
    }
    return {};
}

bool LimitSteps(HINTERNET session) {
    // The wait for the status line has a limit of its own, of a minute and a half. Where it cannot
    // be lowered, the limit of the whole request still holds.
    DWORD timeoutMs = kStepTimeoutMs;
    WinHttpSetOption(session, WINHTTP_OPTION_RECEIVE_RESPONSE_TIMEOUT, &timeoutMs,
                     sizeof(timeoutMs));
    return WinHttpSetTimeouts(session, kStepTimeoutMs, kStepTimeoutMs, kStepTimeoutMs,
                              kStepTimeoutMs);
}

std::string Perform(Request& wanted) {
    const InternetHandle session(WinHttpOpen(L"Mirelo/0.1", WINHTTP_ACCESS_TYPE_DEFAULT_PROXY,
                                             WINHTTP_NO_PROXY_NAME, WINHTTP_NO_PROXY_BYPASS, 0));
    if (!session || !LimitSteps(session.get())) return {};
    const InternetHandle connection(
        WinHttpConnect(session.get(), wanted.endpoint.host.c_str(), wanted.endpoint.port, 0));
    if (!connection) return {};
    const InternetHandle request(
        WinHttpOpenRequest(connection.get(), wanted.method.c_str(), wanted.path.c_str(), nullptr,
                           WINHTTP_NO_REFERER, WINHTTP_DEFAULT_ACCEPT_TYPES, WINHTTP_FLAG_SECURE));
    if (!request || !Configure(request.get())) return {};
    if (!Send(request.get(), wanted.body)) return {};
    if (!WinHttpReceiveResponse(request.get(), nullptr)) return {};
    if (Status(request.get()) != HTTP_STATUS_OK) return {};
    return ReadAnswer(request.get(), wanted.deadline);
}

}  // namespace

std::string HttpsRequest(std::wstring_view method, std::wstring_view path, std::string_view body) {
    return HttpsRequestTo({MIRELO_SIGNATURE_HOST}, method, path, body);
}

std::string HttpsRequestTo(const HttpsEndpoint& endpoint, std::wstring_view method,
                           std::wstring_view path, std::string_view body) {
    try {
        const Clock::time_point deadline = Clock::now() + kWholeTimeout;
        std::packaged_task<std::string()> task(
            [request = Request{endpoint, std::wstring(method), std::wstring(path),
                               std::string(body), deadline}]() mutable {
                return Perform(request);
            });
        std::future<std::string> answer = task.get_future();
        std::thread(std::move(task)).detach();
        if (answer.wait_until(deadline) != std::future_status::ready) return {};
        return answer.get();
    } catch (const std::exception&) {
        return {};
    }
}
