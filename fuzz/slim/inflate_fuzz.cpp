// Any bytes as a DEFLATE stream: the decoder agrees with zlib, measured only, summed up, with room
// for all of the output, and with too little.
#include "fuzz/require.h"
#include "tests/slim/inflate_oracle.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    require(agreesWithZlib({data, size}), "zlib does the same");
    // Where little input is left, the tables have no pairs.
    Bytes padded(data, data + size);
    padded.resize(size + 8192);
    require(agreesWithZlib(padded), "zlib does the same in front of other bytes");
    return 0;
}
