// Any bytes as a document in memory: opened, slimmed, written, opened again. The outcome agrees
// with the model, what was damaged before is refused, and whatever happens the former contents are
// there.
#include "base/text.h"
#include "fuzz/require.h"
#include "fuzz/slim/slim_model.h"
#include "slim/document.h"
#include "slim/slim_document.h"
#include "tests/slim/fake_files.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::wstring path = L"plan.cdr";
    const Bytes document(data, data + size);
    FakeFiles files{{{path, document}}};
    const SlimOutcome outcome = slimDocument(path, {}, files.seam());
    const ModelOutcome expected = modelSlim(document);
    const bool isWritten = outcome.ok && !outcome.alreadyClean;
    const std::string message = utf8FromWide(outcome.message);

    require(outcome.alreadyClean == (expected.state == "clean"), "the model agrees on cleanness");
    require(files.contents[path] == (isWritten ? expected.image : document),
            "the model agrees on the contents");
    require(!isWritten || files.contents[outcome.backupPath] == document,
            "the backup is the former document");
    if (isWritten) {
        require(expected.state == "written" && expected.isIntact,
                "only sound documents are written");
        require(outcome.viewsRemoved == expected.views &&
                    outcome.colorsCleared == expected.colors &&
                    outcome.previewsRemoved == expected.previews,
                "the model counts the same");
        require(analyseDocument(path, files.seam()).previews == 0, "no previews are left");
    } else if (!outcome.ok) {
        const bool isRefused = message.starts_with("Repack verification failed: ");
        const bool isDamaged = !expected.isIntact || expected.isRepaired;
        require((isRefused && isDamaged) || message.find(expected.state) != message.npos,
                "the model names the same failure");
    }
    return 0;
}
