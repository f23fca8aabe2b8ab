// A network that hands out its proxy.
#include <windows.h>
#include <winsock2.h>

#include <gtest/gtest.h>
#include <winhttp.h>

#include <vector>

#include "cloud/https_win.h"
#include "tests/hostile/imitation.h"

IMITATE("winhttp.dll", WinHttpOpen);

TEST(HostileNetwork, WhereNobodyIsReachedTheNetworksOwnProxyIsAskedFor) {
    std::vector<DWORD> accessTypes;
    const Staged session(WinHttpOpenImitation, [&](LPCWSTR agent, DWORD type, auto... others) {
        accessTypes.push_back(type);
        return WinHttpOpenImitation.real(agent, type, others...);
    });
    // Nothing listens on the discard port.
    EXPECT_EQ(HttpsRequestTo({L"127.0.0.1", 9}, L"GET", L"/", {}), "");
    EXPECT_EQ(accessTypes, (std::vector<DWORD>{WINHTTP_ACCESS_TYPE_DEFAULT_PROXY,
                                               WINHTTP_ACCESS_TYPE_AUTOMATIC_PROXY}));
}
