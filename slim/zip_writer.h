// Writes an edited archive back as a file image.
#pragma once

#include "base/bytes.h"
#include "slim/zip_archive.h"

/// The archive's entries without the deleted ones, as a plain single-disk archive: minimal headers,
/// no extra fields, comments, attributes or flags. Nothing is compressed or decoded; the data of an
/// entry are written as they stand, with a fresh CRC-32 and fresh sizes when it is stored. Empty
/// when the image would not fit into the format's 32-bit offsets, or into memory.
Bytes repack(const ZipArchive& archive);
