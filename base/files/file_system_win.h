// The real file system, for moving files into backups and back.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "base/files/file_system.h"
#include "base/files/pinned_folder_win.h"

/// Works only below the folders it is made for, and follows no link below them: the folders on the
/// way are pinned while a call runs. A few stay pinned between calls, because calls come in runs.
class WindowsFileSystem final : public FileSystem {
  public:
    /// Absolute paths, long names, no backslash at the end; empty ones are left out.
    explicit WindowsFileSystem(std::vector<std::wstring> bases);

    FolderListing list(const std::wstring& folder) override;
    Inspection inspect(const std::wstring& path) override;
    FileResult createFolder(const std::wstring& folder) override;
    FileResult removeFolder(const std::wstring& folder) override;
    FileResult writeNew(const std::wstring& path, std::string_view bytes) override;
    std::optional<std::string> read(const std::wstring& path, std::uint64_t limit) override;
    FileResult rename(const std::wstring& from, const std::wstring& to,
                      const FileStamp* expected) override;
    FileResult copy(const std::wstring& from, const std::wstring& to,
                    const FileStamp& expected) override;
    FileResult compare(const std::wstring& left, const std::wstring& right) override;
    FileResult remove(const std::wstring& path, const FileStamp* expected) override;
    FileResult setStamp(const std::wstring& path, const FileStamp& stamp) override;

  private:
    struct Opened {
        FileHandle handle;
        FileResult result;
        FileStamp stamp;
    };

    struct Pin {
        FileResult result;
        const PinnedFolder* folder;
    };

    Pin pin(const std::wstring& folder);
    Opened openFile(const std::wstring& path, DWORD access, DWORD share);
    Opened openExpected(const std::wstring& path, DWORD access, const FileStamp* expected);

    std::vector<std::wstring> bases_;
    /// The last used first; a call needs two at most.
    std::array<PinnedFolder, 4> pins_;
};
