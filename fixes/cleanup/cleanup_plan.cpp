#include "fixes/cleanup/cleanup_plan.h"

#include <algorithm>
#include <set>

#include "base/text.h"
#include "fixes/cleanup/user_work.h"

namespace {

const std::wstring& rootOf(const CleanupRoots& roots, const CleanupLocation& location) {
    return roots[static_cast<std::size_t>(location.root)];
}

std::wstring_view nameOf(std::wstring_view path) {
    return path.substr(path.rfind(L'\\') + 1);
}

Beginning beginningOf(FileSystem& files, const std::wstring& path, const ListedItem& item) {
    const bool isLookedAt = item.location->kind == CacheKind::temporaryFile &&
                            item.type == EntryType::file && item.stamp.size >= kBeginningBytes;
    if (!isLookedAt || IsUserWork(nameOf(path))) return Beginning::notLookedAt;
    const auto bytes = files.read(path, kBeginningBytes);
    if (!bytes) return Beginning::unreadable;
    return BeginsLikeDrawing(*bytes) ? Beginning::drawing : Beginning::other;
}

void noteUnreadable(const CleanupLocation& location, const std::wstring& folder,
                    const FileResult& result, CleanupListing& listing) {
    if (result.isDone() || result.outcome == FileOutcome::missing) return;
    if (location.root == CleanupRoot::programData && result.outcome == FileOutcome::refused)
        ++listing.closed;
    else
        listing.unreadable.push_back({folder, result});
}

void listLocation(FileSystem& files, const std::wstring& root, const CleanupLocation& location,
                  CleanupListing& listing) {
    std::vector<std::wstring> pending = {L""};
    while (!pending.empty()) {
        const std::wstring prefix = pending.back().empty() ? L"" : pending.back() + L"\\";
        const std::wstring folder = pending.back().empty() ? root : root + L"\\" + pending.back();
        pending.pop_back();
        FolderListing found = files.list(folder);
        noteUnreadable(location, folder, found.result, listing);
        for (FolderEntry& entry : found.entries) {
            std::wstring relative = prefix + entry.name;
            const bool isFolder = entry.type == EntryType::folder;
            if (isFolder && LeadsTo(location, relative)) pending.push_back(relative);
            if (!Covers(location, relative, isFolder)) continue;
            ListedItem item{&location, std::move(relative), entry.type, entry.stamp};
            item.beginning = beginningOf(files, root + L"\\" + item.relative, item);
            listing.items.push_back(std::move(item));
        }
    }
}

// Upper bounds for what a manifest says beside the paths.
constexpr std::size_t kFrameBytes = 256;
constexpr std::size_t kEntryBytes = 320;
// A path stands there twice, in UTF-8 and with its backslashes doubled.
constexpr std::size_t kPathBytesPerUnit = 8;

// A file that stays whatever the manifest has room for; `plan` learns why.
bool isLeft(const ListedItem& item, const std::wstring& path, FileTicks utcNow, CleanupPlan& plan) {
    const bool isDrawing =
        IsDrawingName(nameOf(item.relative)) || item.beginning == Beginning::drawing;
    if (isDrawing) plan.drawings.push_back(path);
    if (isDrawing || IsUserWork(nameOf(item.relative))) return true;
    if (item.location->kind != CacheKind::temporaryFile) return false;
    const bool isRecent = item.stamp.modified + kRecentTime > utcNow;
    plan.recent += isRecent ? 1 : 0;
    const bool isUnreadable = !isRecent && item.beginning == Beginning::unreadable;
    plan.unreadable += isUnreadable ? 1 : 0;
    return isRecent || isUnreadable;
}

void addFile(CleanupPlan& plan, const ListedItem& item, const std::wstring& root) {
    const CleanupLocation& location = *item.location;
    FilesTotal& total = plan.totals[static_cast<std::size_t>(location.kind)];
    ++total.files;
    total.bytes += item.stamp.size;
    const std::wstring below = FolderOf(location, item.relative);
    std::wstring folder = below.empty() ? root : root + L"\\" + below;
    auto& folders = plan.folders[static_cast<std::size_t>(location.kind)];
    if (std::ranges::find(folders, folder) == folders.end()) folders.push_back(std::move(folder));
}

}  // namespace

bool CanBeRecorded(std::wstring_view relative) {
    if (relative.find_first_of(L"/:*?\"<>|") != std::wstring_view::npos) return false;
    if (std::ranges::any_of(relative, [](wchar_t c) { return c < 0x20; })) return false;
    for (std::size_t start = 0; start <= relative.size();) {
        const std::size_t end = std::min(relative.find(L'\\', start), relative.size());
        const std::wstring_view name = relative.substr(start, end - start);
        // Explorer cannot handle the last two, which include "." and "..".
        if (name.empty() || name.back() == L'.' || name.back() == L' ') return false;
        start = end + 1;
    }
    // A file name is any run of 16-bit units; a lone surrogate has no UTF-8 form.
    return wideFromUtf8(utf8FromWide(relative)) == relative;
}

CleanupListing ListCleanupItems(FileSystem& files, const CleanupRoots& roots,
                                bool isPhotoPaintRunning) {
    CleanupListing listing;
    for (const CleanupLocation& location : kCleanupLocations) {
        const std::wstring& root = rootOf(roots, location);
        if (root.empty() || (location.isPhotoPaints && isPhotoPaintRunning)) continue;
        listLocation(files, root, location, listing);
    }
    return listing;
}

FilesTotal CleanupPlan::total() const {
    FilesTotal sum;
    for (const FilesTotal& kind : totals) {
        sum.files += kind.files;
        sum.bytes += kind.bytes;
    }
    return sum;
}

CleanupPlan PlanCleanup(const CleanupListing& listing, const CleanupRoots& roots, FileTicks utcNow,
                        std::size_t manifestBytes) {
    CleanupPlan plan;
    std::set<std::wstring> seen;
    std::size_t room = manifestBytes - std::min(manifestBytes, kFrameBytes);
    for (const ListedItem& item : listing.items) {
        if (item.type == EntryType::link || !CanBeRecorded(item.relative)) continue;
        const CleanupLocation& location = *item.location;
        const std::wstring& root = rootOf(roots, location);
        std::wstring path = root + L"\\" + item.relative;
        if (!seen.insert(lowered(path)).second) continue;
        const bool isFolder = item.type == EntryType::folder;
        if (!isFolder && isLeft(item, path, utcNow, plan)) continue;
        // Those that stay are told in full, also where no more can be taken.
        const std::size_t needed = kEntryBytes + kPathBytesPerUnit * path.size();
        if (needed > room) continue;
        room -= needed;
        if (!isFolder) addFile(plan, item, root);
        std::wstring backupPath(kCleanupRootNames[static_cast<std::size_t>(location.root)]);
        backupPath += L"\\" + item.relative;
        plan.items.push_back(
            {location.kind, isFolder, std::move(path), std::move(backupPath), item.stamp});
    }
    // A folder's path is longer than that of the folder around it.
    std::ranges::stable_sort(plan.items, [](const PlannedItem& left, const PlannedItem& right) {
        if (left.isFolder != right.isFolder) return right.isFolder;
        return left.isFolder && left.path.size() > right.path.size();
    });
    return plan;
}
