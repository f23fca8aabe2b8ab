// The fixes on the real registry, against the system's own import, and beside another Mirelo.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <numeric>
#include <thread>

#include "fixes/cleanup/cleanup_win.h"
#include "fixes/settings/registry_export.h"
#include "fixes/settings/registry_win.h"
#include "fixes/settings/settings_win.h"
#include "tests/base/files/staged_folder_win.h"
#include "tests/fake_host.h"

TEST(SettingsOnWindows, ImportGivesBackExactlyWhatWasExported) {
    const std::wstring key = L"Software\\MireloTest-" + decimalUnsigned(GetCurrentProcessId());
    std::vector<std::uint8_t> everyByte(256);
    std::iota(everyByte.begin(), everyByte.end(), std::uint8_t{0});
    // Names and data that are hard to write down, and types that are. Left out is a text that ends
    // in half a character: Wine's import completes it, which Windows' own leaves alone.
    const std::vector<RegistryKeyRecord> exported = {
        {key,
         {{L"", kRegistryText, DataOfText(L"the default value")},
          {L"expand", kRegistryExpandableText, DataOfText(L"%TEMP%\\x")},
          {L"line\r\nbreak", kRegistryText, DataOfText(L"first\r\nsecond\ttab")},
          {std::wstring(300, L'n'), kRegistryBinary, everyByte},
          {L"nothing", kRegistryText, {}},
          {L"number", kRegistryNumber, DataOfNumber(0x89ABCDEF)},
          {L"quotes \" and \\ backslashes\\", kRegistryText, DataOfText(LR"(C:\a "b"\)")},
          {L"short number", kRegistryNumber, {1, 2, 3}},
          {L"unknown type", 0x12345, {1, 2}},
          {L"\u0429\u4E2D=;[]", kRegistryText, DataOfText(L"\U0001F600=;[]")}}},
        {key + L"\\[sub] key=\u4E2D;\"x\"", {{L"v", kRegistryNumber, DataOfNumber(7)}}}};
    const StagedFolder folder;
    const std::wstring file = folder.path() + L"\\settings.reg";
    WriteStaged(file, WriteRegistryExport(exported).value_or(""));
    ASSERT_EQ(_wsystem((L"reg import \"" + file + L"\"").c_str()), 0);
    WindowsRegistry registry;
    auto imported = ReadTree(registry, key);
    std::ranges::sort(imported->at(0).values, {}, &RegistryValue::name);
    EXPECT_TRUE(*imported == exported);
    RegDeleteTreeW(HKEY_CURRENT_USER, key.c_str());
}

TEST(FixActions, WaitForNoOtherProgram) {
    // A mutex belongs to a thread, so another thread can stand for another program.
    const KernelHandle mutex(CreateMutexW(nullptr, TRUE, BackupsLock::name().c_str()));
    FakeHost fake;
    std::thread([&] {
        OnCleanup(fake.host());
        OnRestore(fake.host());
        OnOptimizeSettings(fake.host());
    }).join();
    ReleaseMutex(mutex.get());
    ASSERT_EQ(fake.lines.size(), 3U);
    for (const std::wstring& line : fake.lines)
        EXPECT_NE(line.find(L"] Another Mirelo"), std::wstring::npos);
}
