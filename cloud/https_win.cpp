// WinHTTP's time-outs bound a step and not the whole: a server that sends one byte a second passes
// them all. So each step is started asynchronously, the caller waits for it until the whole time is
// over, and closing the request is what cancels it. What WinHTTP's threads still touch then belongs
// to them, too, and goes with the request's last notification.
#include "cloud/https_win.h"

#include <windows.h>

#include <winhttp.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <exception>
#include <memory>

#include "base/handle_win.h"
#include "build_settings.h"

namespace {

constexpr int kStepTimeoutMs = 5000;
// One second below what callers are promised.
constexpr ULONGLONG kWholeTimeoutMs = 29000;
constexpr std::size_t kLongestAnswer = 0x200000;
// All that a server may send for one answer: the longest one, the framing of small chunks, headers.
constexpr std::uint64_t kMostReceived = 4 * kLongestAnswer;
constexpr DWORD kToleratedCertificateFaults =
    SECURITY_FLAG_IGNORE_UNKNOWN_CA | SECURITY_FLAG_IGNORE_CERT_WRONG_USAGE |
    SECURITY_FLAG_IGNORE_CERT_CN_INVALID | SECURITY_FLAG_IGNORE_CERT_DATE_INVALID;

struct InternetTraits {
    using Type = HINTERNET;
    static Type invalid() { return nullptr; }
    static void close(Type handle) { WinHttpCloseHandle(handle); }
};
using InternetHandle = UniqueHandle<InternetTraits>;

// What the caller and WinHTTP's threads share.
struct Transfer {
    KernelHandle stepped{CreateEventW(nullptr, FALSE, FALSE, nullptr)};
    // The notification that ended the last step, and the number that came with it.
    std::atomic<DWORD> step{0};
    std::atomic<DWORD> number{0};
    std::atomic<bool> isConnected{false};
    std::atomic<bool> isCancelled{false};
    std::atomic<std::uint64_t> received{0};
    std::string sent;
    std::string answer;

    void end(DWORD notification, DWORD withNumber) {
        number = withNumber;
        step = notification;
        SetEvent(stepped.get());
    }

    void count(DWORD byteCount) {
        if (received.fetch_add(byteCount) + byteCount > kMostReceived)
            end(WINHTTP_CALLBACK_STATUS_REQUEST_ERROR, ERROR_WINHTTP_INVALID_SERVER_RESPONSE);
        // Closing a request ends it, on Windows. A library that reads on all the same does it here
        // at a walking pace.
        if (isCancelled) Sleep(1000);
    }
};
using SharedTransfer = std::shared_ptr<Transfer>;

void CALLBACK OnNotification(HINTERNET, DWORD_PTR context, DWORD notification, void* information,
                             DWORD length) {
    // The session and the connection have no transfer.
    auto* const owner = reinterpret_cast<SharedTransfer*>(context);
    if (owner == nullptr) return;
    if (notification == WINHTTP_CALLBACK_STATUS_HANDLE_CLOSING) {
        const std::unique_ptr<SharedTransfer> last(owner);
        return;
    }
    Transfer& transfer = **owner;
    switch (notification) {
        case WINHTTP_CALLBACK_STATUS_CONNECTED_TO_SERVER:
            transfer.isConnected = true;
            break;
        case WINHTTP_CALLBACK_STATUS_RESPONSE_RECEIVED:
            transfer.count(*static_cast<const DWORD*>(information));
            break;
        case WINHTTP_CALLBACK_STATUS_DATA_AVAILABLE:
            transfer.end(notification, *static_cast<const DWORD*>(information));
            break;
        case WINHTTP_CALLBACK_STATUS_SENDREQUEST_COMPLETE:
        case WINHTTP_CALLBACK_STATUS_HEADERS_AVAILABLE:
        case WINHTTP_CALLBACK_STATUS_READ_COMPLETE:
        case WINHTTP_CALLBACK_STATUS_REQUEST_ERROR:
            transfer.end(notification, length);
            break;
        default:
            break;
    }
}

// A request and its transfer; ended means cancelled when it has not come to its own end.
class Request {
  public:
    Request(HINTERNET connection, const std::wstring& method, const std::wstring& path,
            SharedTransfer transfer, ULONGLONG deadline)
        : transfer_(std::move(transfer)),
          deadline_(deadline),
          handle_(WinHttpOpenRequest(connection, method.c_str(), path.c_str(), nullptr,
                                     WINHTTP_NO_REFERER, WINHTTP_DEFAULT_ACCEPT_TYPES,
                                     WINHTTP_FLAG_SECURE)) {}
    Request(const Request&) = delete;
    Request& operator=(const Request&) = delete;
    ~Request() {
        transfer_->isCancelled = true;
        if (handle_) WinHttpSetTimeouts(handle_.get(), 1, 1, 1, 1);
    }

    // The body of an answer with status 200; of one that is too long, what came before the limit.
    std::string ask() { return configure() && send() && receive() ? readAnswer() : std::string(); }

  private:
    bool set(DWORD option, DWORD value) {
        return WinHttpSetOption(handle_.get(), option, &value, sizeof(value));
    }

    bool configure() {
        if (!handle_ || !transfer_->stepped) return false;
        auto owner = std::make_unique<SharedTransfer>(transfer_);
        context_ = reinterpret_cast<DWORD_PTR>(owner.get());
        if (!WinHttpSetOption(handle_.get(), WINHTTP_OPTION_CONTEXT_VALUE, &context_,
                              sizeof(context_))) {
            return false;
        }
        static_cast<void>(owner.release());  // now the request's
        // Only the host that the build names is ever spoken to.
        return set(WINHTTP_OPTION_SECURITY_FLAGS, kToleratedCertificateFaults) &&
               set(WINHTTP_OPTION_DISABLE_FEATURE, WINHTTP_DISABLE_REDIRECTS);
    }

    bool send() {
        std::string& body = transfer_->sent;
        const auto byteCount = static_cast<DWORD>(body.size());
        const wchar_t* const headers =
            body.empty() ? WINHTTP_NO_ADDITIONAL_HEADERS : L"Content-Type: application/json\r\n";
        return WinHttpSendRequest(handle_.get(), headers, body.empty() ? 0 : static_cast<DWORD>(-1),
                                  body.empty() ? WINHTTP_NO_REQUEST_DATA : body.data(), byteCount,
                                  byteCount, context_) &&
               ends(WINHTTP_CALLBACK_STATUS_SENDREQUEST_COMPLETE);
    }

    bool receive() {
        if (!WinHttpReceiveResponse(handle_.get(), nullptr) ||
            !ends(WINHTTP_CALLBACK_STATUS_HEADERS_AVAILABLE)) {
            return false;
        }
        DWORD status = 0;
        DWORD byteCount = sizeof(status);
        return WinHttpQueryHeaders(
                   handle_.get(), WINHTTP_QUERY_STATUS_CODE | WINHTTP_QUERY_FLAG_NUMBER,
                   WINHTTP_HEADER_NAME_BY_INDEX, &status, &byteCount, WINHTTP_NO_HEADER_INDEX) &&
               status == HTTP_STATUS_OK;
    }

    std::string readAnswer() {
        std::string& answer = transfer_->answer;
        for (;;) {
            if (!WinHttpQueryDataAvailable(handle_.get(), nullptr) ||
                !ends(WINHTTP_CALLBACK_STATUS_DATA_AVAILABLE)) {
                return {};
            }
            const DWORD available = transfer_->number;
            if (available == 0 || answer.size() + available > kLongestAnswer)
                return std::move(answer);

            const std::size_t before = answer.size();
            answer.resize(before + available);
            if (!WinHttpReadData(handle_.get(), answer.data() + before, available, nullptr) ||
                !ends(WINHTTP_CALLBACK_STATUS_READ_COMPLETE)) {
                return {};
            }
            answer.resize(before + std::min<DWORD>(transfer_->number, available));
        }
    }

    // Waits for the end of the step that was started; true when it is the one wanted.
    bool ends(DWORD wanted) {
        const ULONGLONG now = GetTickCount64();
        if (now >= deadline_) return false;
        return WaitForSingleObject(transfer_->stepped.get(), static_cast<DWORD>(deadline_ - now)) ==
                   WAIT_OBJECT_0 &&
               transfer_->step == wanted;
    }

    SharedTransfer transfer_;
    ULONGLONG deadline_;
    DWORD_PTR context_ = 0;
    InternetHandle handle_;
};

InternetHandle OpenSession(DWORD accessType) {
    InternetHandle session(WinHttpOpen(L"Mirelo/0.1", accessType, WINHTTP_NO_PROXY_NAME,
                                       WINHTTP_NO_PROXY_BYPASS, WINHTTP_FLAG_ASYNC));
    if (!session) return {};
    // The wait for the status line has a limit of its own, of a minute and a half. Where it cannot
    // be lowered, the limit of the whole request still holds.
    DWORD timeoutMs = kStepTimeoutMs;
    WinHttpSetOption(session.get(), WINHTTP_OPTION_RECEIVE_RESPONSE_TIMEOUT, &timeoutMs,
                     sizeof(timeoutMs));
    const bool isReady = WinHttpSetTimeouts(session.get(), kStepTimeoutMs, kStepTimeoutMs,
                                            kStepTimeoutMs, kStepTimeoutMs) &&
                         WinHttpSetStatusCallback(session.get(), OnNotification,
                                                  WINHTTP_CALLBACK_FLAG_ALL_NOTIFICATIONS,
                                                  0) != WINHTTP_INVALID_STATUS_CALLBACK;
    return isReady ? std::move(session) : InternetHandle();
}

struct Outcome {
    std::string answer;
    // Somebody was there, whatever came of it.
    bool isConnected = false;
};

Outcome AskThrough(DWORD accessType, const HttpsEndpoint& endpoint, const std::wstring& method,
                   const std::wstring& path, const SharedTransfer& transfer, ULONGLONG deadline) {
    const InternetHandle session = OpenSession(accessType);
    if (!session) return {};
    const InternetHandle connection(
        WinHttpConnect(session.get(), endpoint.host.c_str(), endpoint.port, 0));
    if (!connection) return {};
    std::string answer = Request(connection.get(), method, path, transfer, deadline).ask();
    return {std::move(answer), transfer->isConnected};
}

}  // namespace

std::string HttpsRequest(std::wstring_view method, std::wstring_view path, std::string_view body) {
    return HttpsRequestTo({MIRELO_SIGNATURE_HOST}, method, path, body);
}

std::string HttpsRequestTo(const HttpsEndpoint& endpoint, std::wstring_view method,
                           std::wstring_view path, std::string_view body) {
    try {
        const ULONGLONG deadline = GetTickCount64() + kWholeTimeoutMs;
        // The system's proxy settings first. Where nobody can be reached that way, those that the
        // user's network hands out; finding them takes seconds.
        for (const DWORD accessType : {DWORD{WINHTTP_ACCESS_TYPE_DEFAULT_PROXY},
                                       DWORD{WINHTTP_ACCESS_TYPE_AUTOMATIC_PROXY}}) {
            const auto transfer = std::make_shared<Transfer>();
            transfer->sent = body;
            Outcome outcome = AskThrough(accessType, endpoint, std::wstring(method),
                                         std::wstring(path), transfer, deadline);
            if (outcome.isConnected) return std::move(outcome.answer);
        }
        return {};
    } catch (const std::exception&) {
        return {};
    }
}
