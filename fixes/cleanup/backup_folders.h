// The dated folders below the tool folder that hold what was moved or exported.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/files/file_system.h"

/// Kinds of backup by the beginning of their folder's name.
inline constexpr std::wstring_view kCleanupBackup = L"cleanup_";
inline constexpr std::wstring_view kSettingsBackup = L"settings_";

std::wstring BackupsFolder(const std::wstring& toolFolder);

/// The names of the backups of one kind, newest first: `<kind>2025-01-31_14-05-09`, with "-2" and
/// so on for a second one that would have the same name. Other names are not backups.
std::vector<std::wstring> ListBackups(FileSystem& files, const std::wstring& toolFolder,
                                      std::wstring_view kind);

/// The full path for a new backup: dated, not in use, and sorted after all that are there even if
/// the clock was set back.
std::wstring NewBackupFolder(FileSystem& files, const std::wstring& toolFolder,
                             std::wstring_view kind, FileTicks localNow);

/// Creates the tool folder where it is missing, and the backup anew.
FileResult CreateBackupFolder(FileSystem& files, const std::wstring& toolFolder,
                              const std::wstring& backup);
