// Any bytes as a stream or as a palette: what is counted goes, and the proof finds nothing else
// lost.
#include "fuzz/require.h"
#include "slim/document.h"
#include "slim/palette.h"
#include "slim/proof.h"
#include "slim/riff_chunks.h"
#include "slim/zip_writer.h"
#include "tests/slim/document_builder.h"

namespace {

void requireNoLoss(const Bytes& before, const Bytes& after) {
    ZipArchive archive;
    archive.openFromBytes(zipImage({{"part", before, false}}));
    archive.replaceEntry(L"part", after);
    const Inventory inventory = takeInventory(archive);
    require(findLoss(inventory, {{L"part", before}}, repack(archive)).empty(), "nothing is lost");
}

void clear(const Bytes& before) {
    Bytes after = before;
    std::uint32_t count = 0;
    const bool isCleared = clearColorStyles(after, count);
    require(count == countColorStyles(before), "one count");
    if (isCleared && count != 0) return requireNoLoss(before, after);
    require(after == before, "without a list nothing changes");
}

void strip(const Bytes& before) {
    Bytes after = before;
    const int removed = stripRiffChunks(after, kViewChunk);
    require(removed == static_cast<int>(countRiffChunks(before, kViewChunk)), "what is counted");
    if (removed == 0) return require(after == before, "without a view nothing changes");
    Bytes repaired = after;
    require(normaliseRiffSizes(repaired), "what is left is a stream");
    // A stream whose sizes lie, or that has to be filled up, may be refused.
    if (repaired == after) requireNoLoss(before, after);
    after = repaired;
    require(normaliseRiffSizes(repaired) && repaired == after, "repairing twice is repairing once");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Bytes before(data, data + size);
    isRiffStream(before) ? strip(before) : clear(before);
    return 0;
}
