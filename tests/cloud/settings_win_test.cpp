#include "cloud/settings_win.h"

#include <windows.h>

#include <gtest/gtest.h>

#include "base/handle_win.h"

namespace {

constexpr wchar_t kHivePath[] = L"Software\\MireloTests";

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

TEST(Settings, TheNetworkIsAllowedUnlessTheTextIsZero) {
    const EmptyUserHive hive;
    EXPECT_TRUE(IsNetworkEnabled()) << "no key";
    SetNetworkEnabled(true);
    EXPECT_TRUE(IsNetworkEnabled());
    SetNetworkEnabled(false);
    EXPECT_FALSE(IsNetworkEnabled());
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
