#include "fixes/cleanup/restore.h"

#include <algorithm>

#include "base/files/file_transfer.h"
#include "base/size_text.h"
#include "base/text.h"
#include "fixes/cleanup/backup_folders.h"
#include "fixes/cleanup/backup_manifest.h"

namespace {

const std::wstring kPrefix = L"[Restore] ";

struct Backup {
    std::wstring folder;
    std::wstring manifestPath;
    std::wstring filesFolder;
    ManifestReading reading;
};

Backup openBackup(const BackupContext& context, const std::wstring& name) {
    Backup backup;
    backup.folder = BackupsFolder(context.toolFolder) + L"\\" + name;
    backup.manifestPath = backup.folder + L"\\" + std::wstring(kManifestName);
    backup.filesFolder = backup.folder + L"\\" + std::wstring(kBackupFilesFolder);
    const auto json = context.files.read(backup.manifestPath, kLargestManifest);
    if (json)
        backup.reading = ReadManifest(*json, context.roots);
    else
        backup.reading.error = L"it cannot be read";
    return backup;
}

// A cleanup that was killed before its list was whole has moved nothing yet.
bool neverBegan(FileSystem& files, const Backup& backup) {
    return files.inspect(backup.manifestPath).result.outcome == FileOutcome::missing &&
           files.inspect(backup.filesFolder).result.outcome == FileOutcome::missing;
}

void note(FileSystem& files, const Backup& backup, std::size_t entry) {
    const auto& offsets = backup.reading.progressOffsets;
    if (entry < offsets.size())
        files.overwriteByte(backup.manifestPath, offsets[entry],
                            static_cast<char>(Progress::restored));
}

// Removes a backup as far as it is empty; the list goes last, so that a kill leaves a backup that
// can be read or one that never began.
bool removeEmptied(FileSystem& files, const Backup& backup) {
    if (!removeEmptyFolders(files, backup.filesFolder).isDone()) return false;
    files.remove(backup.manifestPath + std::wstring(kUnfinishedSuffix), nullptr);
    files.remove(backup.manifestPath, nullptr);
    return files.removeFolder(backup.folder).isDone();
}

const std::wstring& rootOfEntry(const PlannedItem& item, const CleanupRoots& roots) {
    const std::wstring_view name =
        std::wstring_view(item.backupPath).substr(0, item.backupPath.find(L'\\'));
    const auto found = std::ranges::find(kCleanupRootNames, name);
    return roots[static_cast<std::size_t>(found - kCleanupRootNames.begin())];
}

FileResult createParents(const BackupContext& context, const PlannedItem& item) {
    const std::wstring& root = rootOfEntry(item, context.roots);
    const std::wstring parent = parentFolder(item.path);
    if (parent.size() <= root.size()) return {};
    return createFolders(context.files, root, std::wstring_view(parent).substr(root.size() + 1));
}

// True when the file is in its place already and the backup has a second copy: a move across
// volumes that was killed before its last step.
bool isHomeAlready(FileSystem& files, const PlannedItem& item, const Inspection& place,
                   const std::wstring& stored) {
    return place.isFile() && place.stamp.size == item.stamp.size &&
           place.stamp.modified == item.stamp.modified && files.compare(item.path, stored).isDone();
}

bool restoreFile(const BackupContext& context, const Backup& backup, const PlannedItem& item,
                 RestoreReport& report) {
    FileSystem& files = context.files;
    const std::wstring stored = backup.filesFolder + L"\\" + item.backupPath;
    settleTransfer(files, item.path, stored, item.stamp);
    settleTransfer(files, stored, item.path, item.stamp);
    const Inspection held = files.inspect(stored);
    if (held.result.outcome == FileOutcome::missing) return false;

    const auto fail = [&](const FileResult& reason) {
        report.failures.push_back({item.path, reason});
        return false;
    };
    if (!held.result.isDone()) return fail(held.result);
    if (!held.isFile() || held.stamp.size != item.stamp.size) return fail({FileOutcome::changed});
    const Inspection place = files.inspect(item.path);
    if (isHomeAlready(files, item, place, stored)) {
        // A removal that was cut short may have lifted its read-only attribute.
        if (place.stamp != item.stamp) files.setStamp(item.path, item.stamp);
        const FileResult removed = files.remove(stored, &held.stamp);
        return removed.isDone() || fail(removed);
    }
    if (place.result.isDone()) {
        report.kept.push_back(item.path);
        return false;
    }
    if (place.result.outcome != FileOutcome::missing) return fail(place.result);

    FileResult result = createParents(context, item);
    if (result.isDone()) result = transferFile(files, stored, item.path, held.stamp);
    if (!result.isDone()) return fail(result);
    if (held.stamp != item.stamp) files.setStamp(item.path, item.stamp);
    ++report.restored.files;
    report.restored.bytes += item.stamp.size;
    return true;
}

// Folders come back outer ones first; the times of all whose contents moved are set once nothing
// more moves inside them.
void restoreFolders(const BackupContext& context, const Backup& backup, bool hasMoved) {
    FileSystem& files = context.files;
    const auto& entries = backup.reading.manifest->entries;
    std::vector<std::size_t> unlike;
    for (std::size_t i = entries.size(); i-- > 0;) {
        const PlannedItem& item = entries[i].item;
        if (!item.isFolder || entries[i].progress == Progress::restored) continue;
        const bool isGone = files.inspect(item.path).result.outcome == FileOutcome::missing;
        if (isGone && createParents(context, item).isDone()) files.createFolder(item.path);
        if (isGone || hasMoved) unlike.push_back(i);
    }
    for (; !unlike.empty(); unlike.pop_back()) {
        const PlannedItem& item = entries[unlike.back()].item;
        if (files.setStamp(item.path, item.stamp).isDone()) note(files, backup, unlike.back());
    }
}

// One backup whose list is sound.
void restoreBackup(const BackupContext& context, const Backup& backup, RestoreReport& report) {
    const auto& entries = backup.reading.manifest->entries;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (entries[i].item.isFolder) continue;
        if (restoreFile(context, backup, entries[i].item, report)) note(context.files, backup, i);
    }
    const bool hasMoved =
        report.restored.files > 0 || std::ranges::any_of(entries, [](const ManifestEntry& entry) {
            return entry.progress != Progress::planned;
        });
    restoreFolders(context, backup, hasMoved);
    report.isEmptied = removeEmptied(context.files, backup);
}

}  // namespace

RestoreReport RestoreNewestBackup(const BackupContext& context) {
    for (const std::wstring& name :
         ListBackups(context.files, context.toolFolder, kCleanupBackup)) {
        const Backup backup = openBackup(context, name);
        RestoreReport report;
        report.backupFolder = backup.folder;
        if (neverBegan(context.files, backup)) {
            removeEmptied(context.files, backup);
            continue;
        }
        report.damage = backup.reading.error;
        if (!backup.reading.manifest) return report;
        restoreBackup(context, backup, report);
        if (report.restored.files > 0 || !report.kept.empty() || !report.failures.empty())
            return report;
    }
    return {};
}

std::vector<std::wstring> RestoreLines(const RestoreReport& report) {
    if (report.backupFolder.empty()) return {kPrefix + L"There is no backup to restore."};
    if (!report.damage.empty()) {
        return {kPrefix + L"Failed: the list of the backup " + report.backupFolder +
                L" is damaged (" + report.damage +
                L"). Nothing was touched; the files are in its folder 'files'."};
    }
    std::vector<std::wstring> lines;
    for (const FileFailure& failure : report.failures)
        lines.push_back(kPrefix + L"Failed to put back " + failure.path + L": " +
                        reasonText(failure.reason));
    for (const std::wstring& path : report.kept)
        lines.push_back(kPrefix + L"[WARN] Stays in the backup, something newer is in its place: " +
                        path);
    const std::size_t left = report.kept.size() + report.failures.size();
    std::wstring line = kPrefix + (left == 0 ? L"[OK] " : L"[WARN] ") +
                        fileCountText(report.restored.files) + L" (" +
                        sizeText(report.restored.bytes) + L") put back from " + report.backupFolder;
    if (left > 0)
        line += L"; " + fileCountText(left) + (left == 1 ? L" stays there" : L" stay there");
    else if (report.isEmptied)
        line += L"; the empty backup was removed";
    else
        line += L"; the folder holds files that are not in its list and was kept";
    lines.push_back(std::move(line));
    return lines;
}

void OnRestore(const ActionHost& host, const BackupContext& context) {
    if (context.toolFolder.empty()) {
        host.appendLog(kPrefix + L"Failed: the folder for application data cannot be found.");
        return;
    }
    for (std::wstring& line : RestoreLines(RestoreNewestBackup(context)))
        host.appendLog(std::move(line));
}
