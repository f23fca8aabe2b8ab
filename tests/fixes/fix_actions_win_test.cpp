// The actions on the real registry and against the system's own import.
#include "fixes/fix_actions_win.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

#include "base/files/file_system_win.h"
#include "base/handle_win.h"
#include "base/text.h"
#include "fixes/settings/registry_export.h"
#include "fixes/settings/registry_win.h"
#include "tests/base/files/staged_folder_win.h"

namespace {

void writeKey(const std::wstring& path, const std::vector<RegistryValue>& values) {
    RegistryKey key;
    RegCreateKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                    key.receive(), nullptr);
    for (const RegistryValue& value : values)
        ASSERT_EQ(RegSetValueExW(key.get(), value.name.c_str(), 0, value.type, value.data.data(),
                                 static_cast<DWORD>(value.data.size())),
                  ERROR_SUCCESS);
}

std::optional<std::vector<RegistryKeyRecord>> readSorted(const std::wstring& path) {
    WindowsRegistry registry;
    auto tree = ReadTree(registry, path);
    if (!tree) return tree;
    for (RegistryKeyRecord& key : *tree)
        std::ranges::sort(key.values, {}, &RegistryValue::name);
    std::ranges::sort(*tree, {}, &RegistryKeyRecord::path);
    return tree;
}

// Every type, with names and data that are hard to write down. Left out is a text that ends in half
// a character: Wine's import completes it, which Windows' own leaves alone.
std::vector<RegistryValue> hardValues() {
    std::vector<std::uint8_t> everyByte;
    for (int i = 0; i < 256; ++i)
        everyByte.push_back(static_cast<std::uint8_t>(i));
    std::vector<std::uint8_t> twoStrings = DataOfText(L"one\\");
    const std::vector<std::uint8_t> second = DataOfText(L"\"two\"");
    twoStrings.insert(twoStrings.end(), second.begin(), second.end());
    twoStrings.insert(twoStrings.end(), 2, 0);
    return {
        {L"", kRegistryText, DataOfText(L"the default value")},
        {L"plain", kRegistryText, DataOfText(L"text")},
        {L"empty", kRegistryText, DataOfText(L"")},
        {L"quotes \" and \\ backslashes\\", kRegistryText, DataOfText(LR"(C:\a "b"\)")},
        {L"line\r\nbreak", kRegistryText, DataOfText(L"first\r\nsecond\ttab")},
        {L"\u0429\u4E2D\U0001F600=;[]", kRegistryText, DataOfText(L"\u0429\u4E2D\U0001F600=;[]")},
        {L"no terminator", kRegistryText, {0x41, 0, 0x42, 0}},
        {L"two terminators", kRegistryText, {0x41, 0, 0, 0, 0, 0}},
        {L"nothing", kRegistryText, {}},
        {L"expand", kRegistryExpandableText, DataOfText(L"%TEMP%\\x")},
        {L"binary", kRegistryBinary, everyByte},
        {L"no binary", kRegistryBinary, {}},
        {L"number", kRegistryNumber, DataOfNumber(0x89ABCDEF)},
        {L"short number", kRegistryNumber, {1, 2, 3}},
        {L"none", 0, {1}},
        {L"big-endian", 5, {1, 2, 3, 4}},
        {L"link", 6, {0x41, 0}},
        {L"strings", 7, twoStrings},
        {L"no strings", 7, {}},
        {L"resource list", 8, {9, 8, 7}},
        {L"quad", 11, {1, 2, 3, 4, 5, 6, 7, 0xFF}},
        {L"unknown type", 0x12345, {1, 2}},
        {std::wstring(300, L'n'), kRegistryBinary, everyByte},
    };
}

}  // namespace

TEST(SettingsOnWindows, ImportGivesBackExactlyWhatWasExported) {
    const std::wstring key = L"Software\\MireloTest-" + decimalUnsigned(GetCurrentProcessId());
    const StagedFolder folder;
    writeKey(key, hardValues());
    writeKey(key + L"\\[sub] key=\u4E2D;\"x\"\\deep", {{L"v", kRegistryNumber, DataOfNumber(7)}});
    const auto before = readSorted(key);
    ASSERT_TRUE(before);
    ASSERT_EQ(before->size(), 3U);
    EXPECT_EQ((*before)[0].values.size(), hardValues().size());

    WindowsRegistry registry;
    WindowsFileSystem files({folder.path()});
    const std::wstring file = folder.path() + L"\\settings.reg";
    const auto text = WriteRegistryExport(*ReadTree(registry, key));
    ASSERT_TRUE(files.writeNew(file, text.value_or("")).isDone());

    // Once over values that were changed, once into nothing.
    for (const bool isGone : {false, true}) {
        if (isGone) {
            RegDeleteTreeW(HKEY_CURRENT_USER, key.c_str());
        } else {
            for (RegistryValue value : hardValues()) {
                value.type = kRegistryText;
                value.data = DataOfText(L"changed");
                ASSERT_EQ(registry.setValue(key, value), 0U);
            }
        }
        EXPECT_NE(readSorted(key), before);
        ASSERT_EQ(RunToEnd(L"reg.exe import \"" + file + L"\""), 0);
        EXPECT_TRUE(readSorted(key) == before) << isGone;
    }
    RegDeleteTreeW(HKEY_CURRENT_USER, key.c_str());
}

TEST(FixActions, WaitForNoOtherProgram) {
    // A mutex belongs to a thread, so another thread can stand for another program.
    const KernelHandle mutex(CreateMutexW(nullptr, TRUE, kBackupsMutex));
    std::vector<std::wstring> log;
    const ActionHost host = {
        [&](std::wstring line) { log.push_back(std::move(line)); },
        [](const std::wstring&, const std::wstring&, ConfirmStyle) { return false; },
        [](std::wstring) {}};
    std::thread([&] {
        OnCleanup(host);
        OnRestore(host);
        OnOptimizeSettings(host);
    }).join();
    ReleaseMutex(mutex.get());
    ASSERT_EQ(log.size(), 3U);
    EXPECT_TRUE(log[0].starts_with(L"[Cleanup] Another Mirelo"));
    EXPECT_TRUE(log[1].starts_with(L"[Restore] Another Mirelo"));
    EXPECT_TRUE(log[2].starts_with(L"[Settings] Another Mirelo"));
}
