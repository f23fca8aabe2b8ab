// The buttons of the cleanup card and the settings card, on this user's folders and registry.
#pragma once

#include "base/shell.h"

/// Moves CorelDRAW's crash reports, temporary files and thumbnail caches into a backup.
void OnCleanup(const Shell& shell);

/// Brings the newest backup back.
void OnRestore(const Shell& shell);

/// Sets CorelDRAW's undo levels to 30 and its welcome screen off.
void OnOptimizeSettings(const Shell& shell);

/// True while any process is named "CorelDRW.exe".
bool IsCorelRunning();
