// The way back from a cleanup: the files of the newest backup return to their places.
#pragma once

#include <string>
#include <vector>

#include "fixes/cleanup/cleanup.h"

struct RestoreReport {
    /// Empty when there is no backup to restore.
    std::wstring backupFolder;
    /// Why the backup was not touched: its list cannot be trusted. Empty when it can.
    std::wstring damage;
    KindTotal restored;
    /// Files that stay in the backup because there is something else in their place now.
    std::vector<std::wstring> kept;
    std::vector<FileFailure> failures;
    /// The backup is gone; otherwise files lie in it still.
    bool isEmptied = false;
};

/// Restores the newest backup that still holds something. It may have been filled or restored in
/// part, by a run that was killed. What is in place and newer is never replaced; names, contents,
/// times and attributes come back as they were. Backups that hold nothing are removed on the way.
RestoreReport RestoreNewestBackup(const BackupContext& context);

std::vector<std::wstring> RestoreLines(const RestoreReport& report);

void OnRestore(const ActionHost& host, const BackupContext& context);
