// Any bytes as a DEFLATE stream: the decoder agrees with the tests' reader of single bits, measured
// only, with room for all of the output, and with too little.
#include "fuzz/require.h"
#include "tests/slim/inflate_check.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::span stream(data, size);
    const std::size_t length = ReferenceInflate::decode(stream, {}).output.size();
    require(disagreement(stream, {}).empty(), "the same when only measured");
    for (const std::size_t capacity : {length, length / 2, length - (length > 0 ? 1 : 0)})
        require(disagreement(stream, capacity).empty(), "the same with room for so much");
    return 0;
}
