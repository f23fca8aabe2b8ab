// zlib as the oracle for both forms of the decoder.
#pragma once

#include <zlib.h>

#include <algorithm>
#include <memory>

#include "base/bytes.h"
#include "slim/inflate.h"

int inflateRawPortable(std::uint8_t* dest, std::size_t* destLen, const std::uint8_t* source,
                       std::size_t* sourceLen);

struct Inflated {
    bool isWhole = false;
    Bytes output;
    std::size_t consumed = 0;
};

inline Inflated inflatedByZlib(ByteView source) {
    Inflated result;
    z_stream z{};
    inflateInit2(&z, -15);
    z.next_in = const_cast<Bytef*>(source.data());
    z.avail_in = static_cast<uInt>(source.size());
    int code = Z_OK;
    while (code == Z_OK) {
        const std::size_t filled = result.output.size();
        result.output.resize(filled + 4096 + filled);
        z.next_out = result.output.data() + filled;
        z.avail_out = static_cast<uInt>(result.output.size() - filled);
        code = inflate(&z, Z_NO_FLUSH);
    }
    result.isWhole = code == Z_STREAM_END;
    result.output.resize(z.total_out);
    result.consumed = z.total_in;
    inflateEnd(&z);
    return result;
}

/// True when both forms, measuring and summing up do to `source` what zlib does. Input and output
/// are buffers of their exact sizes, for a sanitizer to guard.
inline bool agreesWithZlib(ByteView source) {
    const Inflated expected = inflatedByZlib(source);
    const std::size_t size = expected.output.size();
    const auto input = std::make_unique<std::uint8_t[]>(source.size());
    std::copy(source.begin(), source.end(), input.get());
    for (const auto decode : {inflateRaw, inflateRawPortable}) {
        const auto run = [&](std::uint8_t* output, std::size_t room) {
            std::size_t produced = room, consumed = source.size();
            const int code = decode(output, &produced, input.get(), &consumed);
            if (output != nullptr && room < size && expected.isWhole)
                return code == 1 && produced == room;
            const bool isSame = produced == size && consumed == expected.consumed;
            return (code == 0) == expected.isWhole && (isSame || !expected.isWhole);
        };
        const auto output = std::make_unique<std::uint8_t[]>(size);
        if (!run(output.get(), size) || !run(nullptr, 0)) return false;
        if (expected.isWhole &&
            !std::equal(output.get(), output.get() + size, expected.output.data()))
            return false;
        for (const std::size_t room : {size / 2, size - std::min<std::size_t>(size, 1)}) {
            if (!run(std::make_unique<std::uint8_t[]>(room).get(), room)) return false;
        }
    }
    const DecodedSum sum = sumDecoded(input.get(), source.size(), size);
    const auto crc = ::crc32_z(0, expected.output.data(), size);
    if (expected.isWhole && size > 0 && sumDecoded(input.get(), source.size(), size - 1).code != 1)
        return false;
    return expected.isWhole ? sum.code == 0 && sum.length == size && sum.crc == crc : sum.code != 0;
}
