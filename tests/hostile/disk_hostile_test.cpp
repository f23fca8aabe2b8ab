// Disks that fail and fill up, programs that hold a file for moments, servers that do not answer.
#include <windows.h>

#include <gtest/gtest.h>
#include <shlobj.h>

#include <memory>
#include <utility>

#include "app/language_file_win.h"
#include "base/files/tool_folder_win.h"
#include "base/files/whole_file_win.h"
#include "base/handle_win.h"
#include "cdr/version_string_win.h"
#include "cloud/cache_file_win.h"
#include "fixes/cleanup/cleanup_win.h"
#include "slim/slim_document.h"
#include "slim/slim_files_win.h"
#include "tests/base/files/staged_folder_win.h"
#include "tests/cdr/practice_process_win.h"
#include "tests/hostile/imitation.h"
#include "tests/slim/document_builder.h"

IMITATE("kernel32.dll", CreateFileW);
IMITATE("kernel32.dll", FlushFileBuffers);
IMITATE("kernel32.dll", MoveFileExW);
IMITATE("kernel32.dll", SetEndOfFile);
IMITATE("kernel32.dll", WriteFile);
IMITATE("shell32.dll", SHGetFolderPathW);
IMITATE("version.dll", GetFileVersionInfoSizeW);

namespace {

struct Document {
    const Bytes bytes = corpusDocument("x7");
    const std::string former{bytes.begin(), bytes.end()};
    const StagedFolder folder;
    const std::wstring path = folder.path() + L"\\plan.cdr";
    const FileVersion before = (WriteStaged(path, former), version());

    FileVersion version() const {
        FileImage image;
        EXPECT_TRUE(realSlimFiles().readWhole(path, image));
        return image.version;
    }
    SlimOutcome slim() const { return slimDocument(path, {}, realSlimFiles()); }
    FileHandle hold(DWORD access, DWORD share) const {
        return FileHandle(
            CreateFileW(path.c_str(), access, share, nullptr, OPEN_EXISTING, 0, nullptr));
    }
    void expectAsBefore(const SlimOutcome& outcome) const {
        EXPECT_EQ(
            outcome.message,
            L"Failed to write back (file may be held by CDR). Backup kept: " + outcome.backupPath);
        EXPECT_TRUE(ReadStaged(path) == former);
        EXPECT_TRUE(ReadStaged(outcome.backupPath) == former);
    }
};

template <typename Function>
void expectPutBackWhen(Imitation<Function>& imitation, int failingCall) {
    const Document document;
    int calls = 0;
    const Staged failing(imitation, [&](auto... arguments) {
        if (++calls != failingCall) return imitation.real(arguments...);
        SetLastError(ERROR_DISK_FULL);
        return FALSE;
    });
    document.expectAsBefore(document.slim());
    EXPECT_TRUE(document.version() == document.before);
}

// Another Mirelo saves the same file before a step of this one.
template <typename Function>
void expectWholeWhenAnotherComes(Imitation<Function>& before) {
    const StagedFolder folder;
    const std::wstring path = folder.path() + L"\\config.json";
    const std::string own = "own", others = "the other's";
    bool hasCome = false;
    const Staged comes(before, [&](auto... arguments) {
        if (!std::exchange(hasCome, true)) replaceWholeFile(path, others);
        return before.real(arguments...);
    });
    replaceWholeFile(path, own);
    const std::string kept = ReadStaged(path);
    EXPECT_TRUE(kept == own || kept == others) << kept;
    EXPECT_FALSE(IsThere(path + L".new"));
}

}  // namespace

TEST(HostileDisk, LeavesTheFormerContentsWhenItFails) {
    expectPutBackWhen(WriteFileImitation, 1);
    expectPutBackWhen(SetEndOfFileImitation, 1);
    expectPutBackWhen(FlushFileBuffersImitation, 2);  // the first sees the backup onto the disk
}

TEST(HostileDisk, IsWaitedForWhileAnotherProgramHoldsTheFile) {
    const Document document;
    int refusals = 0;
    const Staged holds(CreateFileWImitation, [&](auto path, auto access, auto share, auto... more) {
        const bool isWriting = (access & GENERIC_WRITE) != 0 && share == 0;
        if (!isWriting || ++refusals > 5)
            return CreateFileWImitation.real(path, access, share, more...);
        SetLastError(ERROR_SHARING_VIOLATION);
        return INVALID_HANDLE_VALUE;
    });
    EXPECT_TRUE(document.slim().ok);
}

TEST(HostileDisk, LeavesADocumentThatIsEmptyOrHeldByAnotherProgram) {
    const Document document;
    FileImage image;
    FileHandle held =
        document.hold(GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE);
    EXPECT_FALSE(realSlimFiles().readWhole(document.path, image)) << "it may be half-written";
    held = document.hold(GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE);
    const SlimOutcome outcome = document.slim();
    held.reset();
    document.expectAsBefore(outcome);
    WriteStaged(document.path, "");
    EXPECT_FALSE(realSlimFiles().readWhole(document.path, image));
}

// Not a backup that is there already, nor another file of the same size and time, nor the same file
// saved again with as many bytes.
TEST(HostileDisk, TakesOnlyTheDocumentThatWasRead) {
    const Document document;
    const SlimFiles files = realSlimFiles();
    const std::wstring& path = document.path;
    const std::wstring other = document.folder.path() + L"\\other";
    WriteStaged(other, "older");
    EXPECT_FALSE(files.copyFile(path, other));
    EXPECT_EQ(ReadStaged(other), "older");

    MoveFileExW(path.c_str(), other.c_str(), MOVEFILE_REPLACE_EXISTING);
    CopyFileW(other.c_str(), path.c_str(), TRUE);
    EXPECT_EQ(files.overwrite(path, bytesOf("new"), document.before, L""), WriteOutcome::changed);

    WriteStaged(path, "read");
    const FileVersion read = document.version();
    WriteStaged(path, "save");
    EXPECT_EQ(files.overwrite(path, bytesOf("new"), read, L""), WriteOutcome::changed);
    EXPECT_EQ(ReadStaged(path), "save");
}

TEST(HostileDisk, SlimsDocumentsOfAllNamesAndPaths) {
    const Document document;
    const std::wstring deep =
        L"\\" + std::wstring(150, L'd') + L"\\" + std::wstring(120, L'e') + L"\\deep.cdr";
    for (const std::wstring& name : {std::wstring(L"\\\u56FE\u7EB8 \U0001F600.cdr"),
                                     L"\\" + std::wstring(200, L'n') + L".cdr", deep}) {
        const std::wstring named = document.folder.path() + name;
        WriteStaged(named, document.former);
        const SlimOutcome outcome = slimDocument(named, {}, realSlimFiles());
        EXPECT_TRUE(outcome.ok) << outcome.message;
        EXPECT_TRUE(ReadStaged(outcome.backupPath) == document.former);
        EXPECT_EQ(ReadStaged(named).size(), outcome.newSize);
        EXPECT_TRUE(outcome.backupPath.starts_with(named + L".20"));
    }
}

TEST(HostileDisk, GivesTheCacheBackAsFarAsItFitsAndLeavesItWhenItFails) {
    constexpr std::size_t kSizeLimit = 0x200000;
    // A profile as before the first download: the tool's folder is not there.
    const StagedFolder profile;
    const Staged fresh(SHGetFolderPathWImitation, [&](HWND, int, HANDLE, DWORD, LPWSTR path) {
        wcscpy(path, profile.path().c_str());
        return S_OK;
    });
    for (const std::size_t size : {kSizeLimit, kSizeLimit - 1, std::size_t{0}}) {
        ASSERT_TRUE(WriteCacheFile(std::string(size, 'x')));
        EXPECT_EQ(ReadCacheFile().size(), size % kSizeLimit);
    }
    const std::string good("\0\r\n\xFF", 4);
    ASSERT_TRUE(WriteCacheFile(good));
    {
        const Staged full(WriteFileImitation, [](auto...) {
            SetLastError(ERROR_DISK_FULL);
            return FALSE;
        });
        EXPECT_FALSE(WriteCacheFile("a full disk"));
    }
    {
        const Staged readOnly(CreateFileWImitation, [](auto...) {
            SetLastError(ERROR_ACCESS_DENIED);
            return INVALID_HANDLE_VALUE;
        });
        EXPECT_FALSE(WriteCacheFile("a folder that may only be read, or another Mirelo at it"));
    }
    EXPECT_FALSE(IsThere(CacheFilePath() + L".new")) << "something is left behind";
    EXPECT_EQ(ReadCacheFile(), good);
}

TEST(HostileDisk, HoldsNoHalfOfWhatTwoProgramsSave) {
    expectWholeWhenAnotherComes(WriteFileImitation);
    expectWholeWhenAnotherComes(MoveFileExWImitation);
}

TEST(HostileDisk, IsNotWrittenToWithoutAFolderForTheLanguage) {
    const Staged none(SHGetFolderPathWImitation, [](auto...) { return E_FAIL; });
    const Staged opens(CreateFileWImitation, [](auto path, DWORD access, auto... more) {
        EXPECT_EQ(access & GENERIC_WRITE, 0U) << path;
        return CreateFileWImitation.real(path, access, more...);
    });
    saveLanguage();
}

TEST(HostileServer, IsGivenUpAndNotAskedAgainBeforeItAnswers) {
    const auto answers =
        std::make_shared<KernelHandle>(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    const auto wait = [answers](auto...) {
        WaitForSingleObject(std::shared_ptr(answers)->get(), 60000);
        return 0;
    };
    const std::wstring file = PracticeProgram().wstring();
    const Staged folder(SHGetFolderPathWImitation, wait);
    const Staged resource(GetFileVersionInfoSizeWImitation, wait);
    EXPECT_EQ(toolFolder() + UserFolders().context().homes.local, L"");
    EXPECT_EQ(ReadVersionString(file, L"ProductVersion"), L"");
    const ULONGLONG start = GetTickCount64();
    EXPECT_EQ(ReadVersionString(file, L"ProductVersion"), L"");
    EXPECT_LT(GetTickCount64() - start, 500U);
    SetEvent(answers->get());
    const Staged back(GetFileVersionInfoSizeWImitation, [](auto... asked) {
        return GetFileVersionInfoSizeWImitation.real(asked...);
    });
    while (ReadVersionString(file, L"ProductVersion").empty())
        ASSERT_LT(GetTickCount64() - start, 20000U) << "an answered question counts as asked";
}
