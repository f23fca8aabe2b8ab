// A network that hands out its proxy, disks that fill up, folders that nobody may write into or
// that a dead server holds.
#include <windows.h>
#include <winsock2.h>

#include <gtest/gtest.h>
#include <shlobj.h>
#include <winhttp.h>

#include <memory>
#include <vector>

#include "base/files/tool_folder_win.h"
#include "cloud/cache_file_win.h"
#include "cloud/https_win.h"
#include "tests/base/files/staged_folder_win.h"
#include "tests/hostile/imitation.h"

IMITATE("kernel32.dll", CreateFileW);
IMITATE("kernel32.dll", WriteFile);
IMITATE("shell32.dll", SHGetFolderPathW);
IMITATE("winhttp.dll", WinHttpOpen);

TEST(HostileNetwork, WhereNobodyIsReachedTheNetworksOwnProxyIsAskedFor) {
    std::vector<DWORD> accessTypes;
    const Staged session(WinHttpOpenImitation,
                         [&](LPCWSTR agent, DWORD accessType, auto... arguments) {
                             accessTypes.push_back(accessType);
                             return WinHttpOpenImitation.real(agent, accessType, arguments...);
                         });
    // Nothing listens on the discard port.
    EXPECT_EQ(HttpsRequestTo({L"127.0.0.1", 9}, L"GET", L"/", {}), "");
    EXPECT_EQ(accessTypes, (std::vector<DWORD>{WINHTTP_ACCESS_TYPE_DEFAULT_PROXY,
                                               WINHTTP_ACCESS_TYPE_AUTOMATIC_PROXY}));
    // A Windows that does not know the second way.
    const Staged refusal(WinHttpOpenImitation, [](auto...) { return HINTERNET{}; });
    EXPECT_EQ(HttpsRequestTo({L"127.0.0.1", 9}, L"GET", L"/", {}), "");
}

TEST(HostileCacheFile, GivesBackWhatFitsAndNoFailureCostsWhatIsThere) {
    constexpr std::size_t kSizeLimit = 0x200000;
    // A profile as before the first download: the tool's folder is not there.
    const StagedFolder profile;
    const Staged fresh(SHGetFolderPathWImitation, [&](HWND, int, HANDLE, DWORD, LPWSTR path) {
        wcscpy(path, profile.path().c_str());
        return S_OK;
    });
    for (const std::size_t size : {kSizeLimit, kSizeLimit - 1, std::size_t{0}}) {
        ASSERT_TRUE(WriteCacheFile(std::string(size, 'x')));
        EXPECT_EQ(ReadCacheFile().size(), size % kSizeLimit);
    }
    const std::string good("\0\r\n\xFF", 4);
    ASSERT_TRUE(WriteCacheFile(good));
    {
        const Staged full(WriteFileImitation, [](auto...) {
            SetLastError(ERROR_DISK_FULL);
            return FALSE;
        });
        EXPECT_FALSE(WriteCacheFile("a full disk"));
    }
    {
        const Staged readOnly(CreateFileWImitation, [](auto...) {
            SetLastError(ERROR_ACCESS_DENIED);
            return INVALID_HANDLE_VALUE;
        });
        EXPECT_FALSE(WriteCacheFile("a folder that may only be read"));
    }
    WriteStaged(CacheFilePath() + L".new", "left behind");
    {
        const FileHandle other(CreateFileW((CacheFilePath() + L".new").c_str(), GENERIC_WRITE, 0,
                                           nullptr, OPEN_EXISTING, 0, nullptr));
        EXPECT_FALSE(WriteCacheFile("another Mirelo is at it"));
    }
    EXPECT_EQ(ReadCacheFile(), good);
    EXPECT_TRUE(WriteCacheFile("x"));
    EXPECT_FALSE(IsThere(CacheFilePath() + L".new"));
}

TEST(HostileFolders, AProfileOnADeadServerHasNone) {
    const auto released =
        std::make_shared<KernelHandle>(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    const Staged dead(SHGetFolderPathWImitation, [released](auto...) {
        WaitForSingleObject(std::shared_ptr(released)->get(), 60000);
        return E_FAIL;
    });
    EXPECT_EQ(toolFolder(), L"");
    SetEvent(released->get());
    EXPECT_EQ(CacheFilePath(), L"\\signatures.cache.json");
}
