// Any bytes as a DEFLATE stream: the decoder agrees with zlib, measured only, summed up, with room
// for all of the output, and with too little.
#include "fuzz/require.h"
#include "tests/slim/inflate_oracle.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // Tables have pairs only where much input is left: half of the streams have other bytes behind.
    Bytes stream(data, data + size);
    if (size > 0 && data[size - 1] % 2 != 0) stream.resize(size + 8192);
    require(agreesWithZlib(stream), "zlib does the same");
    return 0;
}
