#include "fixes/cleanup/cleanup.h"

#include <algorithm>

#include "base/files/file_transfer.h"
#include "base/size_text.h"
#include "base/text.h"
#include "fixes/cleanup/backup_manifest.h"

namespace {

const std::wstring kPrefix = L"[Cleanup] ";

// One backup while it is being filled.
struct Filling {
    FileSystem& files;
    std::wstring folder;
    std::wstring lastParent;  // the folder of the backup that was made last
};

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

bool isShared(const PlannedItem& item) {
    return item.backupPath.starts_with(
        kCleanupRootNames[static_cast<std::size_t>(CleanupRoot::programData)]);
}

void account(CleanupReport& report, const PlannedItem& item, const FileResult& result) {
    CleanupReport::Kind& kind = report.kinds[static_cast<std::size_t>(item.kind)];
    switch (result.outcome) {
        case FileOutcome::done:
            ++kind.moved.files;
            kind.moved.bytes += item.stamp.size;
            return;
        case FileOutcome::inUse:
        case FileOutcome::changed:
            ++kind.inUse;
            return;
        case FileOutcome::missing:
            return;
        case FileOutcome::diskFull:
            report.isDiskFull = true;
            return;
        default:
            break;
    }
    if (result.outcome == FileOutcome::refused && isShared(item))
        ++kind.closed;
    else
        report.failures.push_back({item.path, result});
}

struct Sum {
    FilesTotal moved;
    std::uint64_t left = 0;
};

Sum sumOf(const CleanupReport& report) {
    Sum sum;
    sum.left = report.failures.size();
    for (const auto& kind : report.kinds) {
        sum.moved.files += kind.moved.files;
        sum.moved.bytes += kind.moved.bytes;
        sum.left += kind.inUse + kind.closed;
    }
    return sum;
}

std::wstring amountText(const FilesTotal& total) {
    return fileCountText(total.files) + L" (" + sizeText(total.bytes) + L")";
}

std::wstring roomText(const FilesTotal& held) {
    std::wstring text = L"The disk gains no room until you delete the backup folder";
    if (held.files > 0) text += L"; older backups hold " + amountText(held);
    return text + L".";
}

void reportListing(const ActionHost& host, const BackupContext& context,
                   const CleanupListing& listing, bool isPhotoPaintRunning) {
    if (!context.tempDoubt.empty()) {
        const auto& temp = context.roots[static_cast<std::size_t>(CleanupRoot::temp)];
        host.appendLog(kPrefix + L"[WARN] " + (temp.empty() ? L"%TEMP%" : temp) +
                       L" is not taken for a folder of temporary files (" + context.tempDoubt +
                       L") and was not searched.");
    }
    if (isPhotoPaintRunning)
        host.appendLog(kPrefix + L"PHOTO-PAINT is running, its thumbnail cache was left alone.");
    for (const auto& folder : listing.unreadable)
        host.appendLog(kPrefix + L"[WARN] Could not look into " + folder.path + L": " +
                       reasonText(folder.reason));
    if (listing.closed > 0)
        host.appendLog(kPrefix + L"Folders of crash reports that Windows keeps closed, skipped: " +
                       decimalUnsigned(listing.closed));
}

void reportWhatStays(const ActionHost& host, const CleanupPlan& plan) {
    const std::size_t named = std::min(plan.drawings.size(), kMostNamed);
    for (std::size_t i = 0; i < named; ++i)
        host.appendLog(kPrefix + L"[WARN] looks like a drawing, left in place: " +
                       plan.drawings[i]);
    const std::wstring more = MoreText(plan.drawings.size());
    if (!more.empty()) host.appendLog(kPrefix + L"[WARN]" + more);
    if (plan.recent > 0)
        host.appendLog(kPrefix + L"Temporary files of the last 24 hours, left in place: " +
                       decimalUnsigned(plan.recent));
    if (plan.unreadable > 0)
        host.appendLog(kPrefix + L"Temporary files that cannot be read now, left in place: " +
                       decimalUnsigned(plan.unreadable));
}

}  // namespace

CleanupReport ExecuteCleanup(const ActionHost& host, const BackupContext& context,
                             const CleanupPlan& plan, const std::wstring& backupFolder) {
    FileSystem& files = context.files;
    CleanupReport report;
    report.start = CreateBackupFolder(files, context.homes, backupFolder);
    if (!report.start.isDone()) return report;
    report.start = files.writeNew(backupFolder + L"\\" + std::wstring(kManifestName),
                                  WriteManifest(plan.items, context.now().utc));

    Filling filling{files, backupFolder, L""};
    MovingStatus status(host, context, L"Cleaning up:", plan.total().files);
    bool isAnyMoved = false;
    for (const PlannedItem& item : plan.items) {
        if (!report.start.isDone() || report.isDiskFull) break;
        if (item.isFolder) {
            if (isAnyMoved) files.removeFolder(item.path);
            continue;
        }
        const FileResult result = moveFile(filling, item);
        isAnyMoved |= result.isDone();
        account(report, item, result);
        status.countOne();
    }
    if (!isAnyMoved) RemoveEmptiedBackup(files, backupFolder);
    return report;
}

std::wstring CleanupQuestion(const CleanupPlan& plan, const std::wstring& backupFolder,
                             const FilesTotal& held, bool isCorelRunning) {
    constexpr std::size_t kMostFolders = 6;
    std::wstring text =
        L"Move " + amountText(plan.total()) + L" of CorelDRAW into a backup folder?\n\n";
    for (std::size_t kind = 0; kind < kCacheKindCount; ++kind) {
        const FilesTotal& part = plan.totals[kind];
        if (part.files == 0) continue;
        text += std::wstring(kCacheKindNames[kind].title) + L": " + fileCountText(part.files) +
                L", " + sizeText(part.bytes) + L", in\n";
        const auto& folders = plan.folders[kind];
        for (std::size_t i = 0; i < std::min(folders.size(), kMostFolders); ++i)
            text += L"  " + folders[i] + L"\n";
        if (folders.size() > kMostFolders)
            text += L"  and " + decimalUnsigned(folders.size() - kMostFolders) + L" more folders\n";
    }
    text += L"\nBackup folder: " + backupFolder +
            L"\nDrawings, workspaces, macros, palettes and styles stay where they are. 'Restore' "
            L"brings everything back. " +
            roomText(held) + L"\n";
    if (isCorelRunning) {
        text +=
            L"\nCorelDRAW is running: files that it has in use are skipped. It is better to "
            L"close it first.\n";
    }
    return text + L"\nContinue?";
}

std::vector<std::wstring> CleanupLines(const CleanupReport& report,
                                       const std::wstring& backupFolder, const FilesTotal& held) {
    if (!report.start.isDone()) {
        return {kPrefix + L"Failed to make the backup in " + backupFolder + L": " +
                reasonText(report.start) + L". Nothing was moved."};
    }
    std::vector<std::wstring> lines;
    for (std::size_t i = 0; i < std::min(report.failures.size(), kMostNamed); ++i)
        lines.push_back(kPrefix + L"Failed to move " + report.failures[i].path + L": " +
                        reasonText(report.failures[i].reason));
    const std::wstring more = MoreText(report.failures.size());
    if (!more.empty()) lines.push_back(kPrefix + L"Failed to move" + more);
    for (std::size_t i = 0; i < kCacheKindCount; ++i) {
        const auto& kind = report.kinds[i];
        if (kind.moved.files + kind.inUse + kind.closed == 0) continue;
        std::wstring line = kPrefix + std::wstring(kCacheKindNames[i].title) + L": " +
                            fileCountText(kind.moved.files) + L" moved, " +
                            sizeText(kind.moved.bytes);
        if (kind.inUse > 0) line += L"; " + decimalUnsigned(kind.inUse) + L" in use, skipped";
        if (kind.closed > 0)
            line += L"; " + decimalUnsigned(kind.closed) + L" refused by Windows, skipped";
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
    lines.push_back(kPrefix + (isWhole ? L"[OK] " : L"[WARN] ") + amountText(sum.moved) +
                    L" moved to " + backupFolder +
                    (sum.left == 0 ? L"" : L"; " + decimalUnsigned(sum.left) + L" left in place"));
    lines.push_back(kPrefix + roomText(held));
    return lines;
}

void CleanUp(const ActionHost& host, const BackupContext& context) {
    if (context.homes.local.empty()) {
        host.appendLog(kPrefix + L"Failed: the folder for application data cannot be found.");
        return;
    }
    const RunningPrograms running = context.running();
    CleanupRoots roots = context.roots;
    if (!context.tempDoubt.empty()) roots[static_cast<std::size_t>(CleanupRoot::temp)].clear();
    const CleanupListing listing = ListCleanupItems(context.files, roots, running.photoPaint);
    const CleanupPlan plan = PlanCleanup(listing, roots, context.now().utc);
    reportListing(host, context, listing, running.photoPaint);
    reportWhatStays(host, plan);
    if (plan.total().files == 0) {
        const bool isAnyLeft = plan.drawings.size() + plan.recent + plan.unreadable > 0;
        host.appendLog(kPrefix +
                       (isAnyLeft ? L"Nothing else to clean up."
                                  : L"Nothing to clean up: no crash reports, temporary files or "
                                    L"thumbnail caches of CorelDRAW were found."));
        return;
    }
    std::vector<std::wstring> older =
        ListBackups(context.files, context.homes, kCleanupBackup).folders;
    for (std::wstring& folder : older)
        folder += L"\\" + std::wstring(kBackupFilesFolder);
    const FilesTotal held = TotalBelow(context.files, std::move(older));
    const std::wstring backup =
        NewBackupFolder(context.files, context.homes, kCleanupBackup, context.now().local);
    if (!host.confirm(CleanupQuestion(plan, backup, held, running.coreldraw),
                      L"Confirm Cache Cleanup", ConfirmStyle::warning)) {
        host.appendLog(kPrefix + L"Cancelled, nothing was moved.");
        return;
    }
    const CleanupReport report = ExecuteCleanup(host, context, plan, backup);
    for (std::wstring& line : CleanupLines(report, backup, held))
        host.appendLog(std::move(line));
}
