// Carrying out the settings optimisation: ask, export, verify the export, change, read back.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "base/action_host.h"
#include "fixes/cleanup/backup_context.h"
#include "fixes/settings/settings_plan.h"

struct SettingsContext {
    Registry& registry;
    /// For the export: its files, its place, the clock and whether CorelDRAW runs.
    BackupContext backup;
    /// The key of all versions, below HKEY_CURRENT_USER.
    std::wstring corelKey = LR"(Software\Corel\CorelDRAW)";
};

/// Writes the keys of the changes, whole and with all below them, into `file` and reads it again.
/// Empty when the file is on the disk as it was written; otherwise the reason, and no file is
/// left.
std::wstring ExportKeys(const SettingsContext& context, const std::vector<SettingChange>& changes,
                        const std::wstring& file);

enum class ChangeOutcome { changed, changedMeanwhile, refused, notKept };

/// Changes one value that still is what the plan saw, and reads it back.
ChangeOutcome ApplyChange(Registry& registry, const SettingChange& change);

/// Looks, asks, and does all that.
void OptimizeSettings(const ActionHost& host, const SettingsContext& context);
