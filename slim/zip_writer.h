// Writes an edited archive back as a file image.
#pragma once

#include "base/bytes.h"
#include "slim/zip_archive.h"

/// The archive's entries without the deleted ones, as a plain single-disk archive: minimal headers,
/// no extra fields, comments, attributes or flags. Nothing is compressed or decoded; the data of an
/// entry are written as they stand, with a fresh CRC-32 and fresh sizes when it is stored. Empty
/// when the image would not fit into the format's 32-bit offsets, or into memory.
Bytes repack(const ZipArchive& archive);

/// The same inside the archive's own image, which `openFromBytes` took: data that stay move to
/// their new places instead of being copied out of it. Where entries do not stand in the image in
/// their order and apart from each other, that is `repack`.
Bytes repackInPlace(ZipArchive archive);
