// Compares both forms of the decoder with the reader of single bits.
#pragma once

#include <algorithm>
#include <memory>
#include <string>

#include "slim/inflate.h"
#include "tests/slim/reference_inflate.h"

int inflateRawPortable(std::uint8_t* dest, std::size_t* destLen, const std::uint8_t* source,
                       std::size_t* sourceLen);

/// What differs between the decoders on this stream, empty if nothing; without a capacity it is
/// only measured. Input and output are buffers of their exact sizes, for a sanitizer to guard.
inline std::string disagreement(std::span<const std::uint8_t> source,
                                std::optional<std::size_t> capacity) {
    const ReferenceResult expected = ReferenceInflate::decode(source, capacity);
    const auto input = std::make_unique<std::uint8_t[]>(source.size());
    std::copy(source.begin(), source.end(), input.get());
    for (const auto decode : {inflateRaw, inflateRawPortable}) {
        const auto output = capacity ? std::make_unique<std::uint8_t[]>(*capacity) : nullptr;
        std::size_t produced = capacity.value_or(0), consumed = source.size();
        const int code = decode(output.get(), &produced, input.get(), &consumed);
        const bool isUpdated = expected.code <= 0;
        const std::size_t sizes[] = {isUpdated ? expected.output.size() : capacity.value_or(0),
                                     isUpdated ? expected.consumed : source.size()};
        if (code != expected.code || produced != sizes[0] || consumed != sizes[1]) {
            const auto text = [](int result, std::size_t out, std::size_t in) {
                return std::to_string(result) + " out " + std::to_string(out) + " in " +
                       std::to_string(in);
            };
            return text(code, produced, consumed) + " instead of " +
                   text(expected.code, sizes[0], sizes[1]);
        }
        if (isUpdated && output &&
            !std::equal(expected.output.begin(), expected.output.end(), output.get())) {
            return "other bytes";
        }
    }
    return {};
}
