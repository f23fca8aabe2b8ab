// Networks that hand out their proxy, and servers that never come to the point.
#include <windows.h>

#include <gtest/gtest.h>
#include <winhttp.h>

#include <vector>

#include "cloud/https_win.h"
#include "tests/hostile/imitation.h"

IMITATE("winhttp.dll", WinHttpCloseHandle);
IMITATE("winhttp.dll", WinHttpConnect);
IMITATE("winhttp.dll", WinHttpOpen);
IMITATE("winhttp.dll", WinHttpOpenRequest);
IMITATE("winhttp.dll", WinHttpReceiveResponse);
IMITATE("winhttp.dll", WinHttpSendRequest);
IMITATE("winhttp.dll", WinHttpSetOption);
IMITATE("winhttp.dll", WinHttpSetStatusCallback);
IMITATE("winhttp.dll", WinHttpSetTimeouts);

TEST(HostileNetwork, WhereNobodyIsReachedTheNetworksOwnProxyIsAskedFor) {
    std::vector<DWORD> accessTypes;
    const Staged session(WinHttpOpenImitation, [&](auto agent, DWORD accessType, auto... more) {
        accessTypes.push_back(accessType);
        return WinHttpOpenImitation.real(agent, accessType, more...);
    });
    // Nothing listens on the discard port.
    EXPECT_EQ(HttpsRequestTo({L"127.0.0.1", 9}, L"GET", L"/", {}), "");
    EXPECT_EQ(accessTypes, (std::vector<DWORD>{WINHTTP_ACCESS_TYPE_DEFAULT_PROXY,
                                               WINHTTP_ACCESS_TYPE_AUTOMATIC_PROXY}));
}

// As Windows tells of headers that do not end; what does not notify is not imitated by Wine.
TEST(HostileNetwork, HeadersWithoutEndAreCutOffLongBeforeTheTimeIsOver) {
    const HINTERNET handle = reinterpret_cast<HINTERNET>(1);
    WINHTTP_STATUS_CALLBACK notify = nullptr;
    DWORD_PTR context = 0;
    bool isCancelled = false;
    const auto opens = [&](auto...) { return handle; };
    const auto agrees = [](auto...) { return TRUE; };
    const Staged open(WinHttpOpenImitation, opens);
    const Staged connect(WinHttpConnectImitation, opens);
    const Staged request(WinHttpOpenRequestImitation, opens);
    const Staged timeouts(WinHttpSetTimeoutsImitation, agrees);
    const Staged callback(WinHttpSetStatusCallbackImitation, [&](auto, auto function, auto...) {
        notify = function;
        return WINHTTP_STATUS_CALLBACK{};
    });
    const Staged options(WinHttpSetOptionImitation, [&](auto, DWORD option, void* value, DWORD) {
        if (option == WINHTTP_OPTION_CONTEXT_VALUE) context = *static_cast<DWORD_PTR*>(value);
        return TRUE;
    });
    const auto tell = [&](DWORD status, DWORD number) {
        notify(handle, context, status, &number, sizeof number);
    };
    const Staged send(WinHttpSendRequestImitation, [&](auto...) {
        tell(WINHTTP_CALLBACK_STATUS_CONNECTED_TO_SERVER, 0);
        tell(WINHTTP_CALLBACK_STATUS_SENDREQUEST_COMPLETE, 0);
        return TRUE;
    });
    const Staged receive(WinHttpReceiveResponseImitation, [&](auto...) {
        for (int mebibyte = 0; mebibyte < 9; ++mebibyte)
            tell(WINHTTP_CALLBACK_STATUS_RESPONSE_RECEIVED, 1 << 20);
        return TRUE;
    });
    const Staged close(WinHttpCloseHandleImitation, [&](auto) {
        if (context == 0) return TRUE;
        isCancelled = true;
        tell(WINHTTP_CALLBACK_STATUS_HANDLE_CLOSING, 0);
        context = 0;
        return TRUE;
    });
    const ULONGLONG start = GetTickCount64();
    EXPECT_EQ(HttpsRequestTo({L"127.0.0.1"}, L"GET", L"/", {}), "");
    EXPECT_TRUE(isCancelled);
    EXPECT_LT(GetTickCount64() - start, 5000U);
}
