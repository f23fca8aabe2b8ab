// The buttons of the cleanup card and the settings card, on this user's folders and registry. Each
// works alone: while another program of this user is at it, it says so and does nothing.
#pragma once

#include "base/action_host.h"

inline constexpr wchar_t kBackupsMutex[] = L"Local\\MireloBackups";

/// Moves CorelDRAW's crash reports, temporary files and thumbnail caches into a backup.
void OnCleanup(const ActionHost& host);

/// Brings the newest backup back.
void OnRestore(const ActionHost& host);

/// Sets CorelDRAW's undo levels to 30 and its welcome screen off.
void OnOptimizeSettings(const ActionHost& host);

/// True while any process is named "CorelDRW.exe".
bool IsCorelRunning();
