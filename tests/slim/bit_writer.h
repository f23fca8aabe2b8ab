// Builds DEFLATE streams bit by bit, sound or not.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <vector>

class BitWriter {
  public:
    /// Of a number, extra bits included: the lowest bit first.
    BitWriter& bits(unsigned value, unsigned count) {
        for (unsigned i = 0; i < count; ++i)
            bit((value >> i) & 1);
        return *this;
    }
    /// Of a prefix code: the highest bit first.
    BitWriter& code(unsigned value, unsigned count) {
        while (count-- > 0)
            bit((value >> count) & 1);
        return *this;
    }
    BitWriter& toByte() {
        while (used_ % 8 != 0)
            bit(0);
        return *this;
    }
    BitWriter& bytes(std::initializer_list<std::uint8_t> values) {
        for (const std::uint8_t value : values)
            bits(value, 8);
        return *this;
    }

    BitWriter& blockHeader(bool isLast, unsigned type) { return bits(isLast, 1).bits(type, 2); }
    /// A literal, the end of the block (256) or a length symbol, in the fixed code.
    BitWriter& fixedSymbol(unsigned symbol) {
        if (symbol < 144) return code(0x30 + symbol, 8);
        if (symbol < 256) return code(0x190 + symbol - 144, 9);
        return symbol < 280 ? code(symbol - 256, 7) : code(0xC0 + symbol - 280, 8);
    }
    BitWriter& fixedMatch(unsigned length, unsigned distance) {
        const bool isLongest = length == 258;
        const Range range = rangeOf(isLongest ? 0 : length - 3, 2);
        fixedSymbol(isLongest ? 285 : 257 + range.symbol).bits(range.extra, range.extraBits);
        const Range far = rangeOf(distance - 1, 1);
        return code(far.symbol, 5).bits(far.extra, far.extraBits);
    }
    /// The counts of a dynamic block's codes, and then the lengths of the code-length code in the
    /// order of the format, four at least.
    BitWriter& dynamicHeader(unsigned literals, unsigned distances,
                             std::initializer_list<unsigned> codeLengths) {
        bits(literals - 257, 5).bits(distances - 1, 5);
        bits(static_cast<unsigned>(codeLengths.size()) - 4, 4);
        for (const unsigned length : codeLengths)
            bits(length, 3);
        return *this;
    }

    std::vector<std::uint8_t> done() const { return bytes_; }

  private:
    struct Range {
        unsigned symbol, extra, extraBits;
    };
    // Symbols in groups of 2^groupBits, each group with one extra bit more, from the second on.
    static Range rangeOf(unsigned offset, unsigned groupBits) {
        unsigned extraBits = 0;
        while (offset >> extraBits >= 2U << groupBits)
            ++extraBits;
        return {(extraBits << groupBits) + (offset >> extraBits), offset & ((1U << extraBits) - 1),
                extraBits};
    }

    void bit(unsigned value) {
        if (used_ % 8 == 0) bytes_.push_back(0);
        bytes_.back() = static_cast<std::uint8_t>(bytes_.back() | value << (used_ % 8));
        ++used_;
    }

    std::vector<std::uint8_t> bytes_;
    std::size_t used_ = 0;
};
