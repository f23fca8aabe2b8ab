// Any bytes as a RIFF stream: counting, stripping and repairing agree with the model.
#include <algorithm>

#include "fuzz/require.h"
#include "fuzz/slim/riff_model.h"
#include "slim/riff_chunks.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Bytes original(data, data + size);
    for (const char* fourcc : {"LIST", "bmrk"}) {
        Bytes stream = original;
        Bytes model = original;
        const std::uint32_t count = countRiffChunks(stream, fourcc);
        const int removed = stripRiffChunks(stream, fourcc);
        require(removed == modelStrip(model, fourcc), "as many are stripped");
        require(*fourcc == 'L' || static_cast<int>(count) == std::max(removed, 0),
                "what is counted is stripped");
        require(stream == model, "the same is left");
        if (!normaliseRiffSizes(stream)) return 0;
        modelNormalise(model);
        require(stream == model, "the same is repaired");
        const Bytes repaired = stream;
        require(normaliseRiffSizes(stream) && stream == repaired,
                "repairing again changes nothing");
    }
    return 0;
}
