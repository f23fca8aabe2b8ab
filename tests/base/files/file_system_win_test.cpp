#include "base/files/file_system_win.h"

#include <gtest/gtest.h>

#include "tests/base/files/staged_folder_win.h"

namespace {

struct WindowsFiles : testing::Test {
    StagedFolder stage;
    std::wstring base = stage.path() + L"\\base";
    WindowsFileSystem files{{base, L""}};
    std::wstring file = base + L"\\a\\file.bin";

    void SetUp() override { WriteStaged(file, "contents"); }
};

}  // namespace

TEST_F(WindowsFiles, ChangesOnlyWhatNobodyHasOpenAndIsAsExpected) {
    const std::wstring to = base + L"\\to.bin";
    const FileStamp stamp = files.inspect(file).stamp;
    const auto expectNothing = [&](const FileStamp& expected, FileOutcome outcome) {
        for (const FileResult& result :
             {files.rename(file, to, &expected), files.copy(file, to, expected),
              files.remove(file, &expected)})
            EXPECT_EQ(result.outcome, outcome);
    };
    for (const DWORD access : {DWORD{GENERIC_READ}, DWORD{GENERIC_WRITE}}) {
        for (DWORD share = 0; share < 8; ++share) {
            const FileHandle user(
                CreateFileW(file.c_str(), access, share, nullptr, OPEN_EXISTING, 0, nullptr));
            expectNothing(stamp, FileOutcome::inUse);
        }
    }
    FileStamp later = stamp, larger = stamp;
    ++later.modified;
    ++larger.size;
    for (const FileStamp& other : {later, larger})
        expectNothing(other, FileOutcome::changed);
    WriteStaged(to, "in the way");
    EXPECT_EQ(files.rename(file, to, &stamp).outcome, FileOutcome::exists);
    EXPECT_EQ(files.writeNew(to, "other").outcome, FileOutcome::exists);
    EXPECT_EQ(ReadStaged(to), "in the way");
    EXPECT_FALSE(files.rename(base + L"\\a", base + L"\\b", nullptr).isDone()) << "a folder";
    EXPECT_TRUE(files.rename(file, base + L"\\moved.bin", &stamp).isDone());
    EXPECT_EQ(files.inspect(base + L"\\moved.bin").stamp.modified, stamp.modified);
}

TEST_F(WindowsFiles, CopiesAcrossVolumesToTheLastByteAndRemovesWhatIsReadOnly) {
    const std::string contents = std::string(1'000'000, 'x') + "P";
    const std::wstring from = base + L"\\from.bin";
    WriteStaged(from, contents, FILE_ATTRIBUTE_READONLY);
    FileStamp stamp = files.inspect(from).stamp;
    // Another volume, where the system has one that is known to be.
    const bool isFar = IsThere(LR"(Z:\dev\shm)");
    const StagedFolder other(isFar ? LR"(Z:\dev\shm)" : base);
    WindowsFileSystem both({base, other.path()});
    const std::wstring to = other.path() + L"\\copy.bin";
    EXPECT_TRUE(!isFar || both.rename(from, to, &stamp).outcome == FileOutcome::otherVolume);
    ASSERT_TRUE(both.copy(from, to, stamp).isDone());
    EXPECT_TRUE(both.compare(from, to).isDone());
    EXPECT_EQ(both.inspect(to).stamp, stamp);
    stamp.modified -= 20'000'000;
    EXPECT_TRUE(both.setStamp(to, stamp).isDone());
    EXPECT_EQ(both.inspect(to).stamp.attributes & 1, 1U);
    EXPECT_TRUE(both.remove(to, &stamp).isDone());
    ASSERT_TRUE(both.writeNew(to, contents.substr(1) + "Q").isDone());
    EXPECT_EQ(both.compare(from, to).outcome, FileOutcome::changed);
    EXPECT_EQ(both.read(to, 3), "xxx");
}

TEST_F(WindowsFiles, TouchesNothingThroughALinkOrOutside) {
    const std::wstring outside = stage.path() + L"\\outside", link = base + L"\\link";
    WriteStaged(outside + L"\\victim.bin", "victim");
    const FileStamp stamp = files.inspect(file).stamp;
    ASSERT_TRUE(MakeLink(link, outside, SYMBOLIC_LINK_FLAG_DIRECTORY));
    EXPECT_EQ(files.inspect(link).type, EntryType::link);
    for (const std::wstring& way : {outside, link}) {
        const std::wstring victim = way + L"\\victim.bin", made = way + L"\\x";
        for (const FileResult& result :
             {files.list(way).result, files.inspect(victim).result,
              files.rename(victim, base + L"\\x", nullptr), files.rename(file, made, &stamp),
              files.copy(file, made, stamp), files.remove(victim, nullptr),
              files.createFolder(made), files.removeFolder(made), files.writeNew(made, "x"),
              files.setStamp(victim, stamp)})
            EXPECT_EQ(result.outcome, way == link ? FileOutcome::link : FileOutcome::outside);
        EXPECT_FALSE(files.read(victim, 100));
    }
    const std::wstring fileLink = base + L"\\file-link";
    ASSERT_TRUE(MakeLink(fileLink, outside + L"\\victim.bin", 0));
    EXPECT_EQ(files.rename(fileLink, base + L"\\x", nullptr).outcome, FileOutcome::link);
    EXPECT_EQ(files.inspect(base + L"-not\\x").result.outcome, FileOutcome::outside);
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
