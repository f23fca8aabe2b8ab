// The cache cleanup: CorelDRAW's crash reports, temporary files and thumbnail caches move into a
// dated backup folder.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "fixes/cleanup/backup_context.h"
#include "fixes/cleanup/cleanup_plan.h"

struct CleanupReport {
    /// Why nothing was begun; done when it was.
    FileResult start;
    struct Kind {
        FilesTotal moved;
        std::uint64_t inUse = 0;   // or changed since the plan was made
        std::uint64_t closed = 0;  // shared by all users and refused by Windows
    };
    std::array<Kind, kCacheKindCount> kinds;
    std::vector<FileFailure> failures;
    /// The files left are left because the disk of the backup is full.
    bool isDiskFull = false;
};

/// Carries out a plan with at least one file. The list of all that will move is on the disk before
/// the first move; a kill at any instant leaves every file in its place or in the backup, and
/// `RestoreBackups` finds it. A backup that got nothing is removed again.
CleanupReport ExecuteCleanup(const ActionHost& host, const BackupContext& context,
                             const CleanupPlan& plan, const std::wstring& backupFolder);

/// The question before the plan is carried out. `held` is what older backups hold.
std::wstring CleanupQuestion(const CleanupPlan& plan, const std::wstring& backupFolder,
                             const FilesTotal& held, bool isCorelRunning);

/// One line per failure and per kind, then a summary with the folder.
std::vector<std::wstring> CleanupLines(const CleanupReport& report,
                                       const std::wstring& backupFolder, const FilesTotal& held);

/// Plans, asks and cleans up.
void CleanUp(const ActionHost& host, const BackupContext& context);
