// A second, straightforward model of stripping and repairing streams: every step builds its whole
// result anew. The product is compared with it byte for byte.
#pragma once

#include <algorithm>
#include <string>

#include "tests/slim/document_builder.h"

inline std::string modelText(const Bytes& bytes, std::size_t start, std::size_t length) {
    if (start + length > bytes.size()) return {};
    return std::string(bytes.data() + start, bytes.data() + start + length);
}

inline Bytes modelRange(const Bytes& bytes, std::size_t start, std::size_t end) {
    return Bytes(bytes.data() + start, bytes.data() + end);
}

inline Bytes modelStripRange(const Bytes& stream, std::size_t p, std::size_t end,
                             const std::string& fourcc, int depth, int& removed) {
    Bytes out;
    while (p + 8 <= end) {
        const std::size_t size = readU32(stream, p + 4);
        if (p + 8 + size > end) break;
        const std::size_t next = std::min(p + 8 + size + size % 2, end);
        const std::string id = modelText(stream, p, 4);
        if (id == fourcc) {
            ++removed;
        } else if (id != "LIST" || size < 4 || depth == 7) {
            put(out, modelRange(stream, p, next));
        } else {
            const Bytes rest =
                modelStripRange(stream, p + 12, p + 8 + size, fourcc, depth + 1, removed);
            put(out, list(modelText(stream, p + 8, 4), {rest}));
        }
        p = next;
    }
    put(out, modelRange(stream, p, end));
    return out;
}

/// The number of chunks removed; -1 for what is no stream.
inline int modelStrip(Bytes& stream, const std::string& fourcc) {
    if (stream.size() < 12 || modelText(stream, 0, 4) != "RIFF") return -1;
    int removed = 0;
    const Bytes body = modelStripRange(stream, 12, stream.size(), fourcc, 0, removed);
    if (removed == 0) return 0;
    stream.resize(12);
    put(stream, body);
    writeU32(stream, 4, static_cast<std::uint32_t>(stream.size() - 8));
    return removed;
}

inline void modelNormalise(Bytes& stream) {
    while (stream.size() % 4 != 0)
        stream.push_back(0);
    const auto clamp = [&](std::size_t at, std::size_t end) {
        const auto size = std::min<std::size_t>(readU32(stream, at + 4), end - at - 8);
        writeU32(stream, at + 4, static_cast<std::uint32_t>(size));
        return at + 8 + size;
    };
    const std::size_t n = stream.size();
    writeU32(stream, 4, static_cast<std::uint32_t>(n - 8));
    for (std::size_t p = 12; p + 8 <= n; p += p % 2) {
        const std::size_t end = clamp(p, n);
        const bool isList = modelText(stream, p, 4) == "LIST";
        for (std::size_t q = p + 12; isList && q + 8 <= end; q += q % 2)
            q = clamp(q, end);
        p = end;
    }
}
