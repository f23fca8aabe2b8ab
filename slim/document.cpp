#include "slim/document.h"

#include <cstring>
#include <new>

#include "slim/failure_text.h"
#include "slim/palette.h"
#include "slim/riff_chunks.h"
#include "slim/zip_archive.h"

namespace {

template <std::size_t count>
using Names = std::array<std::wstring_view, count>;

constexpr Names<2> kRootDatNames = {L"content/root.dat", L"Content/root.dat"};
constexpr Names<2> kData2DatNames = {L"content/data2.dat", L"Content/data2.dat"};
constexpr Names<4> kRiffDataNames = {L"content/riffData.cdr", L"Content/riffData.cdr",
                                     L"content/riffdata.cdr", L"riffData.cdr"};
constexpr Names<3> kCheckedRootDatNames = {L"content/root.dat", L"Content/root.dat", L"root.dat"};

// The contents of the first name that has any.
template <std::size_t count>
ByteView firstContents(ZipArchive& archive, const Names<count>& names, Bytes& scratch) {
    for (const std::wstring_view name : names) {
        const ByteView contents = archive.viewEntry(name, scratch);
        if (!contents.empty()) return contents;
    }
    return {};
}

// Previews that share their bytes with each other can claim any amount of work for a small file.
// What lies beyond the file's own length is counted by its claimed size, undecoded.
void measurePreviews(const ZipArchive& archive, DocumentAnalysis& analysis) {
    std::uint64_t decoded = 0;
    for (const std::wstring_view folder : kPreviewFolders) {
        for (const ZipEntry& entry : archive.entries()) {
            if (!ZipArchive::nameStartsWith(entry.name, folder)) continue;
            decoded += entry.data().size();
            const bool isOverlapping = decoded > analysis.fileSize;
            analysis.previewBytes +=
                isOverlapping ? entry.uncompressedSize : extractedLength(entry);
        }
    }
}

std::uint32_t countPreviews(const ZipArchive& archive) {
    std::uint32_t count = 0;
    for (const std::wstring_view folder : kPreviewFolders) {
        for (const ZipEntry& entry : archive.entries())
            count += ZipArchive::nameStartsWith(entry.name, folder) ? 1U : 0U;
    }
    return count;
}

void analyseArchive(ZipArchive& archive, DocumentAnalysis& analysis) {
    analysis.recognised = true;
    analysis.entryCount = static_cast<std::uint32_t>(archive.entryCount());
    analysis.previews = countPreviews(archive);

    Bytes scratch;
    analysis.colorStyles = countColorStyles(firstContents(archive, kPaletteNames, scratch));
    const ByteView root = firstContents(archive, kRootDatNames, scratch);
    analysis.rootDatSize = root.size();
    analysis.views = countRiffChunks(root, kViewChunk);
    const ByteView data2 = firstContents(archive, kData2DatNames, scratch);
    analysis.data2DatSize = data2.size();
    analysis.views += countRiffChunks(data2, kViewChunk);
}

bool startsWithRiff(ByteView bytes) {
    return bytes.size() >= 4 && std::memcmp(bytes.data(), "RIFF", 4) == 0;
}

DocumentAnalysis unrecognised(const wchar_t* error) {
    DocumentAnalysis analysis;
    setFailureText(analysis.error, error);
    return analysis;
}

constexpr wchar_t kCannotRead[] = L"Cannot read file";

// Sets everything up to the stream that stands for the drawing; empty when there is none.
ByteView findDrawing(ZipArchive& archive, StructureCheck& check, Bytes& riffScratch,
                     Bytes& rootScratch) {
    ByteView stream = firstContents(archive, kRiffDataNames, riffScratch);
    const ByteView root = firstContents(archive, kCheckedRootDatNames, rootScratch);
    check.rootDatFound = !root.empty();
    check.metadataFound =
        archive.hasEntry(L"metadata.xml") || archive.hasEntry(L"META-INF/metadata.xml");
    if (stream.empty() && isRiffStream(root)) stream = root;
    check.riffDataFound = !stream.empty();
    return stream;
}

// One remark only: the one on the metadata, if there are two.
void setNote(StructureCheck& check) {
    if (!check.metadataFound) {
        setFailureText(check.note, L"metadata.xml not found");
    } else if (!check.rootDatFound) {
        setFailureText(check.note, L"No separate root.dat (RIFF data lives inside riffData.cdr)");
    }
}

void checkStream(ByteView stream, StructureCheck& check) {
    check.riffHeaderValid = isRiffStream(stream);
    if (!check.riffHeaderValid) return setFailureText(check.detail, L"Invalid RIFF header");
    const std::size_t expected = stream.size() - 8;
    const std::size_t stated = readU32(stream, 4);
    check.riffSizeOk = stated <= expected;
    if (!check.riffSizeOk) return setFailureText(check.detail, L"RIFF size field abnormal");
    check.verified = true;
    setFailureText(check.detail,
                   stated == expected ? L"Verified" : L"Verified (RIFF tail has padding)");
}

DocumentAnalysis analyseImage(ByteView image, bool isMeasured) {
    DocumentAnalysis analysis;
    analysis.fileSize = image.size();
    ZipArchive archive;
    const bool isArchive = archive.openView(image).ok;
    if (isArchive) analyseArchive(archive, analysis);
    if (isArchive && isMeasured) measurePreviews(archive, analysis);
    if (archive.outOfMemory()) return unrecognised(kCannotRead);
    if (isArchive) return analysis;

    if (!startsWithRiff(image))
        return unrecognised(L"Not a recognizable CDR file (neither ZIP container nor legacy RIFF)");
    analysis.recognised = analysis.legacy = true;
    return analysis;
}

}  // namespace

DocumentAnalysis analyseDocument(const std::wstring& path, const SlimFiles& files) {
    FileImage image;
    if (!files.readWhole(path, image)) return unrecognised(kCannotRead);
    return analyseImage(image.bytes, true);
}

DocumentAnalysis analyseDocument(const std::wstring& path, const SlimFiles& files,
                                 FileImage& image) {
    if (!files.readWhole(path, image)) return unrecognised(kCannotRead);
    return analyseImage(image.bytes, false);
}

StructureCheck checkStructure(ByteView archiveBytes) {
    StructureCheck check;
    ZipArchive archive;
    Bytes riffScratch;
    Bytes rootScratch;
    ByteView stream;
    check.zipOk = archive.openView(archiveBytes).ok;
    if (check.zipOk) stream = findDrawing(archive, check, riffScratch, rootScratch);
    if (archive.outOfMemory()) {
        check = {};
        setFailureText(check.detail, L"not enough memory");
    } else if (!check.zipOk) {
        setFailureText(check.detail, L"ZIP structure damaged");
    } else if (!check.riffDataFound) {
        setFailureText(check.detail, L"riffData.cdr not found");
    } else {
        setNote(check);
        checkStream(stream, check);
    }
    return check;
}
