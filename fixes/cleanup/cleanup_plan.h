// What a cleanup would move, worked out before anybody is asked. The plan that is shown is the plan
// that is carried out.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "base/files/file_system.h"
#include "fixes/cleanup/cleanup_locations.h"

struct ListedItem {
    const CleanupLocation* location = nullptr;
    std::wstring relative;  // from the location's root
    EntryType type = EntryType::file;
    FileStamp stamp;
};

struct CleanupListing {
    std::vector<ListedItem> items;
    /// Folders of the table that could not be read, with the reason.
    struct Unreadable {
        std::wstring path;
        FileResult reason;
    };
    std::vector<Unreadable> unreadable;
};

/// Walks the table's locations and nothing else. A link is listed and not entered.
CleanupListing ListCleanupItems(FileSystem& files, const CleanupRoots& roots);

struct PlannedItem {
    CacheKind kind = CacheKind::crashReport;
    bool isFolder = false;
    std::wstring path;        // where it is
    std::wstring backupPath;  // where it goes: a root's name and the path from that root
    FileStamp stamp;
};

struct KindTotal {
    std::uint64_t files = 0;
    std::uint64_t bytes = 0;
};

struct CleanupPlan {
    /// Files in the order of the table, then the folders that may be removed once they are empty,
    /// inner ones first.
    std::vector<PlannedItem> items;
    std::array<KindTotal, kCacheKindCount> totals;

    [[nodiscard]] KindTotal total() const;
};

/// A manifest beyond this size is neither made nor read; it holds some hundred thousand files.
inline constexpr std::size_t kLargestManifest = 64 << 20;

/// True for a path from a root that names exactly one thing below it, that the manifest can hold,
/// and that people can put back by hand.
bool CanBeRecorded(std::wstring_view relative);

/// Leaves out links, people's own work, what cannot be recorded, and what a row before has taken
/// already. The manifest of a plan has at most `manifestBytes`; what is beyond waits for the next
/// cleanup.
CleanupPlan PlanCleanup(const CleanupListing& listing, const CleanupRoots& roots,
                        std::size_t manifestBytes = kLargestManifest);

/// The question before the plan is carried out.
std::wstring CleanupQuestion(const CleanupPlan& plan, const std::wstring& backupFolder,
                             bool isCorelRunning);
