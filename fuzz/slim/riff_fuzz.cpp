// Any bytes as a RIFF stream: counting, stripping and repairing agree with the tests' model.
#include "fuzz/require.h"
#include "slim/riff_chunks.h"
#include "tests/slim/slim_model.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Bytes stream(data, data + size);
    Bytes model = stream;
    for (const char* fourcc : {"LIST", "bmrk"})
        require(countRiffChunks(stream, fourcc) == modelCount(model, fourcc), "counts agree");
    const int removed = stripRiffChunks(stream, "bmrk");
    require(removed == modelStrip(model, "bmrk"), "as many are stripped");
    require(stream == model, "the same is left");
    if (!normaliseRiffSizes(stream)) return 0;
    modelNormalise(model);
    require(stream == model, "the same is repaired");
    const Bytes repaired = stream;
    require(normaliseRiffSizes(stream) && stream == repaired, "repairing again changes nothing");
    return 0;
}
