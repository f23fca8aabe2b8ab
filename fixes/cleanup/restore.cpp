#include "fixes/cleanup/restore.h"

#include <algorithm>
#include <map>

#include "base/files/file_transfer.h"
#include "base/size_text.h"
#include "base/text.h"
#include "fixes/cleanup/backup_manifest.h"

namespace {

const std::wstring kRestore = L"[Restore] ";

// The entries of the folder that was asked about last: neighbours in the list lie in one folder.
class FolderView {
  public:
    explicit FolderView(FileSystem& files) : files_(files) {}

    /// Looks at the folder that a path lies in.
    const FileResult& look(const std::wstring& path) {
        const std::wstring folder = parentFolder(path);
        if (!isFresh_ || folder != folder_) {
            FolderListing listing = files_.list(folder);
            folder_ = folder;
            result_ = listing.result;
            entries_.clear();
            for (FolderEntry& entry : listing.entries)
                entries_[lowered(entry.name)] = std::move(entry);
            isFresh_ = true;
        }
        return result_;
    }
    /// What stands at the path in the folder looked at; null when nothing does.
    [[nodiscard]] const FolderEntry* find(const std::wstring& path) const {
        const auto found = entries_.find(lowered(path.substr(path.rfind(L'\\') + 1)));
        return found == entries_.end() ? nullptr : &found->second;
    }
    void forget() { isFresh_ = false; }

  private:
    FileSystem& files_;
    std::wstring folder_;
    FileResult result_;
    std::map<std::wstring, FolderEntry> entries_;
    bool isFresh_ = false;
};

class Restoring {
  public:
    Restoring(const BackupContext& context, std::wstring folder)
        : context_(context), files_(context.files), stored_(files_), places_(files_) {
        report_.folder = std::move(folder);
    }
    BackupReport run(const ActionHost& host);

  private:
    void restoreFile(const PlannedItem& item);
    void putBack(const PlannedItem& item, const std::wstring& stored, const FileStamp& held);
    bool isHomeAlready(const PlannedItem& item, const FolderEntry& place,
                       const std::wstring& stored);
    void restoreFolders(const std::vector<PlannedItem>& items, bool hasMoved);
    FileResult createParents(const PlannedItem& item);
    void settle(const PlannedItem& item, const std::wstring& stored);
    void fail(const PlannedItem& item, const FileResult& reason) {
        report_.failures.push_back({item.path, reason});
    }
    [[nodiscard]] std::wstring storedPath(const PlannedItem& item) const {
        return filesFolder() + L"\\" + item.backupPath;
    }
    [[nodiscard]] std::wstring filesFolder() const {
        return report_.folder + L"\\" + std::wstring(kBackupFilesFolder);
    }
    [[nodiscard]] bool exists(const std::wstring& path) const {
        return files_.inspect(path).result.outcome != FileOutcome::missing;
    }

    const BackupContext& context_;
    FileSystem& files_;
    FolderView stored_, places_;
    BackupReport report_;
};

FileResult Restoring::createParents(const PlannedItem& item) {
    const std::wstring* root = RootAbove(item.path, context_.roots);
    const std::wstring parent = parentFolder(item.path);
    if (root == nullptr) return {FileOutcome::outside};
    if (parent.size() <= root->size()) return {};
    return createFolders(files_, *root, std::wstring_view(parent).substr(root->size() + 1));
}

// What a kill left under names on the way, in either direction.
void Restoring::settle(const PlannedItem& item, const std::wstring& stored) {
    if (stored_.find(partOf(stored)) == nullptr && places_.find(partOf(item.path)) == nullptr)
        return;
    settleTransfer(files_, item.path, stored, item.stamp);
    settleTransfer(files_, stored, item.path, item.stamp);
    stored_.forget();
    places_.forget();
    stored_.look(stored);
    places_.look(item.path);
}

// True when the file is in its place and the backup has a second copy: a move across volumes that
// was killed before its last step.
bool Restoring::isHomeAlready(const PlannedItem& item, const FolderEntry& place,
                              const std::wstring& stored) {
    return place.type == EntryType::file && place.stamp.size == item.stamp.size &&
           place.stamp.modified == item.stamp.modified &&
           files_.compare(item.path, stored).isDone();
}

void Restoring::putBack(const PlannedItem& item, const std::wstring& stored,
                        const FileStamp& held) {
    FileResult result;
    if (places_.look(item.path).outcome == FileOutcome::missing) {
        result = createParents(item);
        places_.forget();
    }
    if (result.isDone()) result = transferFile(files_, stored, item.path, held);
    if (!result.isDone()) return fail(item, result);
    if (held != item.stamp) files_.setStamp(item.path, item.stamp);
    ++report_.restored.files;
    report_.restored.bytes += item.stamp.size;
}

void Restoring::restoreFile(const PlannedItem& item) {
    const std::wstring stored = storedPath(item);
    stored_.look(stored);
    if (RootAbove(item.path, context_.roots) == nullptr) {
        if (stored_.find(stored) != nullptr) report_.misplaced.push_back({item.path, stored});
        return;
    }
    places_.look(item.path);
    settle(item, stored);
    const FileResult& seen = stored_.look(stored);
    if (!seen.isDone() && seen.outcome != FileOutcome::missing) return fail(item, seen);
    const FolderEntry* held = stored_.find(stored);
    if (held == nullptr) return;
    if (held->type != EntryType::file || held->stamp.size != item.stamp.size)
        return fail(item, {FileOutcome::changed});

    const FileResult& around = places_.look(item.path);
    if (!around.isDone() && around.outcome != FileOutcome::missing) return fail(item, around);
    const FolderEntry* place = places_.find(item.path);
    if (place == nullptr) return putBack(item, stored, held->stamp);
    if (!isHomeAlready(item, *place, stored)) {
        report_.kept.push_back(item.path);
        return;
    }
    // A removal that was cut short may have lifted its read-only attribute.
    if (place->stamp != item.stamp) files_.setStamp(item.path, item.stamp);
    const FileResult removed = files_.remove(stored, &held->stamp);
    if (!removed.isDone()) fail(item, removed);
}

// Folders come back outer ones first; the times of all whose contents moved are set once nothing
// more moves inside them.
void Restoring::restoreFolders(const std::vector<PlannedItem>& items, bool hasMoved) {
    std::vector<const PlannedItem*> unlike;
    for (auto place = items.rbegin(); place != items.rend(); ++place) {
        const PlannedItem& item = *place;
        if (!item.isFolder || RootAbove(item.path, context_.roots) == nullptr) continue;
        const bool isGone = !exists(item.path);
        if (isGone && createParents(item).isDone()) files_.createFolder(item.path);
        if (isGone || hasMoved) unlike.push_back(&item);
    }
    for (; !unlike.empty(); unlike.pop_back())
        files_.setStamp(unlike.back()->path, unlike.back()->stamp);
}

BackupReport Restoring::run(const ActionHost& host) {
    const std::wstring list = report_.folder + L"\\" + std::wstring(kManifestName);
    const auto json = files_.read(list, kLargestManifest);
    const bool wasFilled = exists(filesFolder());
    // A cleanup that was killed before its list was whole has moved nothing yet.
    if (!json && !wasFilled && !exists(list)) {
        report_.isRemoved = RemoveEmptiedBackup(files_, report_.folder);
        return std::move(report_);
    }
    const Manifest manifest = json ? ReadManifest(*json) : Manifest{{}, 0, L"it cannot be read"};
    report_.damage = manifest.error;
    report_.damagedEntries = manifest.damaged;
    if (!report_.damage.empty()) return std::move(report_);

    const auto isFile = [](const PlannedItem& item) { return !item.isFolder; };
    const auto total = std::ranges::count_if(manifest.items, isFile);
    MovingStatus status(host, context_, L"Restoring:", static_cast<std::uint64_t>(total));
    for (const PlannedItem& item : manifest.items) {
        if (item.isFolder) continue;
        restoreFile(item);
        status.countOne();
    }
    const bool isAllHome =
        report_.kept.empty() && report_.failures.empty() && report_.misplaced.empty();
    restoreFolders(manifest.items, report_.restored.files > 0 || (wasFilled && isAllHome));
    report_.isRemoved = RemoveEmptiedBackup(files_, report_.folder);
    return std::move(report_);
}

std::wstring stayText(const BackupReport& report) {
    const std::size_t left = report.kept.size() + report.failures.size() + report.misplaced.size();
    std::wstring text;
    if (left > 0) text = fileCountText(left) + (left == 1 ? L" stays there" : L" stay there");
    if (report.damagedEntries > 0) {
        text += text.empty() ? L"" : L", ";
        text += L"damaged entries of its list: " + decimalUnsigned(report.damagedEntries);
    }
    if (text.empty() && !report.isRemoved)
        text = L"the folder holds files that are not in its list and was kept";
    return text;
}

void addNamed(std::vector<std::wstring>& lines, const std::wstring& what, std::size_t count,
              const std::function<std::wstring(std::size_t)>& name) {
    for (std::size_t i = 0; i < std::min(count, kMostNamed); ++i)
        lines.push_back(kRestore + what + L" " + name(i));
    const std::wstring more = MoreText(count);
    if (!more.empty()) lines.push_back(kRestore + what + more);
}

void addLines(std::vector<std::wstring>& lines, const BackupReport& report) {
    if (!report.damage.empty()) {
        lines.push_back(kRestore + L"[WARN] Passed over " + report.folder +
                        L": its list is damaged (" + report.damage +
                        L"). Nothing in it was touched; the files are in its folder 'files'.");
        return;
    }
    addNamed(lines, L"Failed to put back", report.failures.size(), [&](std::size_t i) {
        return report.failures[i].path + L": " + reasonText(report.failures[i].reason);
    });
    addNamed(lines, L"[WARN] Stays in the backup, something else is in its place:",
             report.kept.size(), [&](std::size_t i) { return report.kept[i]; });
    addNamed(lines, L"[WARN] Stays in the backup, its folder is none of today's:",
             report.misplaced.size(), [&](std::size_t i) {
                 return report.misplaced[i].path + L", kept as " + report.misplaced[i].stored;
             });
    const std::wstring stays = stayText(report);
    if (report.restored.files == 0) {
        lines.push_back(kRestore + L"[WARN] Passed over " + report.folder +
                        L", it can give nothing more: " + stays + L".");
        return;
    }
    lines.push_back(kRestore + (stays.empty() || report.isRemoved ? L"[OK] " : L"[WARN] ") +
                    fileCountText(report.restored.files) + L" (" + sizeText(report.restored.bytes) +
                    L") put back from " + report.folder + L"; " +
                    (stays.empty() ? L"the empty backup was removed" : stays));
}

}  // namespace

RestoreReport RestoreBackups(const ActionHost& host, const BackupContext& context) {
    RestoreReport report;
    BackupListing listing = ListBackups(context.files, context.homes, kCleanupBackup);
    report.unreadable = std::move(listing.unreadable);
    for (std::wstring& folder : listing.folders) {
        BackupReport backup = Restoring(context, std::move(folder)).run(host);
        const bool isFound = backup.restored.files > 0;
        if (isFound || !backup.isRemoved) report.backups.push_back(std::move(backup));
        if (isFound) break;
    }
    return report;
}

std::vector<std::wstring> RestoreLines(const RestoreReport& report) {
    std::vector<std::wstring> lines;
    for (const FileFailure& folder : report.unreadable)
        lines.push_back(kRestore + L"Failed to look for backups in " + folder.path + L": " +
                        reasonText(folder.reason));
    for (const BackupReport& backup : report.backups)
        addLines(lines, backup);
    if (lines.empty())
        lines.push_back(kRestore + L"There is no backup to restore.");
    else if (report.backups.empty() || report.backups.back().restored.files == 0)
        lines.push_back(kRestore + L"[WARN] Nothing was put back.");
    return lines;
}

void BringBack(const ActionHost& host, const BackupContext& context) {
    if (context.homes.local.empty()) {
        host.appendLog(kRestore + L"Failed: the folder for application data cannot be found.");
        return;
    }
    for (std::wstring& line : RestoreLines(RestoreBackups(host, context)))
        host.appendLog(std::move(line));
}
