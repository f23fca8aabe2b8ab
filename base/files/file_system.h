// What moving files into a backup and back needs of the file system. The real one is in
// file_system_win; the tests have one that dies at every step.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/files/timestamp.h"

enum class FileOutcome {
    done,
    missing,      // nothing is there
    exists,       // the new name is taken
    inUse,        // another program has the file open
    changed,      // not the size or time that was expected, or not the same contents
    link,         // a junction, symbolic link or other reparse point stands on the path
    outside,      // not below a folder that this file system was made for
    otherVolume,  // a rename cannot reach it
    diskFull,
    refused,  // anything else; `error` tells
};

struct FileResult {
    FileOutcome outcome = FileOutcome::done;
    /// The system's error number where there is one, for the report.
    std::uint32_t error = 0;

    [[nodiscard]] bool isDone() const { return outcome == FileOutcome::done; }
};

struct FilesTotal {
    std::uint64_t files = 0;
    std::uint64_t bytes = 0;
};

/// A file or folder that something could not be done to.
struct FileFailure {
    std::wstring path;
    FileResult reason;
};

/// Why something did not happen, to stand after a colon in a report line.
std::wstring reasonText(const FileResult& result);

/// What is kept of a file or folder beside its contents. The attributes are those that a copy
/// carries over: read-only, hidden, system, archive, not indexed.
struct FileStamp {
    std::uint64_t size = 0;
    FileTicks created = 0;
    FileTicks modified = 0;
    std::uint32_t attributes = 0;

    bool operator==(const FileStamp&) const = default;
};

enum class EntryType { file, folder, link };

struct FolderEntry {
    std::wstring name;
    EntryType type = EntryType::file;
    FileStamp stamp;
};

struct FolderListing {
    FileResult result;
    std::vector<FolderEntry> entries;
};

struct Inspection {
    FileResult result;
    EntryType type = EntryType::file;
    FileStamp stamp;

    [[nodiscard]] bool isFile() const { return result.isDone() && type == EntryType::file; }
};

/// Paths are absolute, with backslashes, of any length, without a prefix. No call follows a link
/// below the folders that the file system was made for, and none replaces anything. Each call is
/// one step: a kill leaves the state before or after it, or what the call says.
class FileSystem {
  public:
    virtual ~FileSystem() = default;

    virtual FolderListing list(const std::wstring& folder) = 0;
    virtual Inspection inspect(const std::wstring& path) = 0;

    /// The parent must exist. `exists` when something of that name is there.
    virtual FileResult createFolder(const std::wstring& folder) = 0;
    /// Removes an empty folder.
    virtual FileResult removeFolder(const std::wstring& folder) = 0;

    /// A new file whose contents are on the disk when the call returns. A kill leaves at most a
    /// file named `path` and `kUnfinishedSuffix`.
    virtual FileResult writeNew(const std::wstring& path, std::string_view bytes) = 0;
    /// The first `limit` bytes, all of a shorter file; nothing when it cannot be read.
    virtual std::optional<std::string> read(const std::wstring& path, std::uint64_t limit) = 0;

    /// Gives a file that nobody has open a new name on the same volume. With `expected`, only when
    /// size and time of change are still those.
    virtual FileResult rename(const std::wstring& from, const std::wstring& to,
                              const FileStamp* expected) = 0;
    /// Makes `to` from a file that nobody has open and that is still as `expected`, times and
    /// attributes included, on the disk when the call returns. A kill or a failure can leave a part
    /// of it; the times are set last.
    virtual FileResult copy(const std::wstring& from, const std::wstring& to,
                            const FileStamp& expected) = 0;
    /// Done when both hold the same bytes, `changed` when not.
    virtual FileResult compare(const std::wstring& left, const std::wstring& right) = 0;
    /// Removes a file, read-only or not. `expected` as for `rename`. A kill can leave the file
    /// without its read-only attribute.
    virtual FileResult remove(const std::wstring& path, const FileStamp* expected) = 0;
    /// Sets times and attributes of a file or a folder.
    virtual FileResult setStamp(const std::wstring& path, const FileStamp& stamp) = 0;
};

inline constexpr std::wstring_view kUnfinishedSuffix = L".new";

/// Creates `relative` below `base` folder by folder; done when it is there in the end.
FileResult createFolders(FileSystem& files, const std::wstring& base, std::wstring_view relative);

/// Removes `folder` and all folders below it that hold no file; done when none of them is left.
FileResult removeEmptyFolders(FileSystem& files, const std::wstring& folder);

/// The part before the last backslash; empty when there is none.
std::wstring parentFolder(std::wstring_view path);
