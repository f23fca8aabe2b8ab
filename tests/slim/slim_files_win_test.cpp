#include "slim/slim_files_win.h"

#include <gtest/gtest.h>

#include "base/handle_win.h"
#include "slim/slim_document.h"
#include "tests/slim/document_builder.h"

namespace {

const wchar_t kBackupFailed[] = L"Backup failed (target not writable), aborted. File not modified.";

// A folder of its own for each test, removed with all that is in it.
class SlimFilesWin : public testing::Test {
  protected:
    SlimFilesWin() {
        wchar_t temporary[MAX_PATH];
        GetTempPathW(MAX_PATH, temporary);
        folder_ = L"\\\\?\\" + std::wstring(temporary) + L"mirelo-slim-" +
                  std::to_wstring(GetCurrentProcessId());
        CreateDirectoryW(folder_.c_str(), nullptr);
    }
    ~SlimFilesWin() override { removeFolder(folder_); }

    // Writes the document; the path is as short as a dialog would give it.
    std::wstring make(const std::wstring& name, const Bytes& contents) {
        const std::wstring path = folder_ + L"\\" + name;
        EXPECT_TRUE(realSlimFiles().writeWhole(path, contents));
        return path.substr(4);
    }

    SlimOutcome slim(const std::wstring& path) {
        SlimFiles files = realSlimFiles();
        files.localTimestamp = [] { return std::wstring(L"20240131_142501"); };
        return slimDocument(path, {}, files);
    }

    static Bytes read(const std::wstring& path) { return readWholeFile(L"\\\\?\\" + path); }
    static std::wstring backupOf(const std::wstring& path) {
        return path + L".20240131_142501.mirelobak";
    }

    std::wstring folder_;
    const Bytes document_ = buildDocument({});

  private:
    static void removeFolder(const std::wstring& folder) {
        WIN32_FIND_DATAW found;
        const HANDLE search = FindFirstFileW((folder + L"\\*").c_str(), &found);
        for (BOOL more = search != INVALID_HANDLE_VALUE; more;
             more = FindNextFileW(search, &found)) {
            const std::wstring name = found.cFileName;
            const std::wstring path = folder + L"\\" + name;
            if (name == L"." || name == L"..") continue;
            SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
            if (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
                removeFolder(path);
            } else {
                DeleteFileW(path.c_str());
            }
        }
        FindClose(search);
        RemoveDirectoryW(folder.c_str());
    }
};

}  // namespace

TEST_F(SlimFilesWin, SlimsUnderEveryNameAndKeepsTheFormerContents) {
    const std::wstring deep = std::wstring(150, L'd') + L"\\" + std::wstring(120, L'e');
    CreateDirectoryW((folder_ + L"\\" + deep.substr(0, 150)).c_str(), nullptr);
    CreateDirectoryW((folder_ + L"\\" + deep).c_str(), nullptr);
    const std::wstring names[] = {L"plan.cdr",
                                  L"\u56FE\u7EB8 \u7B2C1\u9875.cdr",
                                  L"\u0447\u0435\u0440\u0442\u0451\u0436.cdr",
                                  L"\U0001F600.cdr",
                                  deep + L"\\plan.cdr",
                                  std::wstring(200, L'n') + L".cdr"};
    for (const std::wstring& name : names) {
        const std::wstring path = make(name, document_);
        const SlimOutcome outcome = slim(path);
        EXPECT_TRUE(outcome.ok);
        EXPECT_EQ(outcome.backupPath, backupOf(path));
        EXPECT_EQ(read(path).size(), outcome.newSize);
        EXPECT_EQ(read(outcome.backupPath), document_);
        EXPECT_TRUE(slim(path).alreadyClean);
    }
}

TEST_F(SlimFilesWin, ReadsOnlyFilesOfOneByteToTwoGigabytes) {
    EXPECT_EQ(read(make(L"one", bytesOf("1"))), bytesOf("1"));
    EXPECT_EQ(read(make(L"none", {})), Bytes());
    EXPECT_EQ(read(folder_.substr(4) + L"\\absent"), Bytes());

    const std::wstring large = make(L"large", bytesOf("1"));
    {
        const FileHandle file(CreateFileW(large.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                                          FILE_ATTRIBUTE_NORMAL, nullptr));
        LARGE_INTEGER end;
        end.QuadPart = 0x80000001;
        ASSERT_TRUE(SetFilePointerEx(file.get(), end, nullptr, FILE_BEGIN));
        ASSERT_TRUE(SetEndOfFile(file.get()));
    }
    EXPECT_EQ(read(large), Bytes());
}

TEST_F(SlimFilesWin, ShortensAFileToItsNewContents) {
    const std::wstring path = make(L"plan.cdr", document_);
    EXPECT_EQ(read(make(L"plan.cdr", bytesOf("short"))), bytesOf("short"));
}

TEST_F(SlimFilesWin, LeavesAReadOnlyFileAndItsBackup) {
    const std::wstring path = make(L"plan.cdr", document_);
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY);
    const FileHandle writable(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                                          FILE_ATTRIBUTE_NORMAL, nullptr));
    if (writable) GTEST_SKIP() << "Wine lets root write to read-only files";
    EXPECT_EQ(slim(path).message,
              L"Failed to write back (file may be held by CDR). Backup kept: " + backupOf(path));
    EXPECT_EQ(read(path), document_);
    EXPECT_EQ(read(backupOf(path)), document_);
    EXPECT_TRUE(GetFileAttributesW(backupOf(path).c_str()) & FILE_ATTRIBUTE_READONLY);
}

TEST_F(SlimFilesWin, LeavesAFileThatIsHeldOpen) {
    const struct {
        DWORD access;
        DWORD share;
        bool canBeRead;
    } holders[] = {
        {GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, true},
        {GENERIC_READ, FILE_SHARE_READ, true},
        {GENERIC_READ, 0, false},
        {GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, false},
    };
    for (const auto& holder : holders) {
        const std::wstring path = make(L"plan.cdr", document_);
        SlimOutcome outcome;
        {
            const FileHandle held(CreateFileW(path.c_str(), holder.access, holder.share, nullptr,
                                              OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
            ASSERT_TRUE(held);
            outcome = slim(path);
        }
        EXPECT_FALSE(outcome.ok);
        EXPECT_EQ(read(path), document_);
        if (!holder.canBeRead) {
            EXPECT_EQ(outcome.message, L"Cannot read file");
            continue;
        }
        EXPECT_EQ(
            outcome.message,
            L"Failed to write back (file may be held by CDR). Backup kept: " + backupOf(path));
        EXPECT_EQ(read(backupOf(path)), document_);

        // Within the same second the backup's name is taken.
        EXPECT_EQ(slim(path).message, kBackupFailed);
        EXPECT_EQ(read(path), document_);
        EXPECT_EQ(read(backupOf(path)), document_);
        DeleteFileW(backupOf(path).c_str());
    }
}

TEST_F(SlimFilesWin, StampsTheLocalTime) {
    const std::wstring stamp = realSlimFiles().localTimestamp();
    ASSERT_EQ(stamp.size(), 15U);
    SYSTEMTIME now;
    GetLocalTime(&now);
    EXPECT_EQ(std::stoi(stamp.substr(0, 4)), now.wYear);
    EXPECT_EQ(stamp[8], L'_');
    EXPECT_EQ(stamp.find_first_not_of(L"0123456789_"), std::wstring::npos);
}
