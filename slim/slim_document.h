// Slims one document: analysis, backup, edit, repack, verification, write back.
#pragma once

#include <cstdint>
#include <string>

#include "slim/slim_files.h"

struct SlimOptions {
    /// Remove the saved views from root.dat and data2.dat.
    bool stripViews = true;
    /// Empty the palette's list of colour styles.
    bool clearColors = true;
    /// Remove the preview and thumbnail images.
    bool removePreviews = true;
    /// Copy the file to a backup beside it before it is changed.
    bool makeBackup = true;
};

struct SlimOutcome {
    /// Slimmed and written, or already clean.
    bool ok = false;
    /// What failed and what became of the file, when not ok.
    std::wstring message;
    std::uint64_t originalSize = 0;
    /// Equal to `originalSize` for a file that was already clean.
    std::uint64_t newSize = 0;
    std::uint32_t viewsRemoved = 0;
    std::uint32_t colorsCleared = 0;
    std::uint32_t previewsRemoved = 0;
    /// The backup's full path; empty when none was made.
    std::wstring backupPath;
    /// Nothing that the options select was there; the file was not touched.
    bool alreadyClean = false;
};

/// Slims the document at `path`. The file is opened for writing only when its backup is on the disk
/// and the new contents are verified in memory; until then every failure leaves it as it was. A
/// failure during the write leaves the backup, whose path the message tells.
SlimOutcome slimDocument(const std::wstring& path, const SlimOptions& options,
                         const SlimFiles& files);
