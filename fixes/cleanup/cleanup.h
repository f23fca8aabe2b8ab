// The cache cleanup: CorelDRAW's crash reports, temporary files and thumbnail caches move into a
// dated backup folder.
#pragma once

#include <array>
#include <functional>
#include <string>
#include <vector>

#include "base/action_host.h"
#include "fixes/cleanup/cleanup_plan.h"

/// What the cleanup and its way back are given from outside.
struct BackupContext {
    FileSystem& files;
    CleanupRoots roots;
    std::wstring toolFolder;  // empty when it cannot be found
    std::function<bool()> isCorelRunning;
    struct Now {
        FileTicks utc;
        FileTicks local;
    };
    std::function<Now()> now;
};

struct FileFailure {
    std::wstring path;
    FileResult reason;
};

struct CleanupReport {
    /// Why nothing was begun; done when it was.
    FileResult start;
    struct Kind {
        KindTotal moved;
        std::uint64_t inUse = 0;  // or changed since the plan was made
    };
    std::array<Kind, kCacheKindCount> kinds;
    std::vector<FileFailure> failures;
    /// The files left are left because the disk of the backup is full.
    bool isDiskFull = false;
};

/// Carries out a plan with at least one file. The list of all that will move is on the disk before
/// the first move; a kill at any instant leaves every file in its place or in the backup, and
/// `RestoreBackup` finds it. A backup that got nothing is removed again.
CleanupReport ExecuteCleanup(const BackupContext& context, const CleanupPlan& plan,
                             const std::wstring& backupFolder);

/// One line per failure and per kind, then a summary with the folder.
std::vector<std::wstring> CleanupLines(const CleanupReport& report,
                                       const std::wstring& backupFolder);

void OnCleanup(const ActionHost& host, const BackupContext& context);
