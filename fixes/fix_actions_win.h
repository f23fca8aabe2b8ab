// The buttons of the cleanup card and the settings card, on this user's folders and registry. Each
// works alone: while another program of this user is at it, it says so and does nothing.
#pragma once

#include "base/shell.h"

inline constexpr wchar_t kBackupsMutex[] = L"Local\\MireloBackups";

/// Moves CorelDRAW's crash reports, temporary files and thumbnail caches into a backup.
void OnCleanup(const Shell& shell);

/// Brings the newest backup back.
void OnRestore(const Shell& shell);

/// Sets CorelDRAW's undo levels to 30 and its welcome screen off.
void OnOptimizeSettings(const Shell& shell);

/// True while any process is named "CorelDRW.exe".
bool IsCorelRunning();
