// The fixes on real files, the real registry and against the system's own import.
#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

#include "base/text.h"
#include "fixes/cleanup/cleanup.h"
#include "fixes/cleanup/cleanup_win.h"
#include "fixes/cleanup/restore.h"
#include "fixes/settings/registry_export.h"
#include "fixes/settings/registry_win.h"
#include "fixes/settings/settings_win.h"
#include "tests/base/files/staged_folder_win.h"
#include "tests/fake_host.h"

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

// Names and data that are hard to write down, and types that are. Left out is a text that ends in
// half a character: Wine's import completes it, which Windows' own leaves alone.
std::vector<RegistryValue> hardValues() {
    std::vector<std::uint8_t> everyByte;
    for (int i = 0; i < 256; ++i)
        everyByte.push_back(static_cast<std::uint8_t>(i));
    return {
        {L"", kRegistryText, DataOfText(L"the default value")},
        {L"empty", kRegistryText, DataOfText(L"")},
        {L"quotes \" and \\ backslashes\\", kRegistryText, DataOfText(LR"(C:\a "b"\)")},
        {L"line\r\nbreak", kRegistryText, DataOfText(L"first\r\nsecond\ttab")},
        {L"\u0429\u4E2D\U0001F600=;[]", kRegistryText, DataOfText(L"\u0429\u4E2D\U0001F600=;[]")},
        {L"no terminator", kRegistryText, {0x41, 0, 0x42, 0}},
        {L"two terminators", kRegistryText, {0x41, 0, 0, 0, 0, 0}},
        {L"nothing", kRegistryText, {}},
        {L"expand", kRegistryExpandableText, DataOfText(L"%TEMP%\\x")},
        {L"no binary", kRegistryBinary, {}},
        {L"number", kRegistryNumber, DataOfNumber(0x89ABCDEF)},
        {L"short number", kRegistryNumber, {1, 2, 3}},
        {L"none", 0, {1}},
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
    EXPECT_EQ((*before)[0].values.size(), hardValues().size());

    WindowsRegistry registry;
    WindowsFileSystem files({folder.path()});
    const std::wstring file = folder.path() + L"\\settings.reg";
    const auto text = WriteRegistryExport(*ReadTree(registry, key));
    ASSERT_TRUE(files.writeNew(file, text.value_or("")).isDone());
    // Once over values that were changed, once into nothing.
    for (const bool isGone : {false, true}) {
        if (isGone) RegDeleteTreeW(HKEY_CURRENT_USER, key.c_str());
        for (RegistryValue value : isGone ? std::vector<RegistryValue>() : hardValues()) {
            value = {value.name, kRegistryText, DataOfText(L"changed")};
            ASSERT_EQ(registry.setValue(key, value), 0U);
        }
        EXPECT_NE(readSorted(key), before);
        ASSERT_EQ(RunToEnd(L"reg.exe import \"" + file + L"\""), 0);
        EXPECT_TRUE(readSorted(key) == before) << isGone;
    }
    RegDeleteTreeW(HKEY_CURRENT_USER, key.c_str());
}

TEST(CleanupOnWindows, BringsAProfileBackOnEveryVolumeAndLeavesLinksAndFilesInUse) {
    const StagedFolder stage;
    const CleanupRoots roots = {stage.path() + L"\\Roaming", stage.path() + L"\\Local",
                                stage.path() + L"\\Local\\Temp", L""};
    const std::wstring suite = roots[1] + L"\\Corel\\CorelDRAW Graphics Suite ";
    const std::wstring used = suite + L"X7\\Draw\\PreviewCache\\used";
    WriteStaged(stage.path() + L"\\victims\\Draw\\PreviewCache\\a.png", "victim");
    for (const std::wstring& path :
         {used, suite + L"X7\\Draw\\PreviewCache\\a\\\u4E2D\U0001F600'.png",
          roots[1] + L"\\CrashDumps\\CorelDRW.exe(1).4.dmp", roots[0] + L"\\Corel\\Messages\\1\\x"})
        WriteStaged(path, utf8FromWide(path), FILE_ATTRIBUTE_READONLY);
    WriteStaged(roots[2] + L"\\CDR1.tmp", "RIFF....CDRE a lost drawing");
    ASSERT_TRUE(MakeFolderLink(suite + L"X8", stage.path() + L"\\victims"));
    ASSERT_TRUE(MakeFolderLink(suite + L"X7\\Draw\\PreviewCache\\link", stage.path()));
    const auto before = SnapshotOf(stage.path());
    FakeHost fake;
    const auto act = [&](const std::wstring& tool, const auto& handler) {
        WindowsFileSystem files({roots[0], roots[1], roots[2], tool});
        fake.lines.clear();
        handler(fake.host(), {files,
                              roots,
                              L"",
                              {tool + L"\\Mirelo", L""},
                              [] { return RunningPrograms{}; },
                              [] {
                                  return BackupContext::Now{134ULL << 50, 134ULL << 50};
                              }});
        return utf8FromWide(fake.report());
    };
    std::vector<std::wstring> tools = {roots[1]};
    // Another volume, where the system has one that is known to be.
    if (IsThere(LR"(Z:\dev\shm)")) tools.push_back(LR"(Z:\dev\shm)");
    for (const std::wstring& below : tools) {
        const StagedFolder tool(below);
        const FileHandle user(
            CreateFileW(used.c_str(), GENERIC_READ, 7, nullptr, OPEN_EXISTING, 0, nullptr));
        const std::string cleaned = act(tool.path(), CleanUp);
        EXPECT_NE(cleaned.find("[WARN] 3 files"), std::string::npos) << cleaned;
        EXPECT_NE(cleaned.find("looks like a drawing, left in place"), std::string::npos);
        EXPECT_TRUE(IsThere(used));
        EXPECT_FALSE(IsThere(suite + L"X7\\Draw\\PreviewCache\\a"));
        const std::string restored = act(tool.path(), BringBack);
        EXPECT_NE(restored.find("[OK] 3 files"), std::string::npos) << restored;
        auto after = SnapshotOf(stage.path());
        std::erase_if(after, [&](const auto& item) {
            return item.first.find(L"mirelo-test") != std::wstring::npos;
        });
        EXPECT_TRUE(after == before);
    }
}

TEST(FixActions, WaitForNoOtherProgram) {
    // A mutex belongs to a thread, so another thread can stand for another program.
    const KernelHandle mutex(CreateMutexW(nullptr, TRUE, BackupsLock::name().c_str()));
    EXPECT_NE(BackupsLock::name().find(L"Global\\MireloBackups-S-1-"), std::wstring::npos);
    FakeHost fake;
    std::thread([&] {
        OnCleanup(fake.host());
        OnRestore(fake.host());
        OnOptimizeSettings(fake.host());
    }).join();
    ReleaseMutex(mutex.get());
    ASSERT_EQ(fake.lines.size(), 3U);
    EXPECT_TRUE(fake.lines[0].starts_with(L"[Cleanup] Another Mirelo"));
    EXPECT_TRUE(fake.lines[1].starts_with(L"[Restore] Another Mirelo"));
    EXPECT_TRUE(fake.lines[2].starts_with(L"[Settings] Another Mirelo"));
}
