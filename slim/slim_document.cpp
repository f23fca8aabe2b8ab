#include "slim/slim_document.h"

#include <new>
#include <string_view>
#include <vector>

#include "slim/document.h"
#include "slim/failure_text.h"
#include "slim/palette.h"
#include "slim/proof.h"
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

constexpr wchar_t kSavedMeanwhile[] = L"the file was saved again in the meantime";
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
    /// Of the file as it was read first, and so of the backup.
    FileVersion version = {};
    std::vector<Rewritten> rewritten = {};

    bool fail(const wchar_t* message) {
        setFailureText(outcome.message, message);
        return false;
    }
};

std::wstring refusal(const std::wstring& detail) {
    return kVerificationFailed + detail + kVerificationEnd;
}

bool isClean(const DocumentAnalysis& analysis, const SlimOptions& options) {
    return (!options.stripViews || analysis.views < 1) &&
           (!options.clearColors || analysis.colorStyles < 1) &&
           (!options.removePreviews || analysis.previews < 1);
}

// True when there is something to slim; otherwise the outcome is complete.
bool analyse(Slimming& slimming, FileImage& image) {
    const DocumentAnalysis analysis = analyseDocument(slimming.path, slimming.files, image);
    slimming.version = image.version;
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
// The backup lies between the two readings, so the version that may be overwritten stays the first.
bool unpack(Slimming& slimming, ZipArchive& archive, FileImage image) {
    slimming.outOfMemory = kUnpackFailed;
    if (!slimming.files.readWhole(slimming.path, image)) return slimming.fail(kUnpackFailed);
    return archive.openFromBytes(std::move(image.bytes)).ok || slimming.fail(kUnpackFailed);
}

void removePreviews(ZipArchive& archive, SlimOutcome& outcome) {
    for (const std::wstring_view folder : kPreviewFolders)
        outcome.previewsRemoved += archive.removeEntriesUnder(folder);
}

void replace(ZipArchive& archive, std::wstring_view name, Bytes contents, Bytes before,
             Slimming& slimming) {
    slimming.rewritten.push_back({std::wstring(name), std::move(before)});
    archive.replaceEntry(name, std::move(contents));
}

// False when memory is short.
bool stripViews(ZipArchive& archive, Slimming& slimming) {
    for (const std::wstring_view name : kViewStreams) {
        Bytes before = archive.extractEntry(name);
        if (countRiffChunks(before, kViewChunk) == 0) continue;
        Bytes stream = before;
        const int removed = stripRiffChunks(stream, kViewChunk);
        if (removed <= 0 || !normaliseRiffSizes(stream)) return false;
        replace(archive, name, std::move(stream), std::move(before), slimming);
        slimming.outcome.viewsRemoved += static_cast<std::uint32_t>(removed);
    }
    return true;
}

void clearColors(ZipArchive& archive, Slimming& slimming) {
    for (const std::wstring_view name : kPaletteNames) {
        Bytes before = archive.extractEntry(name);
        if (before.empty()) continue;
        Bytes palette = before;
        std::uint32_t count = 0;
        if (!clearColorStyles(palette, count) || count == 0) return;
        replace(archive, name, std::move(palette), std::move(before), slimming);
        slimming.outcome.colorsCleared = count;
        return;
    }
}

bool edit(Slimming& slimming, ZipArchive& archive) {
    if (slimming.options.removePreviews) removePreviews(archive, slimming.outcome);
    if (slimming.options.stripViews && !stripViews(archive, slimming))
        return slimming.fail(kUnpackFailed);
    if (slimming.options.clearColors) clearColors(archive, slimming);
    return !archive.outOfMemory() || slimming.fail(kUnpackFailed);
}

// First what the image has to be, then that nothing is lost in it.
bool verify(Slimming& slimming, const Inventory& inventory, ByteView image) {
    std::wstring detail = inventory.defect;
    if (image.empty()) {
        if (detail.empty()) detail = L"archive too large to repack";
    } else {
        const StructureCheck check = checkStructure(image);
        if (!check.verified) {
            detail = check.detail;
        } else if (detail.empty()) {
            detail = findLoss(inventory, slimming.rewritten, image);
        }
    }
    return detail.empty() || slimming.fail(refusal(detail).c_str());
}

// The messages of a failure are ready before the file is touched.
void writeBack(Slimming& slimming, ByteView image) {
    SlimOutcome& outcome = slimming.outcome;
    std::wstring changed = refusal(kSavedMeanwhile);
    outcome.message = kWriteFailed + outcome.backupPath;
    switch (slimming.files.overwrite(slimming.path, image, slimming.version, outcome.backupPath)) {
        case WriteOutcome::written:
            outcome.message.clear();
            outcome.newSize = image.size();
            outcome.ok = true;
            return;
        case WriteOutcome::changed:
            outcome.message = std::move(changed);
            return;
        case WriteOutcome::failed:
            return;
    }
}

void slim(Slimming& slimming) {
    FileImage file;
    if (!analyse(slimming, file) || !backUp(slimming)) return;
    ZipArchive archive;
    if (!unpack(slimming, archive, std::move(file)) || !edit(slimming, archive)) return;
    slimming.outOfMemory =
        L"Repack verification failed: not enough memory. File not modified, backup kept.";
    const Inventory inventory = takeInventory(archive);
    const Bytes image = inventory.isShared ? Bytes() : repackInPlace(std::move(archive));
    if (verify(slimming, inventory, image)) writeBack(slimming, image);
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
