// Any bytes as a document in memory: opened, slimmed, written, opened again. Whatever happens the
// former contents are there, and what is written holds every other entry as it was.
#include "fuzz/require.h"
#include "fuzz/slim/riff_model.h"
#include "slim/document.h"
#include "slim/slim_document.h"
#include "slim/zip_archive.h"
#include "tests/slim/fake_files.h"

namespace {

bool isPreview(const ZipEntry& entry) {
    return ZipArchive::nameStartsWith(entry.name, L"previews/") ||
           ZipArchive::nameStartsWith(entry.name, L"metadata/thumbnails/");
}

bool isSame(const ZipEntry& left, const ZipEntry& right) {
    const auto bytes = [](const ZipEntry& entry) {
        return Bytes(entry.data().begin(), entry.data().end());
    };
    return left.rawName == right.rawName && left.method == right.method &&
           left.modTime == right.modTime && left.modDate == right.modDate &&
           left.crc32 == right.crc32 && left.uncompressedSize == right.uncompressedSize &&
           bytes(left) == bytes(right);
}

void requireNothingLost(const Bytes& document, const Bytes& after, const SlimOutcome& outcome) {
    ZipArchive before, slimmed;
    require(before.openView(document).ok && slimmed.openView(after).ok, "both can be opened");
    int views = 0;
    std::vector<std::wstring> rewritten = {L"color/docPalette.xml", L"docPalette.xml"};
    for (const wchar_t* name : {L"content/root.dat", L"content/data2.dat"}) {
        Bytes stream = before.extractEntry(name);
        const int removed = modelStrip(stream, "bmrk");
        if (removed <= 0) continue;
        modelNormalise(stream);
        require(slimmed.extractEntry(name) == stream, "a stream is as the model has it");
        rewritten.push_back(name);
        views += removed;
    }
    require(static_cast<int>(outcome.viewsRemoved) == views, "the model removes as many views");

    std::size_t next = 0;
    for (const ZipEntry& entry : before.entries()) {
        if (isPreview(entry)) continue;
        require(next < slimmed.entryCount(), "every entry is there");
        const ZipEntry& now = slimmed.entries()[next++];
        bool isRewritten = false;
        for (const std::wstring& name : rewritten)
            isRewritten = isRewritten || (entry.name.size() == name.size() &&
                                          ZipArchive::nameStartsWith(entry.name, name));
        require(isRewritten || isSame(entry, now), "other entries are as they were");
    }
    require(next == slimmed.entryCount(), "no entry was added");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::wstring path = L"plan.cdr";
    const Bytes document(data, data + size);
    FakeFiles files{{{path, document}}};
    const SlimOutcome outcome = slimDocument(path, {}, files.seam());
    const Bytes& after = files.contents[path];
    if (!outcome.ok || outcome.alreadyClean) {
        require(after == document, "what is not slimmed stays as it is");
        return 0;
    }
    require(files.contents[outcome.backupPath] == document, "the backup is the former document");
    require(checkStructure(after).verified, "what was written is sound");
    require(analyseDocument(path, files.seam()).previews == 0, "no previews are left");
    requireNothingLost(document, after, outcome);
    return 0;
}
