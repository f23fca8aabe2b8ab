#include "slim/slim_files_win.h"

#include <gtest/gtest.h>

#include "slim/slim_document.h"
#include "tests/base/files/staged_folder_win.h"
#include "tests/slim/document_builder.h"

namespace {

struct SlimFilesTest : testing::Test {
    const Bytes bytes = corpusDocument("x7");
    const std::string document{bytes.begin(), bytes.end()};
    const StagedFolder folder;
    const std::wstring path = folder.path() + L"\\a.cdr";
    const SlimFiles files = realSlimFiles();

    FileHandle hold(DWORD access, DWORD share) const {
        return FileHandle(
            CreateFileW(path.c_str(), access, share, nullptr, OPEN_EXISTING, 0, nullptr));
    }
};

}  // namespace

TEST_F(SlimFilesTest, TakeNamesAndPathsOfAllKinds) {
    const std::wstring deep =
        L"\\" + std::wstring(150, L'd') + L"\\" + std::wstring(120, L'e') + L"\\deep.cdr";
    for (const std::wstring& name : {std::wstring(L"\\\u56FE\u7EB8 \U0001F600.cdr"),
                                     L"\\" + std::wstring(200, L'n') + L".cdr", deep}) {
        const std::wstring named = folder.path() + name;
        WriteStaged(named, document);
        const SlimOutcome outcome = slimDocument(named, {}, files);
        EXPECT_TRUE(outcome.ok) << outcome.message;
        EXPECT_TRUE(ReadStaged(outcome.backupPath) == document);
        EXPECT_EQ(ReadStaged(named).size(), outcome.newSize);
        EXPECT_TRUE(outcome.backupPath.starts_with(named + L".20"));
    }
}

TEST_F(SlimFilesTest, LeaveWhatIsEmptyOrHeldByAnotherProgram) {
    FileImage image;
    WriteStaged(path, "");
    EXPECT_FALSE(files.readWhole(path, image));
    WriteStaged(path, document);
    FileHandle held = hold(GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE);
    EXPECT_FALSE(files.readWhole(path, image)) << "it may be half-written";
    held = hold(GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE);
    const SlimOutcome outcome = slimDocument(path, {}, files);
    EXPECT_EQ(outcome.message, L"Failed to write back (file may be held by CDR). Backup kept: " +
                                   outcome.backupPath);
    held.reset();
    EXPECT_TRUE(ReadStaged(path) == document && ReadStaged(outcome.backupPath) == document);
}

// Not a backup that is there already, nor another file of the same size and time, nor the same file
// saved again with as many bytes.
TEST_F(SlimFilesTest, OverwriteOnlyTheFileThatWasRead) {
    const std::wstring former = folder.path() + L"\\former";
    const Bytes contents = bytesOf("new");
    FileImage image;
    WriteStaged(path, "read");
    WriteStaged(former, "older");
    EXPECT_FALSE(files.copyFile(path, former));
    EXPECT_EQ(ReadStaged(former), "older");

    EXPECT_TRUE(files.readWhole(path, image));
    MoveFileExW(path.c_str(), former.c_str(), MOVEFILE_REPLACE_EXISTING);
    CopyFileW(former.c_str(), path.c_str(), TRUE);
    EXPECT_EQ(files.overwrite(path, contents, image.version, L""), WriteOutcome::changed);

    EXPECT_TRUE(files.readWhole(path, image));
    WriteStaged(path, "save");
    EXPECT_EQ(files.overwrite(path, contents, image.version, L""), WriteOutcome::changed);
    EXPECT_EQ(ReadStaged(path), "save");
}
