// What the tool keeps of the network: the switch in the registry, and the rule cache.
#include <windows.h>

#include <gtest/gtest.h>

#include "base/files/tool_folder_win.h"
#include "base/handle_win.h"
#include "cloud/cache_file_win.h"
#include "cloud/settings_win.h"

namespace {

constexpr std::size_t kSizeLimit = 0x200000;
constexpr wchar_t kHivePath[] = L"Software\\MireloTests";

// Puts back what the cache file held before the test, for whoever runs this on a machine in use.
class KeptCacheFile {
  public:
    KeptCacheFile() : before_(ReadCacheFile()) { DeleteFileW(CacheFilePath().c_str()); }
    KeptCacheFile(const KeptCacheFile&) = delete;
    KeptCacheFile& operator=(const KeptCacheFile&) = delete;
    ~KeptCacheFile() {
        DeleteFileW(CacheFilePath().c_str());
        if (!before_.empty()) WriteCacheFile(before_);
    }

  private:
    std::string before_;
};

// Stands in for HKEY_CURRENT_USER as long as it lives, so that no real setting is touched.
class EmptyUserHive {
  public:
    EmptyUserHive() {
        RegDeleteTreeW(HKEY_CURRENT_USER, kHivePath);
        RegCreateKeyW(HKEY_CURRENT_USER, kHivePath, hive_.receive());
        RegOverridePredefKey(HKEY_CURRENT_USER, hive_.get());
    }
    EmptyUserHive(const EmptyUserHive&) = delete;
    EmptyUserHive& operator=(const EmptyUserHive&) = delete;
    ~EmptyUserHive() {
        RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
        hive_.reset();
        RegDeleteTreeW(HKEY_CURRENT_USER, kHivePath);
    }

  private:
    RegistryKey hive_;
};

void Store(DWORD type, const std::wstring& text, std::size_t length) {
    RegSetKeyValueW(HKEY_CURRENT_USER, L"Software\\Mirelo", L"NetworkEnabled", type, text.c_str(),
                    static_cast<DWORD>(length * sizeof(wchar_t)));
}

}  // namespace

TEST(CacheFile, GivesBackTheBytesBelowTheLimit) {
    const KeptCacheFile kept;
    // As before the first download; what else lies there stays.
    RemoveDirectoryW(toolFolder().c_str());
    for (const std::string& body :
         {std::string(kSizeLimit - 1, 'x'), std::string("\0\r\n\xFF", 4)}) {
        ASSERT_TRUE(WriteCacheFile(body));
        EXPECT_TRUE(ReadCacheFile() == body) << body.size();
    }
    for (const std::size_t size : {std::size_t{0}, kSizeLimit}) {
        ASSERT_TRUE(WriteCacheFile(std::string(size, 'x')));
        EXPECT_EQ(ReadCacheFile(), "") << size;
    }
    DeleteFileW(CacheFilePath().c_str());
    EXPECT_EQ(ReadCacheFile(), "");
}

TEST(Settings, TheNetworkIsAllowedUnlessTheTextIsZero) {
    const EmptyUserHive hive;
    EXPECT_TRUE(IsNetworkEnabled()) << "no key";
    SetNetworkEnabled(true);
    EXPECT_TRUE(IsNetworkEnabled());
    SetNetworkEnabled(false);
    EXPECT_FALSE(IsNetworkEnabled());
    wchar_t stored[8] = {};
    DWORD byteCount = sizeof(stored);
    EXPECT_EQ(RegGetValueW(HKEY_CURRENT_USER, L"Software\\Mirelo", L"NetworkEnabled", RRF_RT_REG_SZ,
                           nullptr, stored, &byteCount),
              ERROR_SUCCESS);
    EXPECT_EQ(std::wstring(stored), L"0");
    EXPECT_EQ(byteCount, 2 * sizeof(wchar_t));

    for (const std::wstring& text :
         {std::wstring(), std::wstring(L"00"), std::wstring(200, L'0')}) {
        Store(REG_SZ, text, text.size() + 1);
        EXPECT_TRUE(IsNetworkEnabled()) << text.size();
    }
    Store(REG_SZ, L"0", 1);
    EXPECT_FALSE(IsNetworkEnabled()) << "without its terminating zero";
    Store(REG_EXPAND_SZ, L"0", 2);
    EXPECT_TRUE(IsNetworkEnabled()) << "another type";
}
