// The list that lies in every cleanup backup: what was moved, and from where. UTF-8 JSON, described
// for people in docs/backups.md. It is whole and on the disk before the first move and never
// changes; which files have moved is decided by looking.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "fixes/cleanup/cleanup_plan.h"

std::string WriteManifest(const std::vector<PlannedItem>& items, FileTicks created);

struct Manifest {
    std::vector<PlannedItem> items;
    /// Entries that name no file of a backup, or one that an entry before has named.
    std::size_t damaged = 0;
    /// Why there is no list at all; empty when there is one.
    std::wstring error;
};

/// Each entry stands for itself: its place in the backup is a variable's name and a plain path, and
/// the path it had ends in that same path. The table of locations has no say, as it differs between
/// versions.
Manifest ReadManifest(std::string_view json);

/// The one of today's roots that a path lies below, the innermost; null when it lies below none.
const std::wstring* RootAbove(std::wstring_view path, const CleanupRoots& roots);
