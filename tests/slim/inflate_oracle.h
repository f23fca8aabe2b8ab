// zlib as the oracle for both forms of the decoder.
#pragma once

#include <zlib.h>

#include <algorithm>
#include <memory>

#include "base/bytes.h"
#include "slim/inflate.h"

int inflateRawPortable(std::uint8_t* dest, std::size_t* destLen, const std::uint8_t* source,
                       std::size_t* sourceLen);

/// True when both forms, measuring and summing up do to `source` what zlib does. Input and output
/// are buffers of their exact sizes, for a sanitizer to guard.
inline bool agreesWithZlib(ByteView source) {
    static Bytes room(1 << 25);
    z_stream z{};
    inflateInit2(&z, -15);
    z.next_in = const_cast<Bytef*>(source.data());
    z.avail_in = static_cast<uInt>(source.size());
    z.next_out = room.data();
    z.avail_out = static_cast<uInt>(room.size());
    const bool isWhole = inflate(&z, Z_FINISH) == Z_STREAM_END;
    inflateEnd(&z);

    const std::size_t size = z.total_out;
    const auto input = std::make_unique<std::uint8_t[]>(source.size());
    std::copy(source.begin(), source.end(), input.get());
    for (const auto decode : {inflateRaw, inflateRawPortable}) {
        const auto agrees = [&](std::uint8_t* output, std::size_t capacity) {
            std::size_t produced = capacity, consumed = source.size();
            const int code = decode(output, &produced, input.get(), &consumed);
            if (!isWhole) return code != 0;
            if (output && capacity < size) return code == 1 && produced == capacity;
            return code == 0 && produced == size && consumed == z.total_in &&
                   (!output || std::equal(output, output + size, room.data()));
        };
        for (const std::size_t capacity : {size, size - std::min<std::size_t>(size, 1), size / 2}) {
            if (!agrees(std::make_unique<std::uint8_t[]>(capacity).get(), capacity)) return false;
        }
        if (!agrees(nullptr, 0)) return false;
    }
    const DecodedSum sum = sumDecoded(input.get(), source.size(), size);
    if (!isWhole) return sum.code != 0;
    return sum.code == 0 && sum.length == size && sum.crc == ::crc32_z(0, room.data(), size) &&
           (size == 0 || sumDecoded(input.get(), source.size(), size - 1).code == 1);
}
