// What a cleanup would move, worked out before anybody is asked. The plan that is shown is the plan
// that is carried out.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "base/files/file_system.h"
#include "fixes/cleanup/cleanup_locations.h"

/// What the first bytes of a file say; only temporary files are looked into.
enum class Beginning : std::uint8_t { notLookedAt, unreadable, drawing, other };

struct ListedItem {
    const CleanupLocation* location = nullptr;
    std::wstring relative;  // from the location's root
    EntryType type = EntryType::file;
    FileStamp stamp;
    Beginning beginning = Beginning::notLookedAt;
};

struct CleanupListing {
    std::vector<ListedItem> items;
    /// Folders of the table that could not be read, with the reason.
    std::vector<FileFailure> unreadable;
    /// Folders shared by all users that Windows keeps closed.
    std::uint64_t closed = 0;
};

/// Walks the table's locations and nothing else. A link is listed and not entered.
CleanupListing ListCleanupItems(FileSystem& files, const CleanupRoots& roots,
                                bool isPhotoPaintRunning);

struct PlannedItem {
    CacheKind kind = CacheKind::crashReport;
    bool isFolder = false;
    std::wstring path;        // where it is
    std::wstring backupPath;  // where it goes: a root's name and the path from that root
    FileStamp stamp;
};

struct CleanupPlan {
    /// Files in the order of the table, then the folders that may be removed once they are empty,
    /// inner ones first.
    std::vector<PlannedItem> items;
    std::array<FilesTotal, kCacheKindCount> totals;
    /// The folders that the files come from, each once.
    std::array<std::vector<std::wstring>, kCacheKindCount> folders;

    /// What looks like a document, left in place: after a crash it can be the last copy of it.
    std::vector<std::wstring> drawings;
    /// Temporary files that stay, since somebody may be at work with them.
    std::uint64_t recent = 0;
    std::uint64_t unreadable = 0;

    [[nodiscard]] FilesTotal total() const;
};

/// A manifest beyond this size is neither made nor read; it holds some hundred thousand files.
inline constexpr std::size_t kLargestManifest = 64 << 20;

/// True for a path from a root that names exactly one thing below it, that the manifest can hold,
/// and that people can put back by hand.
bool CanBeRecorded(std::wstring_view relative);

/// Temporary files stay for this long after they were written.
inline constexpr FileTicks kRecentTime = FileTicks{24} * 3600 * kTicksPerSecond;

/// Leaves out links, people's own work, temporary files that are drawings or recent, what cannot be
/// recorded, and what a row before has taken already. The manifest of a plan has at most
/// `manifestBytes`; what is beyond waits for the next cleanup.
CleanupPlan PlanCleanup(const CleanupListing& listing, const CleanupRoots& roots, FileTicks utcNow,
                        std::size_t manifestBytes = kLargestManifest);
