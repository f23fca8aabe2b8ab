#include "cloud/settings_win.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <string>

#include "base/handle_win.h"

namespace {

// Stands in for HKEY_CURRENT_USER as long as it lives, so that no real setting is touched.
class EmptyUserHive {
  public:
    EmptyUserHive() {
        RegDeleteTreeW(HKEY_CURRENT_USER, kPath);
        RegCreateKeyW(HKEY_CURRENT_USER, kPath, hive_.receive());
        RegOverridePredefKey(HKEY_CURRENT_USER, hive_.get());
    }
    EmptyUserHive(const EmptyUserHive&) = delete;
    EmptyUserHive& operator=(const EmptyUserHive&) = delete;
    ~EmptyUserHive() {
        RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
        hive_.reset();
        RegDeleteTreeW(HKEY_CURRENT_USER, kPath);
    }

  private:
    static constexpr wchar_t kPath[] = L"Software\\MireloTests";
    RegistryKey hive_;
};

void Store(DWORD type, const std::wstring& text, std::size_t length) {
    RegistryKey key;
    ASSERT_EQ(
        RegOpenKeyExW(HKEY_CURRENT_USER, L"Software\\Mirelo", 0, KEY_SET_VALUE, key.receive()),
        ERROR_SUCCESS);
    RegSetValueExW(key.get(), L"NetworkEnabled", 0, type,
                   reinterpret_cast<const BYTE*>(text.c_str()),
                   static_cast<DWORD>(length * sizeof(wchar_t)));
}

}  // namespace

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

    for (const std::wstring& text : {std::wstring(L"1"), std::wstring(), std::wstring(L"00"),
                                     std::wstring(L"false"), std::wstring(200, L'0')}) {
        Store(REG_SZ, text, text.size() + 1);
        EXPECT_TRUE(IsNetworkEnabled()) << text.size();
    }
    Store(REG_SZ, L"0", 1);
    EXPECT_FALSE(IsNetworkEnabled()) << "without its terminating zero";
    Store(REG_EXPAND_SZ, L"0", 2);
    EXPECT_TRUE(IsNetworkEnabled()) << "another type";
}
