// Decoding by RFC 1951, one bit at a time.
#include "slim/inflate.h"

#include <array>
#include <cstring>

namespace {

constexpr std::uint8_t kCodeLengthOrder[19] = {16, 17, 18, 0, 8,  7, 9,  6, 10, 5,
                                               11, 4,  12, 3, 13, 2, 14, 1, 15};
constexpr std::uint16_t kLengthBase[29] = {3,  4,  5,  6,   7,   8,   9,   10,  11, 13,
                                           15, 17, 19, 23,  27,  31,  35,  43,  51, 59,
                                           67, 83, 99, 115, 131, 163, 195, 227, 258};
constexpr std::uint8_t kLengthExtra[29] = {0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 2, 2, 2,
                                           2, 3, 3, 3, 3, 4, 4, 4, 4, 5, 5, 5, 5, 0};
constexpr std::uint16_t kDistanceBase[30] = {
    1,   2,   3,   4,   5,   7,    9,    13,   17,   25,   33,   49,   65,    97,    129,
    193, 257, 385, 513, 769, 1025, 1537, 2049, 3073, 4097, 6145, 8193, 12289, 16385, 24577};
constexpr std::uint8_t kDistanceExtra[30] = {0, 0, 0, 0, 1, 1, 2, 2,  3,  3,  4,  4,  5,  5,  6,
                                             6, 7, 7, 8, 8, 9, 9, 10, 10, 11, 11, 12, 12, 13, 13};

struct InputExhausted {};

struct Code {
    std::array<int, 16> counts{};
    std::array<int, 288> symbols{};
};

// 0 for a complete code, negative for an over-subscribed and positive for an incomplete one.
int build(Code& code, const int* lengths, int count) {
    code = {};
    for (int i = 0; i < count; ++i)
        ++code.counts[static_cast<std::size_t>(lengths[i])];
    int left = 1;
    for (std::size_t length = 1; length <= 15; ++length) {
        left = 2 * left - code.counts[length];
        if (left < 0) return left;
    }
    std::size_t next = 0;
    for (int length = 1; length <= 15; ++length) {
        for (int i = 0; i < count; ++i) {
            if (lengths[i] == length) code.symbols[next++] = i;
        }
    }
    return left;
}

bool isSingleBitCode(const Code& code, int count) {
    return code.counts[0] == count - 1 && code.counts[1] == 1;
}

struct Decoder {
    std::uint8_t* dest;
    std::size_t capacity;
    const std::uint8_t* source;
    std::size_t sourceLen;
    std::size_t produced = 0;
    std::size_t bitPosition = 0;
    Code lengthCode{};
    Code distanceCode{};

    int bits(int count) {
        int value = 0;
        for (int i = 0; i < count; ++i, ++bitPosition) {
            if (bitPosition / 8 >= sourceLen) throw InputExhausted();
            value |= ((source[bitPosition / 8] >> (bitPosition % 8)) & 1) << i;
        }
        return value;
    }

    int symbol(const Code& code) {
        int value = 0, first = 0, index = 0;
        for (std::size_t length = 1; length <= 15; ++length) {
            value |= bits(1);
            const int count = code.counts[length];
            if (value - first < count)
                return code.symbols[static_cast<std::size_t>(index + value - first)];
            index += count;
            first = (first + count) * 2;
            value *= 2;
        }
        return -10;
    }

    int stored() {
        bitPosition = (bitPosition + 7) / 8 * 8;
        std::size_t position = bitPosition / 8;
        if (sourceLen - position < 4) return 2;
        const std::uint8_t* header = source + position;
        bitPosition += 32;
        if ((header[0] ^ header[2]) != 0xFF || (header[1] ^ header[3]) != 0xFF) return -2;
        const std::size_t length = static_cast<std::size_t>(header[0] | header[1] << 8);
        position += 4;
        if (sourceLen - position < length) return 2;
        if (dest && capacity - produced < length) return 1;
        if (dest && length) std::memcpy(dest + produced, source + position, length);
        produced += length;
        bitPosition += 8 * length;
        return 0;
    }

    void fixedCodes() {
        int lengths[288];
        for (int i = 0; i < 288; ++i)
            lengths[i] = i < 144 ? 8 : i < 256 ? 9 : i < 280 ? 7 : 8;
        build(lengthCode, lengths, 288);
        for (int i = 0; i < 30; ++i)
            lengths[i] = 5;
        build(distanceCode, lengths, 30);
    }

    int dynamicCodes() {
        const int lengthCount = bits(5) + 257;
        const int distanceCount = bits(5) + 1;
        const int codeLengthCount = bits(4) + 4;
        if (lengthCount > 286 || distanceCount > 30) return -3;
        int lengths[320] = {};
        for (int i = 0; i < codeLengthCount; ++i)
            lengths[kCodeLengthOrder[i]] = bits(3);
        if (build(lengthCode, lengths, 19) != 0) return -4;
        for (int i = 0; i < lengthCount + distanceCount;) {
            const int code = symbol(lengthCode);
            if (code < 16) {
                lengths[i++] = code;
                continue;
            }
            if (code == 16 && i == 0) return -5;
            const int length = code == 16 ? lengths[i - 1] : 0;
            int repeat = code == 16 ? bits(2) + 3 : code == 17 ? bits(3) + 3 : bits(7) + 11;
            if (i + repeat > lengthCount + distanceCount) return -6;
            while (repeat--)
                lengths[i++] = length;
        }
        if (lengths[256] == 0) return -9;
        const int lengthState = build(lengthCode, lengths, lengthCount);
        if (lengthState < 0 || (lengthState > 0 && !isSingleBitCode(lengthCode, lengthCount)))
            return -7;
        const int distanceState = build(distanceCode, lengths + lengthCount, distanceCount);
        const bool sparse =
            isSingleBitCode(distanceCode, distanceCount) || distanceCode.counts[0] == distanceCount;
        return distanceState < 0 || (distanceState > 0 && !sparse) ? -8 : 0;
    }

    int match(int lengthSymbol) {
        if (lengthSymbol >= 29) return -10;
        const auto row = static_cast<std::size_t>(lengthSymbol);
        const auto length = static_cast<std::size_t>(kLengthBase[row] + bits(kLengthExtra[row]));
        const int distanceSymbol = symbol(distanceCode);
        if (distanceSymbol < 0) return distanceSymbol;
        const auto column = static_cast<std::size_t>(distanceSymbol);
        const auto distance =
            static_cast<std::size_t>(kDistanceBase[column] + bits(kDistanceExtra[column]));
        if (distance > produced) return -11;
        if (dest && capacity - produced < length) return 1;
        for (std::size_t i = 0; dest && i < length; ++i)
            dest[produced + i] = dest[produced + i - distance];
        produced += length;
        return 0;
    }

    int compressed() {
        for (;;) {
            const int code = symbol(lengthCode);
            if (code < 0 || code == 256) return code < 0 ? code : 0;
            if (code > 256) {
                const int result = match(code - 257);
                if (result != 0) return result;
                continue;
            }
            if (dest && produced == capacity) return 1;
            if (dest) dest[produced] = static_cast<std::uint8_t>(code);
            ++produced;
        }
    }

    int blocks() {
        for (;;) {
            const bool last = bits(1) != 0;
            const int type = bits(2);
            if (type == 3) return -1;
            int result = 0;
            if (type == 1) fixedCodes();
            if (type == 2) result = dynamicCodes();
            if (result == 0) result = type == 0 ? stored() : compressed();
            if (result != 0 || last) return result;
        }
    }
};

}  // namespace

int inflateRaw(std::uint8_t* dest, std::size_t* destLen, const std::uint8_t* source,
               std::size_t* sourceLen) {
    Decoder decoder{dest, *destLen, source, *sourceLen};
    int result = 2;
    try {
        result = decoder.blocks();
    } catch (const InputExhausted&) {
    }
    if (result <= 0) {
        *destLen = decoder.produced;
        *sourceLen = (decoder.bitPosition + 7) / 8;
    }
    return result;
}
