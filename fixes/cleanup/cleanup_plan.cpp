#include "fixes/cleanup/cleanup_plan.h"

#include <algorithm>
#include <set>

#include "base/size_text.h"
#include "base/text.h"

namespace {

const std::wstring& rootOf(const CleanupRoots& roots, const CleanupLocation& location) {
    return roots[static_cast<std::size_t>(location.root)];
}

void listLocation(FileSystem& files, const std::wstring& root, const CleanupLocation& location,
                  CleanupListing& listing) {
    std::vector<std::wstring> pending = {L""};
    while (!pending.empty()) {
        const std::wstring prefix = pending.back().empty() ? L"" : pending.back() + L"\\";
        const std::wstring folder = pending.back().empty() ? root : root + L"\\" + pending.back();
        pending.pop_back();
        FolderListing found = files.list(folder);
        if (!found.result.isDone() && found.result.outcome != FileOutcome::missing)
            listing.unreadable.push_back({folder, found.result});
        for (FolderEntry& entry : found.entries) {
            std::wstring relative = prefix + entry.name;
            const bool isFolder = entry.type == EntryType::folder;
            if (isFolder && LeadsTo(location, relative)) pending.push_back(relative);
            if (!Covers(location, relative, isFolder)) continue;
            listing.items.push_back({&location, std::move(relative), entry.type, entry.stamp});
        }
    }
}

// Upper bounds for what a manifest says beside the paths.
constexpr std::size_t kFrameBytes = 256;
constexpr std::size_t kEntryBytes = 320;
// A path stands there twice, in UTF-8 and with its backslashes doubled.
constexpr std::size_t kPathBytesPerUnit = 8;

bool isTaken(const ListedItem& item) {
    if (item.type == EntryType::link || !CanBeRecorded(item.relative)) return false;
    const std::size_t slash = item.relative.rfind(L'\\');
    const std::wstring_view name = std::wstring_view(item.relative).substr(slash + 1);
    return item.type == EntryType::folder || !IsUserWork(name);
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

CleanupListing ListCleanupItems(FileSystem& files, const CleanupRoots& roots) {
    CleanupListing listing;
    for (const CleanupLocation& location : kCleanupLocations) {
        const std::wstring& root = rootOf(roots, location);
        if (!root.empty()) listLocation(files, root, location, listing);
    }
    return listing;
}

KindTotal CleanupPlan::total() const {
    KindTotal sum;
    for (const KindTotal& kind : totals) {
        sum.files += kind.files;
        sum.bytes += kind.bytes;
    }
    return sum;
}

CleanupPlan PlanCleanup(const CleanupListing& listing, const CleanupRoots& roots,
                        std::size_t manifestBytes) {
    CleanupPlan plan;
    std::set<std::wstring> seen;
    std::size_t room = manifestBytes - std::min(manifestBytes, kFrameBytes);
    for (const ListedItem& item : listing.items) {
        if (!isTaken(item)) continue;
        const CleanupLocation& location = *item.location;
        const auto rootIndex = static_cast<std::size_t>(location.root);
        std::wstring path = roots[rootIndex] + L"\\" + item.relative;
        if (!seen.insert(lowered(path)).second) continue;
        // The path stands there twice, in UTF-8 and with its backslashes doubled.
        const std::size_t needed = kEntryBytes + kPathBytesPerUnit * path.size();
        if (needed > room) break;
        room -= needed;
        const bool isFolder = item.type == EntryType::folder;
        if (!isFolder) {
            KindTotal& total = plan.totals[static_cast<std::size_t>(location.kind)];
            ++total.files;
            total.bytes += item.stamp.size;
        }
        plan.items.push_back({location.kind, isFolder, std::move(path),
                              std::wstring(kCleanupRootNames[rootIndex]) + L"\\" + item.relative,
                              item.stamp});
    }
    // A folder's path is longer than that of the folder around it.
    std::ranges::stable_sort(plan.items, [](const PlannedItem& left, const PlannedItem& right) {
        if (left.isFolder != right.isFolder) return right.isFolder;
        return left.isFolder && left.path.size() > right.path.size();
    });
    return plan;
}

std::wstring CleanupQuestion(const CleanupPlan& plan, const std::wstring& backupFolder,
                             bool isCorelRunning) {
    const KindTotal total = plan.total();
    std::wstring text = L"Move " + fileCountText(total.files) + L" (" + sizeText(total.bytes) +
                        L") of CorelDRAW into a backup folder?\n\n";
    for (std::size_t kind = 0; kind < kCacheKindCount; ++kind) {
        const KindTotal& part = plan.totals[kind];
        if (part.files == 0) continue;
        text += L"  " + std::wstring(kCacheKindNames[kind].title) + L": " +
                fileCountText(part.files) + L", " + sizeText(part.bytes) + L"\n";
    }
    text += L"\nBackup folder: " + backupFolder +
            L"\nDocuments, workspaces, macros, palettes and styles stay where they are. 'Restore' "
            L"brings everything back.\n";
    if (isCorelRunning) {
        text +=
            L"\nCorelDRAW is running: files that it has in use are skipped. It is better to "
            L"close it first.\n";
    }
    return text + L"\nContinue?";
}
