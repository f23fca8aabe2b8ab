// The list that lies in every backup: what was moved, from where, and how far it got. UTF-8 JSON,
// described for people in docs/backups.md. The JSON reader is the one of the cloud folder.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "fixes/cleanup/cleanup_plan.h"

inline constexpr std::wstring_view kManifestName = L"manifest.json";
/// The moved files lie below this folder of the backup.
inline constexpr std::wstring_view kBackupFilesFolder = L"files";

/// A note on the way, no more: which files are in the backup is decided by looking, because a
/// power cut can lose the last notes or the last moves.
enum class Progress : char {
    planned = 'P',
    moved = 'M',
    left = 'L',  // in use or refused; it stayed
    restored = 'R',
};

struct ManifestEntry {
    PlannedItem item;
    Progress progress = Progress::planned;
};

struct Manifest {
    FileTicks created = 0;
    std::vector<ManifestEntry> entries;
};

struct ManifestText {
    std::string json;
    /// Where each entry's progress stands in `json`: one byte, so that noting it cannot tear.
    std::vector<std::uint64_t> progressOffsets;
};

ManifestText WriteManifest(const Manifest& manifest);

struct ManifestReading {
    std::optional<Manifest> manifest;
    std::wstring error;
    /// As in `ManifestText`; empty when somebody laid the text out anew, and progress then cannot
    /// be noted.
    std::vector<std::uint64_t> progressOffsets;
};

/// Trusts nothing: every entry must be one that `PlanCleanup` could have made for `roots`, path,
/// place in the backup and kind agreeing with each other and with the table of locations, none
/// twice.
ManifestReading ReadManifest(std::string_view json, const CleanupRoots& roots);
