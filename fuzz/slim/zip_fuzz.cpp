// Any bytes as an archive: an entry is measured as it extracts, and what is written again reads the
// same.
#include <algorithm>

#include "fuzz/require.h"
#include "slim/zip_archive.h"
#include "slim/zip_format.h"
#include "slim/zip_writer.h"

namespace {

bool isSame(const ZipEntry& left, const ZipEntry& right) {
    const ByteView a = left.data();
    const ByteView b = right.data();
    return left.rawName == right.rawName && left.method == right.method &&
           left.modTime == right.modTime && left.modDate == right.modDate &&
           std::equal(a.begin(), a.end(), b.begin(), b.end());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ZipArchive archive;
    const OpenResult result = archive.openFromBytes(Bytes(data, data + size));
    require(result.ok == archive.loaded() && result.ok == result.error.empty(), "one verdict");
    require(result.entryCount == archive.entryCount(), "one count");
    if (!result.ok) return 0;
    const ZipEntry& first = archive.entries()[0];
    require(archive.extractEntry(first.name).size() == extractedLength(first),
            "an entry is as long as it was measured");

    const Bytes image = repack(archive);
    ZipArchive again;
    require(again.openView(image).ok, "what was written opens");
    require(again.entryCount() == archive.entryCount(), "every entry is written");
    bool areAllWhole = true;
    for (std::size_t i = 0; i < archive.entryCount(); ++i) {
        const ZipEntry& entry = archive.entries()[i];
        require(archive.hasEntry(entry.name), "an entry is found by its own name");
        const bool isWhole =
            entry.method == zip::kStored || entry.data().size() == entry.compressedSize;
        require(!isWhole || isSame(entry, again.entries()[i]), "entries stay the same");
        areAllWhole = areAllWhole && isWhole;
    }
    require(!areAllWhole || repack(again) == image, "writing again changes nothing");
    return 0;
}
