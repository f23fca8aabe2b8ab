#include "fixes/environment_scan_win.h"

#include <windows.h>

#include <gtest/gtest.h>

#include "tests/fixes/environment_registry_win.h"

namespace {

constexpr const wchar_t* kFontsPath = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Fonts";
constexpr const wchar_t* kWindowsPath = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Windows";
constexpr const wchar_t* kQuota = L"GDIProcessHandleQuota";

}  // namespace

TEST(EnvironmentScan, CountsTheFontList) {
    const EmptyMachine machine;
    EXPECT_EQ(GatherEnvironmentFacts().fontCount, 0);

    const RegistryKey fonts = madeKey(HKEY_LOCAL_MACHINE, kFontsPath);
    EXPECT_EQ(GatherEnvironmentFacts().fontCount, 0);
    for (int i = 0; i < 1501; ++i)
        setText(fonts, L"Font " + std::to_wstring(i), L"font.ttf");
    madeKey(fonts.get(), L"a key is no font");
    EXPECT_EQ(GatherEnvironmentFacts().fontCount, 1501);
}

TEST(EnvironmentScan, TakesTheQuotaOnlyFromANumber) {
    const EmptyMachine machine;
    EXPECT_EQ(GatherEnvironmentFacts().gdiQuota, 10000U);
    const RegistryKey windows = madeKey(HKEY_LOCAL_MACHINE, kWindowsPath);
    EXPECT_EQ(GatherEnvironmentFacts().gdiQuota, 10000U);

    setNumber(windows, kQuota, 20000);
    EXPECT_EQ(GatherEnvironmentFacts().gdiQuota, 20000U);

    setText(windows, kQuota, L"20000");
    EXPECT_EQ(GatherEnvironmentFacts().gdiQuota, 10000U);
    const BYTE bytes[] = {0x20, 0x4E, 0, 0, 0, 0, 0, 0};
    for (const int type : {REG_BINARY, REG_SZ, REG_DWORD_BIG_ENDIAN}) {
        RegSetValueExW(windows.get(), kQuota, 0, static_cast<DWORD>(type), bytes, 4);
        EXPECT_EQ(GatherEnvironmentFacts().gdiQuota, 10000U) << type;
    }
    RegSetValueExW(windows.get(), kQuota, 0, REG_DWORD, bytes, 8);
    EXPECT_EQ(GatherEnvironmentFacts().gdiQuota, 10000U);
}

TEST(EnvironmentScan, MeasuresThisMachine) {
    MEMORYSTATUSEX memory{};
    memory.dwLength = sizeof memory;
    ASSERT_TRUE(GlobalMemoryStatusEx(&memory));
    EXPECT_EQ(RunEnvironmentCheck().items.back().value,
              std::to_wstring(memory.ullTotalPhys >> 20) + L" MB");
}
