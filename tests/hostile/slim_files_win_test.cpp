// Disks that fill up or fail while a slimmed document is written, and programs that hold it for
// moments.
#include "slim/slim_files_win.h"

#include <gtest/gtest.h>

#include "slim/slim_document.h"
#include "tests/base/files/staged_folder_win.h"
#include "tests/hostile/imitation.h"
#include "tests/slim/document_builder.h"

IMITATE("kernel32.dll", CloseHandle);
IMITATE("kernel32.dll", CreateFileW);
IMITATE("kernel32.dll", FlushFileBuffers);
IMITATE("kernel32.dll", SetEndOfFile);
IMITATE("kernel32.dll", WriteFile);

namespace {

class HostileDisk : public testing::Test {
  protected:
    HostileDisk() { WriteStaged(path_, former_); }

    SlimOutcome slim() { return slimDocument(path_, {}, realSlimFiles()); }

    void expectPutBack(const SlimOutcome& outcome) {
        EXPECT_EQ(
            outcome.message,
            L"Failed to write back (file may be held by CDR). Backup kept: " + outcome.backupPath);
        EXPECT_TRUE(ReadStaged(path_) == former_);
        EXPECT_TRUE(ReadStaged(outcome.backupPath) == former_);
        EXPECT_TRUE(version() == before_);
    }

    FileVersion version() {
        FileImage image;
        EXPECT_TRUE(realSlimFiles().readWhole(path_, image));
        return image.version;
    }

    static std::string document() {
        const Bytes bytes = corpusDocument("x7");
        return {bytes.begin(), bytes.end()};
    }

    const StagedFolder folder_;
    const std::wstring path_ = folder_.path() + L"\\plan.cdr";
    const std::string former_ = document();
    const FileVersion before_ = (WriteStaged(path_, former_), version());
};

BOOL failed(DWORD error) {
    SetLastError(error);
    return FALSE;
}

}  // namespace

TEST_F(HostileDisk, FullHalfWayLeavesTheFormerContents) {
    int writes = 0;
    const Staged fillsUp(WriteFileImitation, [&](HANDLE file, LPCVOID bytes, DWORD size,
                                                 LPDWORD written, LPOVERLAPPED overlapped) {
        const bool isFirst = ++writes == 1;
        WriteFileImitation.real(file, bytes, isFirst ? size / 2 : size, written, overlapped);
        return isFirst ? failed(ERROR_DISK_FULL) : TRUE;
    });
    expectPutBack(slim());
    EXPECT_GE(writes, 2);
}

TEST_F(HostileDisk, ShorterThanItSaysIsNotWritten) {
    int calls = 0;
    const Staged fails(SetEndOfFileImitation, [&](HANDLE file) {
        return ++calls == 1 ? failed(ERROR_USER_MAPPED_FILE) : SetEndOfFileImitation.real(file);
    });
    expectPutBack(slim());
}

TEST_F(HostileDisk, WhatIsNotOnTheDiskIsNotWritten) {
    int calls = 0;  // the first sees the backup onto the disk
    const Staged fails(FlushFileBuffersImitation, [&](HANDLE file) {
        return ++calls == 2 ? failed(ERROR_IO_DEVICE) : FlushFileBuffersImitation.real(file);
    });
    expectPutBack(slim());
}

TEST_F(HostileDisk, AnErrorOnClosingIsNoSuccess) {
    HANDLE written = nullptr;
    const Staged watches(WriteFileImitation, [&](HANDLE file, LPCVOID bytes, DWORD size,
                                                 LPDWORD count, LPOVERLAPPED overlapped) {
        written = file;
        return WriteFileImitation.real(file, bytes, size, count, overlapped);
    });
    const Staged fails(CloseHandleImitation, [&](HANDLE handle) {
        const BOOL isClosed = CloseHandleImitation.real(handle);
        return handle == written ? failed(ERROR_NETNAME_DELETED) : isClosed;
    });
    EXPECT_FALSE(slim().ok);
}

TEST_F(HostileDisk, IsWaitedForWhileAnotherProgramHoldsTheFile) {
    ULONGLONG until = 0;
    const Staged holds(CreateFileWImitation, [&](LPCWSTR path, DWORD access, DWORD share,
                                                 LPSECURITY_ATTRIBUTES security, DWORD disposition,
                                                 DWORD flags, HANDLE model) {
        const bool isWriting = (access & GENERIC_WRITE) != 0 && share == 0;
        if (isWriting && until == 0) until = GetTickCount64() + 1000;
        if (isWriting && GetTickCount64() < until) {
            SetLastError(ERROR_SHARING_VIOLATION);
            return INVALID_HANDLE_VALUE;
        }
        return CreateFileWImitation.real(path, access, share, security, disposition, flags, model);
    });
    EXPECT_TRUE(slim().ok);
}
