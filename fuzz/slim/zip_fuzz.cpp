// Any bytes as an archive: every entry is measured as it extracts, and what is written again reads
// the same.
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

bool isWhole(const ZipEntry& entry) {
    return entry.method == zip::kStored || entry.data().size() == entry.compressedSize;
}

void checkExtraction(ZipArchive& archive) {
    for (const ZipEntry& entry : archive.entries()) {
        require(archive.hasEntry(entry.name), "an entry is found by its own name");
        const bool isFirst =
            std::none_of(archive.entries().data(), &entry, [&](const ZipEntry& earlier) {
                return ZipArchive::nameStartsWith(earlier.name, entry.name) &&
                       earlier.name.size() == entry.name.size();
            });
        if (!isFirst) continue;
        require(archive.extractEntry(entry.name).size() == extractedLength(entry),
                "an entry is as long as it was measured");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ZipArchive archive;
    const OpenResult result = archive.openFromBytes(Bytes(data, data + size));
    require(result.ok == archive.loaded() && result.ok == result.error.empty(), "one verdict");
    require(result.entryCount == archive.entryCount(), "one count");
    if (!result.ok) return 0;
    checkExtraction(archive);

    const Bytes image = repack(archive);
    ZipArchive again;
    require(again.openView(image).ok, "what was written opens");
    require(again.entryCount() == archive.entryCount(), "every entry is written");
    bool areAllWhole = true;
    for (std::size_t i = 0; i < archive.entryCount(); ++i) {
        const ZipEntry& entry = archive.entries()[i];
        require(!isWhole(entry) || isSame(entry, again.entries()[i]), "entries stay the same");
        areAllWhole = areAllWhole && isWhole(entry);
    }
    require(!areAllWhole || repack(again) == image, "writing again changes nothing");
    return 0;
}
