// Any bytes as a document in memory: measured, written again, slimmed. Whatever happens the former
// contents are there; that nothing else is lost slimming itself has the proof say.
#include "fuzz/require.h"
#include "slim/document.h"
#include "slim/slim_document.h"
#include "slim/zip_archive.h"
#include "slim/zip_writer.h"
#include "tests/slim/fake_files.h"

namespace {

void readAndWrite(const Bytes& document) {
    ZipArchive archive, again;
    if (!archive.openView(document).ok) return;
    const ZipEntry& first = archive.entries()[0];
    require(archive.extractEntry(first.name).size() == extractedLength(first),
            "an entry is as long as it was measured");
    const Bytes image = repack(archive);
    require(again.openView(image).ok && again.entryCount() == archive.entryCount(),
            "every entry is written");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::wstring path = L"plan.cdr";
    const Bytes document(data, data + size);
    readAndWrite(document);
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
    return 0;
}
