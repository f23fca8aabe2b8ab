#include "fixes/cleanup/cleanup.h"

#include "base/files/file_transfer.h"
#include "base/size_text.h"
#include "base/text.h"
#include "fixes/cleanup/backup_folders.h"
#include "fixes/cleanup/backup_manifest.h"

namespace {

const std::wstring kPrefix = L"[Cleanup] ";

// One backup while it is being filled.
struct Filling {
    FileSystem& files;
    std::wstring folder;
    std::wstring manifestPath;
    std::wstring lastParent;  // the folder of the backup that was made last
};

Manifest manifestOf(const CleanupPlan& plan, FileTicks created) {
    Manifest manifest;
    manifest.created = created;
    for (const PlannedItem& item : plan.items)
        manifest.entries.push_back({item, Progress::planned});
    return manifest;
}

void removeBackup(const Filling& filling) {
    removeEmptyFolders(filling.files, filling.folder + L"\\" + std::wstring(kBackupFilesFolder));
    filling.files.remove(filling.manifestPath + std::wstring(kUnfinishedSuffix), nullptr);
    filling.files.remove(filling.manifestPath, nullptr);
    filling.files.removeFolder(filling.folder);
}

FileResult moveFile(Filling& filling, const PlannedItem& item) {
    const std::wstring relative = std::wstring(kBackupFilesFolder) + L"\\" + item.backupPath;
    const std::wstring parent = parentFolder(relative);
    if (parent != filling.lastParent) {
        const FileResult result = createFolders(filling.files, filling.folder, parent);
        if (!result.isDone()) return result;
        filling.lastParent = parent;
    }
    return transferFile(filling.files, item.path, filling.folder + L"\\" + relative, item.stamp);
}

void account(CleanupReport& report, const PlannedItem& item, const FileResult& result) {
    CleanupReport::Kind& kind = report.kinds[static_cast<std::size_t>(item.kind)];
    switch (result.outcome) {
        case FileOutcome::done:
            ++kind.moved.files;
            kind.moved.bytes += item.stamp.size;
            break;
        case FileOutcome::inUse:
        case FileOutcome::changed:
            ++kind.inUse;
            break;
        case FileOutcome::missing:
            break;
        case FileOutcome::diskFull:
            report.isDiskFull = true;
            break;
        default:
            report.failures.push_back({item.path, result});
            break;
    }
}

struct Sum {
    KindTotal moved;
    std::uint64_t left = 0;
};

Sum sumOf(const CleanupReport& report) {
    Sum sum;
    sum.left = report.failures.size();
    for (const auto& kind : report.kinds) {
        sum.moved.files += kind.moved.files;
        sum.moved.bytes += kind.moved.bytes;
        sum.left += kind.inUse;
    }
    return sum;
}

}  // namespace

CleanupReport ExecuteCleanup(const BackupContext& context, const CleanupPlan& plan,
                             const std::wstring& backupFolder) {
    FileSystem& files = context.files;
    Filling filling{files, backupFolder, backupFolder + L"\\" + std::wstring(kManifestName), L""};
    CleanupReport report;
    report.start = CreateBackupFolder(files, context.toolFolder, backupFolder);
    if (!report.start.isDone()) return report;
    const ManifestText manifest = WriteManifest(manifestOf(plan, context.now().utc));
    report.start = files.writeNew(filling.manifestPath, manifest.json);
    if (!report.start.isDone()) {
        removeBackup(filling);
        return report;
    }

    const auto note = [&](std::size_t entry, Progress progress) {
        files.overwriteByte(filling.manifestPath, manifest.progressOffsets[entry],
                            static_cast<char>(progress));
    };
    for (std::size_t i = 0; i < plan.items.size() && !report.isDiskFull; ++i) {
        const PlannedItem& item = plan.items[i];
        if (item.isFolder) {
            if (sumOf(report).moved.files == 0) break;
            const FileResult result = files.removeFolder(item.path);
            note(i, result.isDone() ? Progress::moved : Progress::left);
            continue;
        }
        const FileResult result = moveFile(filling, item);
        note(i, result.isDone() ? Progress::moved : Progress::left);
        account(report, item, result);
    }
    if (sumOf(report).moved.files == 0) removeBackup(filling);
    return report;
}

std::vector<std::wstring> CleanupLines(const CleanupReport& report,
                                       const std::wstring& backupFolder) {
    if (!report.start.isDone()) {
        return {kPrefix + L"Failed to make the backup in " + backupFolder + L": " +
                reasonText(report.start) + L". Nothing was moved."};
    }
    std::vector<std::wstring> lines;
    for (const FileFailure& failure : report.failures)
        lines.push_back(kPrefix + L"Failed to move " + failure.path + L": " +
                        reasonText(failure.reason));
    for (std::size_t i = 0; i < kCacheKindCount; ++i) {
        const auto& kind = report.kinds[i];
        if (kind.moved.files == 0 && kind.inUse == 0) continue;
        std::wstring line = kPrefix + std::wstring(kCacheKindNames[i].title) + L": " +
                            fileCountText(kind.moved.files) + L" moved, " +
                            sizeText(kind.moved.bytes);
        if (kind.inUse > 0) line += L"; " + decimalUnsigned(kind.inUse) + L" in use, skipped";
        lines.push_back(std::move(line));
    }
    if (report.isDiskFull) {
        lines.push_back(kPrefix +
                        L"Failed to go on: the disk of the backup folder is full. What was not "
                        L"moved yet stays where it is.");
    }
    const Sum sum = sumOf(report);
    if (sum.moved.files == 0) {
        lines.push_back(kPrefix + L"[WARN] Nothing was moved, so no backup was kept.");
        return lines;
    }
    const bool isWhole = sum.left == 0 && !report.isDiskFull;
    lines.push_back(kPrefix + (isWhole ? L"[OK] " : L"[WARN] ") + fileCountText(sum.moved.files) +
                    L" (" + sizeText(sum.moved.bytes) + L") moved to " + backupFolder +
                    (sum.left == 0 ? L"" : L"; " + decimalUnsigned(sum.left) + L" left in place"));
    return lines;
}

void OnCleanup(const ActionHost& host, const BackupContext& context) {
    if (context.toolFolder.empty()) {
        host.appendLog(kPrefix + L"Failed: the folder for application data cannot be found.");
        return;
    }
    const CleanupListing listing = ListCleanupItems(context.files, context.roots);
    for (const auto& folder : listing.unreadable)
        host.appendLog(kPrefix + L"[WARN] Could not look into " + folder.path + L": " +
                       reasonText(folder.reason));
    const CleanupPlan plan = PlanCleanup(listing, context.roots);
    if (plan.total().files == 0) {
        host.appendLog(kPrefix +
                       L"Nothing to clean up: no crash reports, temporary files or thumbnail "
                       L"caches of CorelDRAW were found.");
        return;
    }
    const std::wstring backup =
        NewBackupFolder(context.files, context.toolFolder, kCleanupBackup, context.now().local);
    if (!host.confirm(CleanupQuestion(plan, backup, context.isCorelRunning()),
                      L"Confirm Cache Cleanup", ConfirmStyle::warning)) {
        host.appendLog(kPrefix + L"Cancelled, nothing was moved.");
        return;
    }
    for (std::wstring& line : CleanupLines(ExecuteCleanup(context, plan, backup), backup))
        host.appendLog(std::move(line));
}
