#include "slim/slim_document.h"

#include <new>
#include <string_view>

#include "slim/document.h"
#include "slim/failure_text.h"
#include "slim/palette.h"
#include "slim/riff_chunks.h"
#include "slim/zip_archive.h"
#include "slim/zip_writer.h"

namespace {

constexpr std::wstring_view kViewStreams[] = {
    L"content/root.dat",
    L"Content/root.dat",
    L"content/data2.dat",
    L"Content/data2.dat",
};

constexpr wchar_t kLegacy[] =
    L"Legacy format file (riffData, X5 and earlier): not supported yet. Re-save as X6+ in CDR "
    L"first";
constexpr wchar_t kBackupFailed[] =
    L"Backup failed (target not writable), aborted. File not modified.";
constexpr wchar_t kUnpackFailed[] = L"Failed to unpack ZIP container";

constexpr wchar_t kVerificationFailed[] = L"Repack verification failed: ";
constexpr wchar_t kVerificationEnd[] = L". File not modified, backup kept.";
constexpr wchar_t kWriteFailed[] = L"Failed to write back (file may be held by CDR). Backup kept: ";

// What the steps share. A step that fails says why in the outcome's message and returns false;
// `outOfMemory` is what the current step has to say when memory runs out in it.
struct Slimming {
    const std::wstring& path;
    const SlimOptions& options;
    const SlimFiles& files;
    SlimOutcome outcome;
    const wchar_t* outOfMemory = L"Cannot read file";

    bool fail(const wchar_t* message) {
        setFailureText(outcome.message, message);
        return false;
    }
};

bool isClean(const DocumentAnalysis& analysis, const SlimOptions& options) {
    return (!options.stripViews || analysis.views < 1) &&
           (!options.clearColors || analysis.colorStyles < 1) &&
           (!options.removePreviews || analysis.previews < 1);
}

// True when there is something to slim; otherwise the outcome is complete.
bool analyse(Slimming& slimming, Bytes& buffer) {
    const DocumentAnalysis analysis = analyseDocument(slimming.path, slimming.files, buffer);
    if (!analysis.recognised) return slimming.fail(analysis.error.c_str());
    if (analysis.legacy) return slimming.fail(kLegacy);
    slimming.outcome.originalSize = analysis.fileSize;
    if (!isClean(analysis, slimming.options)) return true;
    slimming.outcome.ok = slimming.outcome.alreadyClean = true;
    slimming.outcome.newSize = analysis.fileSize;
    return false;
}

bool backUp(Slimming& slimming) {
    if (!slimming.options.makeBackup) return true;
    slimming.outOfMemory = kBackupFailed;
    std::wstring backup = slimming.path + L"." + slimming.files.localTimestamp() + L".mirelobak";
    if (!slimming.files.copyFile(slimming.path, backup)) return slimming.fail(kBackupFailed);
    slimming.outcome.backupPath = std::move(backup);
    return true;
}

// Reads into the memory that the analysis has left: getting as much anew costs as much as reading.
bool unpack(Slimming& slimming, ZipArchive& archive, Bytes buffer) {
    slimming.outOfMemory = kUnpackFailed;
    return (slimming.files.readWhole(slimming.path, buffer) &&
            archive.openFromBytes(std::move(buffer)).ok) ||
           slimming.fail(kUnpackFailed);
}

void removePreviews(ZipArchive& archive, SlimOutcome& outcome) {
    for (const std::wstring_view folder : kPreviewFolders)
        outcome.previewsRemoved += archive.removeEntriesUnder(folder);
}

// False when memory is short.
bool stripViews(ZipArchive& archive, SlimOutcome& outcome) {
    for (const std::wstring_view name : kViewStreams) {
        Bytes stream = archive.extractEntry(name);
        const int removed = stripRiffChunks(stream, kViewChunk);
        if (removed == kStripOutOfMemory) return false;
        if (removed <= 0) continue;
        if (!normaliseRiffSizes(stream)) return false;
        archive.replaceEntry(name, std::move(stream));
        outcome.viewsRemoved += static_cast<std::uint32_t>(removed);
    }
    return true;
}

void clearColors(ZipArchive& archive, SlimOutcome& outcome) {
    for (const std::wstring_view name : kPaletteNames) {
        Bytes palette = archive.extractEntry(name);
        if (palette.empty()) continue;
        std::uint32_t count = 0;
        if (!clearColorStyles(palette, count) || count == 0) return;
        archive.replaceEntry(name, std::move(palette));
        outcome.colorsCleared = count;
        return;
    }
}

bool edit(Slimming& slimming, ZipArchive& archive) {
    if (slimming.options.removePreviews) removePreviews(archive, slimming.outcome);
    if (slimming.options.stripViews && !stripViews(archive, slimming.outcome))
        return slimming.fail(kUnpackFailed);
    if (slimming.options.clearColors) clearColors(archive, slimming.outcome);
    return !archive.outOfMemory() || slimming.fail(kUnpackFailed);
}

bool verify(Slimming& slimming, ByteView image) {
    const StructureCheck check = image.empty() ? StructureCheck() : checkStructure(image);
    if (check.verified) return true;
    const std::wstring detail = image.empty() ? L"archive too large to repack" : check.detail;
    slimming.outcome.message = kVerificationFailed + detail + kVerificationEnd;
    return false;
}

// The message of a failure is ready before the file is touched.
void writeBack(Slimming& slimming, ByteView image) {
    SlimOutcome& outcome = slimming.outcome;
    outcome.message = kWriteFailed + outcome.backupPath;
    if (!slimming.files.writeWhole(slimming.path, image)) return;
    outcome.message.clear();
    outcome.newSize = image.size();
    outcome.ok = true;
}

void slim(Slimming& slimming) {
    Bytes image;
    {
        Bytes buffer;
        if (!analyse(slimming, buffer) || !backUp(slimming)) return;
        ZipArchive archive;
        if (!unpack(slimming, archive, std::move(buffer)) || !edit(slimming, archive)) return;
        slimming.outOfMemory =
            L"Repack verification failed: not enough memory. File not modified, backup kept.";
        image = repack(archive);
    }
    if (verify(slimming, image)) writeBack(slimming, image);
}

}  // namespace

SlimOutcome slimDocument(const std::wstring& path, const SlimOptions& options,
                         const SlimFiles& files) {
    Slimming slimming{path, options, files, {}};
    try {
        slim(slimming);
    } catch (const std::bad_alloc&) {
        slimming.fail(slimming.outOfMemory);
    }
    return std::move(slimming.outcome);
}
