// Proof that slimming loses nothing: what is kept is recorded before an archive is packed again and
// found in the new image.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/bytes.h"
#include "slim/zip_archive.h"

/// An entry as it has to come out again.
struct KeptEntry {
    std::string rawName;
    std::uint16_t method = 0;
    std::uint16_t modTime = 0;
    std::uint16_t modDate = 0;
    std::uint32_t crc = 0;
    std::uint32_t uncompressedSize = 0;
    /// Of the stored bytes, compressed or not.
    std::uint32_t dataSize = 0;
    std::uint32_t dataCrc = 0;
    bool isRewritten = false;

    bool operator==(const KeptEntry&) const = default;
};

struct Inventory {
    std::vector<KeptEntry> kept;
    /// What makes the archive one that must not be packed again, for people to read; else empty.
    std::wstring defect;
    /// Entries share bytes: packed again, a small file could become a huge one.
    bool isShared = false;
};

/// Goes through an edited archive, by its image rather than by what was read from it. Sound is an
/// archive whose every header was read, in which no entry is encrypted, has ZIP64 sizes, lacks its
/// data or shares them, and in which every kept entry that can be decoded holds what its checksum
/// and its size say.
Inventory takeInventory(const ZipArchive& archive);

/// An entry that slimming made anew, and its contents before.
struct Rewritten {
    std::wstring name;
    Bytes before;
};

/// What the new image lacks of the old one's contents, for people to read; empty when nothing.
/// Every rewritten entry is read again: a stream holds the same chunks in the same order without
/// the views, a palette the same text with an empty list of styles.
std::wstring findLoss(const Inventory& before, const std::vector<Rewritten>& rewritten,
                      ByteView newImage);
