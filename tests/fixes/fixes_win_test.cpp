// The fixes on real files, the real registry and against the system's own import.
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
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
        ASSERT_EQ(WindowsRegistry().setValue(path, value), 0U);
}

auto readSorted(const std::wstring& path) {
    WindowsRegistry registry;
    auto tree = ReadTree(registry, path).value_or(std::vector<RegistryKeyRecord>());
    for (RegistryKeyRecord& key : tree)
        std::ranges::sort(key.values, {}, &RegistryValue::name);
    std::ranges::sort(tree, {}, &RegistryKeyRecord::path);
    return tree;
}

// Names and data that are hard to write down, and types that are. Left out is a text that ends in
// half a character: Wine's import completes it, which Windows' own leaves alone.
std::vector<RegistryValue> hardValues() {
    std::vector<std::uint8_t> everyByte(256);
    std::iota(everyByte.begin(), everyByte.end(), std::uint8_t{0});
    return {
        {L"", kRegistryText, DataOfText(L"the default value")},
        {L"quotes \" and \\ backslashes\\", kRegistryText, DataOfText(LR"(C:\a "b"\)")},
        {L"line\r\nbreak", kRegistryText, DataOfText(L"first\r\nsecond\ttab")},
        {L"\u0429\u4E2D\U0001F600=;[]", kRegistryText, DataOfText(L"\u0429\u4E2D\U0001F600=;[]")},
        {L"no terminator", kRegistryText, {0x41, 0, 0x42, 0}},
        {L"nothing", kRegistryText, {}},
        {L"expand", kRegistryExpandableText, DataOfText(L"%TEMP%\\x")},
        {L"number", kRegistryNumber, DataOfNumber(0x89ABCDEF)},
        {L"short number", kRegistryNumber, {1, 2, 3}},
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
    ASSERT_EQ(before.at(0).values.size(), hardValues().size());

    WindowsRegistry registry;
    WindowsFileSystem files({folder.path()});
    const std::wstring file = folder.path() + L"\\settings.reg";
    const auto text = WriteRegistryExport(*ReadTree(registry, key));
    ASSERT_TRUE(files.writeNew(file, text.value_or("")).isDone());
    for (const RegistryValue& value : hardValues())
        registry.setValue(key, {value.name, kRegistryText, DataOfText(L"changed")});
    EXPECT_NE(readSorted(key), before);
    ASSERT_EQ(RunToEnd(L"reg.exe import \"" + file + L"\""), 0);
    EXPECT_TRUE(readSorted(key) == before) << "over values that were changed";
    RegDeleteTreeW(HKEY_CURRENT_USER, key.c_str());
    ASSERT_EQ(RunToEnd(L"reg.exe import \"" + file + L"\""), 0);
    EXPECT_TRUE(readSorted(key) == before) << "into nothing";
    RegDeleteTreeW(HKEY_CURRENT_USER, key.c_str());
}

TEST(CleanupOnWindows, BringsAProfileBackOnEveryVolumeAndLeavesLinksAndFilesInUse) {
    const StagedFolder stage;
    const CleanupRoots roots = {stage.path() + L"\\Roaming", stage.path() + L"\\Local",
                                stage.path() + L"\\Local\\Temp", L""};
    const std::wstring suite = roots[1] + L"\\Corel\\CorelDRAW Graphics Suite ";
    const std::wstring used = suite + L"X7\\Draw\\PreviewCache\\used";
    const std::wstring victim = stage.path() + L"\\victims\\Draw\\PreviewCache\\a.png";
    const std::wstring drawing = roots[2] + L"\\CDR1.tmp";
    WriteStaged(victim, "victim");
    WriteStaged(drawing, "RIFF....CDRE a lost drawing");
    const std::wstring moved[] = {suite + L"X7\\Draw\\PreviewCache\\a\\\u4E2D\U0001F600'.png",
                                  roots[1] + L"\\CrashDumps\\CorelDRW.exe(1).4.dmp",
                                  roots[0] + L"\\Corel\\Messages\\1\\x"};
    WriteStaged(used, "used");
    for (const std::wstring& path : moved)
        WriteStaged(path, utf8FromWide(path), FILE_ATTRIBUTE_READONLY);
    ASSERT_TRUE(MakeLink(suite + L"X8", stage.path() + L"\\victims", SYMBOLIC_LINK_FLAG_DIRECTORY));
    std::vector<FileStamp> before;
    for (const std::wstring& path : moved)
        before.push_back(WindowsFileSystem({stage.path()}).inspect(path).stamp);
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
        for (const std::wstring& path : {used, drawing, victim})
            EXPECT_TRUE(IsThere(path)) << utf8FromWide(path);
        EXPECT_FALSE(IsThere(parentFolder(moved[0])));
        const std::string restored = act(tool.path(), BringBack);
        EXPECT_NE(restored.find("[OK] 3 files"), std::string::npos) << restored;
        for (std::size_t i = 0; i < before.size(); ++i) {
            const FileStamp after = WindowsFileSystem({stage.path()}).inspect(moved[i]).stamp;
            EXPECT_EQ(ReadStaged(moved[i]), utf8FromWide(moved[i]));
            EXPECT_EQ(after.modified, before[i].modified);
            EXPECT_EQ(after.attributes, before[i].attributes);
        }
    }
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
