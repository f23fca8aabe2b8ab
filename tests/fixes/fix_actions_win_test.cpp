// The actions on the real registry and against the system's own import.
#include "fixes/fix_actions_win.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

#include "base/handle_win.h"
#include "base/text.h"
#include "fixes/file_system_win.h"
#include "fixes/registry_export.h"
#include "fixes/registry_win.h"
#include "tests/fixes/registry_samples.h"
#include "tests/fixes/staged_folder_win.h"

namespace {

// A key of this test's own, removed at its end.
class StagedKey {
  public:
    StagedKey() : path_(L"Software\\MireloTest-" + decimalUnsigned(GetCurrentProcessId())) {
        remove();
    }
    ~StagedKey() { remove(); }
    StagedKey(const StagedKey&) = delete;
    StagedKey& operator=(const StagedKey&) = delete;

    [[nodiscard]] const std::wstring& path() const { return path_; }
    void remove() const { RegDeleteTreeW(HKEY_CURRENT_USER, path_.c_str()); }

  private:
    std::wstring path_;
};

void writeKey(const std::wstring& path, const std::vector<RegistryValue>& values) {
    RegistryKey key;
    ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS,
                              nullptr, key.receive(), nullptr),
              ERROR_SUCCESS);
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

// Wine's import completes a text that ends in half a character, which Windows' own leaves alone.
std::vector<RegistryValue> importableValues() {
    std::vector<RegistryValue> values = hardRegistryValues();
    std::erase_if(values, [](const RegistryValue& value) {
        return value.type == kRegistryText && value.data.size() % 2 != 0;
    });
    return values;
}

}  // namespace

TEST(SettingsOnWindows, ImportGivesBackExactlyWhatWasExported) {
    const StagedKey key;
    const StagedFolder folder;
    writeKey(key.path(), importableValues());
    writeKey(key.path() + L"\\[sub] key=\u4E2D;\"x\"\\deep",
             {{L"v", kRegistryNumber, DataOfNumber(7)}});
    const auto before = readSorted(key.path());
    ASSERT_TRUE(before);
    ASSERT_EQ(before->size(), 3U);
    EXPECT_EQ((*before)[0].values.size(), importableValues().size());

    WindowsRegistry registry;
    WindowsFileSystem files({folder.path()});
    const std::wstring file = folder.path() + L"\\settings.reg";
    ASSERT_TRUE(
        files.writeNew(file, WriteRegistryExport(*ReadTree(registry, key.path()))).isDone());

    // Once over values that were changed, once into nothing.
    for (const bool isGone : {false, true}) {
        if (isGone) {
            key.remove();
        } else {
            for (RegistryValue value : importableValues()) {
                value.type = kRegistryText;
                value.data = DataOfText(L"changed");
                ASSERT_EQ(registry.setValue(key.path(), value), 0U);
            }
        }
        EXPECT_NE(readSorted(key.path()), before);
        ASSERT_EQ(RunToEnd(L"reg.exe import \"" + file + L"\""), 0);
        const auto after = readSorted(key.path());
        ASSERT_TRUE(after);
        ASSERT_EQ(after->size(), before->size());
        for (std::size_t i = 0; i < before->size(); ++i) {
            EXPECT_EQ((*after)[i].path, (*before)[i].path);
            ASSERT_EQ((*after)[i].values.size(), (*before)[i].values.size());
            for (std::size_t j = 0; j < (*before)[i].values.size(); ++j)
                EXPECT_TRUE((*after)[i].values[j] == (*before)[i].values[j])
                    << utf8FromWide((*before)[i].values[j].name);
        }
    }
}

TEST(SettingsOnWindows, FindsARunningCorelByItsName) {
    EXPECT_FALSE(IsCorelRunning());
    const StagedFolder folder;
    wchar_t self[MAX_PATH] = L"";
    GetModuleFileNameW(nullptr, self, MAX_PATH);
    const std::wstring corel = folder.path() + L"\\coreldrw.EXE";
    ASSERT_TRUE(CopyFileW(self, corel.c_str(), TRUE));
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION info{};
    std::wstring command = L"\"" + corel + L"\"";
    ASSERT_TRUE(CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, CREATE_SUSPENDED,
                               nullptr, nullptr, &startup, &info));
    const KernelHandle process(info.hProcess), thread(info.hThread);
    EXPECT_TRUE(IsCorelRunning());
    TerminateProcess(process.get(), 0);
    WaitForSingleObject(process.get(), 10'000);
}

TEST(FixActions, WaitForNoOtherProgram) {
    // A mutex belongs to a thread, so another thread can stand for another program.
    const KernelHandle mutex(CreateMutexW(nullptr, TRUE, kBackupsMutex));
    std::vector<std::wstring> log;
    const Shell shell = {
        [&](std::wstring line) { log.push_back(std::move(line)); },
        [](const std::wstring&, const std::wstring&, ConfirmStyle) { return false; },
        [](std::wstring) {}};
    std::thread([&] {
        OnCleanup(shell);
        OnRestore(shell);
        OnOptimizeSettings(shell);
    }).join();
    ReleaseMutex(mutex.get());
    ASSERT_EQ(log.size(), 3U);
    EXPECT_TRUE(log[0].starts_with(L"[Cleanup] Another Mirelo"));
    EXPECT_TRUE(log[1].starts_with(L"[Restore] Another Mirelo"));
    EXPECT_TRUE(log[2].starts_with(L"[Settings] Another Mirelo"));
}
