// What a CorelDRAW document holds and whether it is sound.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/bytes.h"
#include "slim/slim_files.h"

/// Names of the palette and folders of the previews, in the order in which they are tried.
inline constexpr std::array<std::wstring_view, 4> kPaletteNames = {
    L"color/docPalette.xml",
    L"Color/docPalette.xml",
    L"color/docpalette.xml",
    L"docPalette.xml",
};
inline constexpr std::array<std::wstring_view, 2> kPreviewFolders = {
    L"previews/",
    L"metadata/thumbnails/",
};

/// The identifier of a saved view among the chunks of root.dat and data2.dat.
inline constexpr std::string_view kViewChunk = "bmrk";

/// What can be slimmed. Sizes are in bytes, of decoded contents but for `fileSize`.
struct DocumentAnalysis {
    /// A ZIP container or, then with `legacy`, a bare RIFF file of X5 and earlier. All counts of a
    /// legacy file are 0.
    bool recognised = false;
    /// Why not, when not recognised.
    std::wstring error;
    bool legacy = false;
    std::uint32_t entryCount = 0;
    std::uint32_t colorStyles = 0;
    std::uint32_t views = 0;
    std::uint32_t previews = 0;
    std::uint64_t previewBytes = 0;
    std::uint64_t rootDatSize = 0;
    std::uint64_t data2DatSize = 0;
    std::uint64_t fileSize = 0;
};

/// Reads a document and counts what slimming would remove.
DocumentAnalysis analyseDocument(const std::wstring& path, const SlimFiles& files);

/// The same for who will read the file again: it stays in `image`, whose memory is used anew. The
/// previews are not decoded, and `previewBytes` is 0.
DocumentAnalysis analyseDocument(const std::wstring& path, const SlimFiles& files,
                                 FileImage& image);

/// The verdict on an archive image. Missing metadata or a missing root.dat never fail it.
struct StructureCheck {
    bool verified = false;
    bool zipOk = false;
    /// riffData.cdr, or root.dat standing in for it.
    bool riffDataFound = false;
    bool rootDatFound = false;
    bool metadataFound = false;
    bool riffHeaderValid = false;
    bool riffSizeOk = false;
    /// What failed, or how it was verified.
    std::wstring detail;
    /// A remark on missing optional entries.
    std::wstring note;
};

StructureCheck checkStructure(ByteView archiveBytes);
