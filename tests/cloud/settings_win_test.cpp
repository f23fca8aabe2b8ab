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

void Store(DWORD type, const void* bytes, std::size_t byteCount) {
    RegistryKey key;
    ASSERT_EQ(RegCreateKeyW(HKEY_CURRENT_USER, L"Software\\Mirelo", key.receive()), ERROR_SUCCESS);
    RegSetValueExW(key.get(), L"NetworkEnabled", 0, type, static_cast<const BYTE*>(bytes),
                   static_cast<DWORD>(byteCount));
}

}  // namespace

TEST(Settings, TheNetworkIsAllowedUnlessTheTextIsZero) {
    const EmptyUserHive hive;
    EXPECT_TRUE(IsNetworkEnabled()) << "no key";
    SetNetworkEnabled(false);
    EXPECT_FALSE(IsNetworkEnabled());
    SetNetworkEnabled(true);
    EXPECT_TRUE(IsNetworkEnabled());

    const struct {
        std::wstring text;
        bool enabled;
    } cases[] = {
        {L"0", false},
        {L"1", true},
        {L"", true},
        {L"00", true},
        {L"0 ", true},
        {L"false", true},
        {std::wstring(63, L'0'), true},
        {std::wstring(200, L'0'), true},
    };
    for (const auto& c : cases) {
        Store(REG_SZ, c.text.c_str(), (c.text.size() + 1) * sizeof(wchar_t));
        EXPECT_EQ(IsNetworkEnabled(), c.enabled) << c.text.size();
    }
    Store(REG_SZ, L"0", sizeof(wchar_t));
    EXPECT_FALSE(IsNetworkEnabled()) << "stored without its terminating zero";
    Store(REG_EXPAND_SZ, L"0", 2 * sizeof(wchar_t));
    EXPECT_TRUE(IsNetworkEnabled()) << "another type";
    const DWORD zero = 0;
    Store(REG_DWORD, &zero, sizeof(zero));
    EXPECT_TRUE(IsNetworkEnabled()) << "a number";
}

TEST(Settings, TheSwitchIsStoredAsText) {
    const EmptyUserHive hive;
    SetNetworkEnabled(false);
    wchar_t text[8] = {};
    DWORD byteCount = sizeof(text);
    ASSERT_EQ(RegGetValueW(HKEY_CURRENT_USER, L"Software\\Mirelo", L"NetworkEnabled", RRF_RT_REG_SZ,
                           nullptr, text, &byteCount),
              ERROR_SUCCESS);
    EXPECT_EQ(std::wstring(text), L"0");
    EXPECT_EQ(byteCount, 2 * sizeof(wchar_t));
}
