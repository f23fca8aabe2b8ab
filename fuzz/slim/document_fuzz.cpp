// Any bytes as a document in memory: opened, slimmed, written, opened again. The outcome agrees
// with the tests' model, and whatever happens the former contents are there.
#include "fuzz/require.h"
#include "slim/document.h"
#include "slim/slim_document.h"
#include "tests/slim/fake_files.h"
#include "tests/slim/slim_model.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::wstring path = L"plan.cdr";
    const Bytes document(data, data + size);
    FakeFiles files{{{path, document}}};
    const SlimOutcome outcome = slimDocument(path, {}, files.seam());
    const ModelOutcome expected = modelSlim(document);
    const Bytes& after = files.contents[path];

    require(outcome.ok == (expected.state == "written" || expected.state == "clean"),
            "the model agrees on success");
    require(outcome.alreadyClean == (expected.state == "clean"), "the model agrees on cleanness");
    const bool isWritten = outcome.ok && !outcome.alreadyClean;
    require(after == (isWritten ? expected.image : document), "the model agrees on the contents");
    require(outcome.backupPath.empty() || files.contents[outcome.backupPath] == document,
            "the backup is the former document");
    require(!isWritten || !outcome.backupPath.empty(), "nothing is written without a backup");
    if (!isWritten) return 0;

    require(checkStructure(after).verified, "what was written is sound");
    const DocumentAnalysis analysis = analyseDocument(path, files.seam());
    require(analysis.previews == 0, "no previews are left");
    return 0;
}
