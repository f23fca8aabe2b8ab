// The dated folders that hold what was moved or exported.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/files/file_system.h"

/// Kinds of backup by the beginning of their folder's name.
inline constexpr std::wstring_view kCleanupBackup = L"cleanup_";
inline constexpr std::wstring_view kSettingsBackup = L"settings_";

/// The tool's folders below which backups lie; absolute, empty when Windows does not name them.
struct BackupHomes {
    /// New ones: on this computer, where a rename reaches them and nothing roams.
    std::wstring local;
    /// Where earlier versions kept theirs.
    std::wstring roaming;
};

std::wstring BackupsFolder(const std::wstring& home);

/// What lies in a cleanup's backup: the list, and below a folder the files.
inline constexpr std::wstring_view kManifestName = L"manifest.json";
inline constexpr std::wstring_view kBackupFilesFolder = L"files";

struct BackupListing {
    /// Full paths, newest first, of both homes together.
    std::vector<std::wstring> folders;
    /// Backups folders that are there and cannot be listed.
    std::vector<FileFailure> unreadable;
};

/// The backups of one kind: `<kind>2025-01-31_14-05-09`, with "-2" and so on for a second one that
/// would have the same name. Other names are not backups.
BackupListing ListBackups(FileSystem& files, const BackupHomes& homes, std::wstring_view kind);

/// The full path for a new backup: dated, not in use, and sorted after all that are there even if
/// the clock was set back.
std::wstring NewBackupFolder(FileSystem& files, const BackupHomes& homes, std::wstring_view kind,
                             FileTicks localNow);

/// Creates the local home where it is missing, and the backup anew.
FileResult CreateBackupFolder(FileSystem& files, const BackupHomes& homes,
                              const std::wstring& backup);

/// What all files below some folders come to. Links are not entered.
FilesTotal TotalBelow(FileSystem& files, std::vector<std::wstring> folders);

/// Removes what is left of a backup that holds no file: its list only after its files folder, so
/// that a kill leaves a backup that can be read or one that never began. False when it holds any.
bool RemoveEmptiedBackup(FileSystem& files, const std::wstring& backupFolder);
