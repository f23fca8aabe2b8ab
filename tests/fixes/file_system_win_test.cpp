#include "fixes/file_system_win.h"

#include <gtest/gtest.h>

#include "base/text.h"
#include "tests/fixes/staged_folder_win.h"

namespace {

FileHandle openFor(const std::wstring& path, DWORD access, DWORD share) {
    return FileHandle(CreateFileW(path.c_str(), access, share, nullptr, OPEN_EXISTING, 0, nullptr));
}

class WindowsFiles : public testing::Test {
  protected:
    StagedFolder stage;
    std::wstring base = stage.path() + L"\\base";
    WindowsFileSystem files{{base, L""}};
    std::wstring file = base + L"\\a\\file.bin";

    void SetUp() override { WriteStaged(file, "contents"); }
};

}  // namespace

TEST_F(WindowsFiles, RenamesOnlyWhatNobodyHasOpenAndIsAsExpected) {
    const std::wstring to = base + L"\\to.bin";
    const FileStamp stamp = files.inspect(file).stamp;
    for (const DWORD access : {DWORD{GENERIC_READ}, DWORD{GENERIC_WRITE}}) {
        for (DWORD share = 0; share < 8; ++share) {
            const FileHandle user = openFor(file, access, share);
            ASSERT_TRUE(user);
            EXPECT_EQ(files.rename(file, to, &stamp).outcome, FileOutcome::inUse) << share;
            EXPECT_EQ(files.copy(file, to, stamp).outcome, FileOutcome::inUse) << share;
            EXPECT_EQ(files.remove(file, &stamp).outcome, FileOutcome::inUse) << share;
        }
    }
    FileStamp other = stamp;
    ++other.modified;
    EXPECT_EQ(files.rename(file, to, &other).outcome, FileOutcome::changed);
    EXPECT_EQ(files.remove(file, &other).outcome, FileOutcome::changed);
    WriteStaged(to, "in the way");
    EXPECT_EQ(files.rename(file, to, &stamp).outcome, FileOutcome::exists);
    EXPECT_EQ(files.copy(file, to, stamp).outcome, FileOutcome::exists);
    EXPECT_EQ(ReadStaged(to), "in the way");
    EXPECT_EQ(files.rename(file, base + L"\\none\\x", &stamp).outcome, FileOutcome::missing);
    EXPECT_EQ(files.rename(base + L"\\none", to, nullptr).outcome, FileOutcome::missing);
    EXPECT_EQ(files.rename(base + L"\\a", base + L"\\b", nullptr).isDone(), false) << "a folder";
    EXPECT_TRUE(files.rename(file, base + L"\\moved.bin", &stamp).isDone());
    EXPECT_EQ(files.inspect(base + L"\\moved.bin").stamp.modified, stamp.modified);
}

TEST_F(WindowsFiles, CopiesWithTimesAndAttributes) {
    WriteStaged(file, std::string(1'000'000, 'x') + "end",
                FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN);
    const FileStamp stamp = files.inspect(file).stamp;
    const std::wstring to = base + L"\\copy.bin";
    ASSERT_TRUE(files.copy(file, to, stamp).isDone());
    const Inspection copied = files.inspect(to);
    EXPECT_EQ(copied.stamp.size, stamp.size);
    EXPECT_EQ(copied.stamp.modified, stamp.modified);
    EXPECT_EQ(copied.stamp.attributes, stamp.attributes);
    EXPECT_TRUE(files.compare(file, to).isDone());
    EXPECT_TRUE(files.remove(to, &stamp).isDone()) << "read-only";
    EXPECT_FALSE(IsThere(to));
    WriteStaged(to, std::string(1'000'000, 'x') + "enD");
    EXPECT_EQ(files.compare(file, to).outcome, FileOutcome::changed);
    WriteStaged(to, std::string(1'000'000, 'x'));
    EXPECT_EQ(files.compare(file, to).outcome, FileOutcome::changed);
}

TEST_F(WindowsFiles, WritesReadsAndPatches) {
    const std::wstring path = base + L"\\list.json";
    const std::string contents = std::string(700'000, 'a') + "P";
    ASSERT_TRUE(files.writeNew(path, contents).isDone());
    EXPECT_FALSE(IsThere(path + std::wstring(kUnfinishedSuffix)));
    EXPECT_EQ(files.writeNew(path, "other").outcome, FileOutcome::exists);
    EXPECT_TRUE(files.overwriteByte(path, 700'000, 'M').isDone());
    EXPECT_EQ(files.read(path, 700'001), std::string(700'000, 'a') + "M");
    EXPECT_EQ(files.read(path, 700'000), std::nullopt);
    EXPECT_EQ(files.read(base + L"\\none", 10), std::nullopt);
}

TEST_F(WindowsFiles, TouchesNothingThroughALinkOrOutside) {
    const std::wstring outside = stage.path() + L"\\outside";
    WriteStaged(outside + L"\\victim.bin", "victim");
    const FileStamp stamp = files.inspect(file).stamp;
    std::vector<std::wstring> ways = {outside};
    if (MakeFolderLink(base + L"\\link", outside)) {
        ways.push_back(base + L"\\link");
        EXPECT_EQ(files.inspect(base + L"\\link").type, EntryType::link);
        EXPECT_FALSE(files.removeFolder(base + L"\\link").isDone());
        EXPECT_TRUE(IsThere(base + L"\\link"));
    } else {
        ADD_FAILURE() << "no link could be made";
    }
    for (const std::wstring& way : ways) {
        const std::wstring victim = way + L"\\victim.bin";
        const FileOutcome expected = way == outside ? FileOutcome::outside : FileOutcome::link;
        EXPECT_EQ(files.list(way).result.outcome, expected);
        EXPECT_EQ(files.inspect(victim).result.outcome, expected);
        EXPECT_EQ(files.rename(victim, base + L"\\x", nullptr).outcome, expected);
        EXPECT_EQ(files.rename(file, way + L"\\x", &stamp).outcome, expected);
        EXPECT_EQ(files.copy(file, way + L"\\x", stamp).outcome, expected);
        EXPECT_EQ(files.remove(victim, nullptr).outcome, expected);
        EXPECT_EQ(files.createFolder(way + L"\\x").outcome, expected);
        EXPECT_EQ(files.removeFolder(way + L"\\x").outcome, expected);
        EXPECT_EQ(files.writeNew(way + L"\\x", "x").outcome, expected);
        EXPECT_EQ(files.overwriteByte(victim, 0, 'x').outcome, expected);
        EXPECT_EQ(files.setStamp(victim, stamp).outcome, expected);
        EXPECT_FALSE(files.read(victim, 100));
    }
    if (MakeFileLink(base + L"\\file-link", outside + L"\\victim.bin")) {
        EXPECT_EQ(files.rename(base + L"\\file-link", base + L"\\x", nullptr).outcome,
                  FileOutcome::link);
        EXPECT_EQ(files.remove(base + L"\\file-link", nullptr).outcome, FileOutcome::link);
    }
    // A folder whose name only begins like the base is not below it.
    EXPECT_EQ(files.inspect(base + L"-not\\x").result.outcome, FileOutcome::outside);
    EXPECT_EQ(SnapshotOf(outside).size(), 1U);
    EXPECT_EQ(ReadStaged(outside + L"\\victim.bin"), "victim");
}

TEST_F(WindowsFiles, PinsTheFoldersItWorksIn) {
    {
        WindowsFileSystem working({base});
        ASSERT_TRUE(working.list(base + L"\\a").result.isDone());
        EXPECT_FALSE(MoveFileW((base + L"\\a").c_str(), (base + L"\\b").c_str()));
    }
    EXPECT_TRUE(MoveFileW((base + L"\\a").c_str(), (base + L"\\b").c_str()));
}

TEST_F(WindowsFiles, WorksBeyondTheOldLimitOfPaths) {
    std::wstring deep = base;
    for (int i = 0; i < 12; ++i) {
        deep += L"\\" + std::wstring(40, static_cast<wchar_t>(L'a' + i));
        ASSERT_TRUE(files.createFolder(deep).isDone());
    }
    const std::wstring below = deep + L"\\file.bin";
    const FileStamp stamp = files.inspect(file).stamp;
    ASSERT_TRUE(files.rename(file, below, &stamp).isDone());
    EXPECT_EQ(files.list(deep).entries.size(), 1U);
    EXPECT_TRUE(files.rename(below, file, &stamp).isDone());
    EXPECT_TRUE(RemoveEmptyFolders(files, base + L"\\" + std::wstring(40, L'a')).isDone());
    EXPECT_FALSE(IsThere(base + L"\\" + std::wstring(40, L'a')));
}
