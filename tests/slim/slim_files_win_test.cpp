#include "slim/slim_files_win.h"

#include <gtest/gtest.h>

#include "slim/slim_document.h"
#include "tests/base/files/staged_folder_win.h"
#include "tests/slim/document_builder.h"

namespace {

std::string document() {
    const Bytes bytes = corpusDocument("x7");
    return {bytes.begin(), bytes.end()};
}

SlimOutcome slim(const std::wstring& path) {
    return slimDocument(path, {}, realSlimFiles());
}

FileHandle hold(const std::wstring& path, DWORD access, DWORD share) {
    return FileHandle(CreateFileW(path.c_str(), access, share, nullptr, OPEN_EXISTING, 0, nullptr));
}

}  // namespace

TEST(SlimFiles, TakeNamesAndPathsOfAllKinds) {
    const StagedFolder folder;
    const std::wstring deep =
        L"\\" + std::wstring(150, L'd') + L"\\" + std::wstring(120, L'e') + L"\\deep.cdr";
    for (const std::wstring& name :
         {std::wstring(L"\\\u56FE\u7EB8 \u7B2C1\u9875.cdr"), std::wstring(L"\\\U0001F600.cdr"),
          L"\\" + std::wstring(200, L'n') + L".cdr", deep}) {
        const std::wstring path = folder.path() + name;
        WriteStaged(path, document());
        const SlimOutcome outcome = slim(path);
        EXPECT_TRUE(outcome.ok) << outcome.message;
        EXPECT_TRUE(ReadStaged(outcome.backupPath) == document());
        EXPECT_EQ(ReadStaged(path).size(), outcome.newSize);
        EXPECT_LT(outcome.newSize, outcome.originalSize);
        EXPECT_TRUE(outcome.backupPath.starts_with(path + L".20") &&
                    outcome.backupPath.ends_with(L".mirelobak"));
    }
}

TEST(SlimFiles, TakeOneByteToTwoGigabytes) {
    const StagedFolder folder;
    const std::wstring path = folder.path() + L"\\a.cdr";
    EXPECT_EQ(slim(path).message, L"Cannot read file");
    for (const LONGLONG size : {0LL, 1LL, 0x80000001LL}) {
        WriteStaged(path, "");
        FileHandle file = hold(path, GENERIC_WRITE, 0);
        LARGE_INTEGER end{};
        end.QuadPart = size;
        EXPECT_TRUE(SetFilePointerEx(file.get(), end, nullptr, FILE_BEGIN) &&
                    SetEndOfFile(file.get()));
        file.reset();
        EXPECT_EQ(slim(path).message == L"Cannot read file", size != 1) << size;
    }
}

TEST(SlimFiles, LeaveWhatAnotherProgramHolds) {
    const StagedFolder folder;
    const std::wstring path = folder.path() + L"\\a.cdr";
    constexpr DWORD kAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const struct {
        DWORD access, share;
        bool isRead;
    } cases[] = {{GENERIC_READ, kAll, true},
                 {GENERIC_READ, 0, false},
                 {GENERIC_READ | GENERIC_WRITE, kAll, false}};
    for (const auto& [access, share, isRead] : cases) {
        WriteStaged(path, document());
        FileHandle held = hold(path, access, share);
        const SlimOutcome outcome = slim(path);
        EXPECT_EQ(outcome.message,
                  isRead ? L"Failed to write back (file may be held by CDR). Backup kept: " +
                               outcome.backupPath
                         : L"Cannot read file");
        held.reset();
        EXPECT_TRUE(ReadStaged(path) == document());
        EXPECT_TRUE(!isRead || ReadStaged(outcome.backupPath) == document());
        DeleteFileW(outcome.backupPath.c_str());
    }
}

TEST(SlimFiles, KeepABackupThatIsThereAlready) {
    const StagedFolder folder;
    WriteStaged(folder.path() + L"\\a.cdr", document());
    WriteStaged(folder.path() + L"\\taken", "older");
    EXPECT_FALSE(realSlimFiles().copyFile(folder.path() + L"\\a.cdr", folder.path() + L"\\taken"));
    EXPECT_EQ(ReadStaged(folder.path() + L"\\taken"), "older");
}

// Another file of the same size and time, or the same file saved again with as many bytes.
TEST(SlimFiles, OverwriteOnlyTheFileThatWasRead) {
    const StagedFolder folder;
    const std::wstring path = folder.path() + L"\\a.cdr";
    const SlimFiles files = realSlimFiles();
    const Bytes contents = bytesOf("new");
    FileImage image;
    WriteStaged(path, "read");
    EXPECT_TRUE(files.readWhole(path, image));
    MoveFileW(path.c_str(), (path + L".old").c_str());
    CopyFileW((path + L".old").c_str(), path.c_str(), TRUE);
    EXPECT_EQ(files.overwrite(path, contents, image.version, L""), WriteOutcome::changed);

    EXPECT_TRUE(files.readWhole(path, image));
    WriteStaged(path, "save");
    EXPECT_EQ(files.overwrite(path, contents, image.version, L""), WriteOutcome::changed);
    EXPECT_EQ(ReadStaged(path), "save");

    EXPECT_TRUE(files.readWhole(path, image));
    EXPECT_EQ(files.overwrite(path, contents, image.version, L""), WriteOutcome::written);
    EXPECT_EQ(ReadStaged(path), "new");
}
