// The way back from a cleanup: the files of the newest backup return to their places.
#pragma once

#include <string>
#include <vector>

#include "fixes/cleanup/backup_context.h"

/// What became of one backup.
struct BackupReport {
    std::wstring folder;
    /// Why its list cannot be used; empty when it can.
    std::wstring damage;
    std::size_t damagedEntries = 0;
    FilesTotal restored;
    /// Files that stay because there is something else in their place now.
    std::vector<std::wstring> kept;
    std::vector<FileFailure> failures;
    /// Files that stay because their place is below none of today's folders.
    struct Misplaced {
        std::wstring path;
        std::wstring stored;
    };
    std::vector<Misplaced> misplaced;
    bool isRemoved = false;
};

struct RestoreReport {
    /// Those that were tried, newest first, without those that held nothing. Only the last one can
    /// have given something.
    std::vector<BackupReport> backups;
    /// Backups folders that are there and cannot be listed.
    std::vector<FileFailure> unreadable;
};

/// Restores the newest backup that has something to give; it may have been filled or restored in
/// part, by a run that was killed. Each file is judged for itself. What is in place is never
/// replaced nor removed; names, contents, times and attributes come back as they were. Backups that
/// hold nothing are removed on the way.
RestoreReport RestoreBackups(const ActionHost& host, const BackupContext& context);

std::vector<std::wstring> RestoreLines(const RestoreReport& report);

/// Restores and reports, without a question.
void BringBack(const ActionHost& host, const BackupContext& context);
