// How a table comes about. Codes are canonical: of each length in turn, in the order of the
// symbols, counting up. Streams carry a code's first bit first, so the counting is done on reversed
// codes: a step clears the highest one bits and sets the zero bit below them, and going on to a
// longer code only adds a zero on top, which leaves the number as it is.
//
//   symbol   length   code   as a number whose lowest bit comes first
//   B        1        0      0b0
//   A        2        10     0b01
//   C        3        110    0b011
//   D        3        111    0b111        lengths 2 1 3 3 give these (RFC 1951, section 3.2.2)
//
// A table is indexed by the next bits of the stream, whatever they are. With a root of two bits the
// example is
//
//   00 B    01 A    10 B    11 sub-table of one bit: 0 C, 1 D
//
// B stands twice because one bit decides and the other is the next symbol's. Codes longer than the
// root share a sub-table with all others that begin with the same root bits: a second look-up,
// which only rare symbols need.
//
// The root starts as wide as the shortest code and doubles for every longer one. That repeats the
// shorter codes at all places that end in them, and no entry of the root is stored twice otherwise.
//
// Pairs come last. Where only A is a literal, the root of three bits of the same example
//
//   000 B    001 A    010 B    011 C    100 B    101 A    110 B    111 D
//
// gets at 001 the pair A B and keeps A at 101, where of the next symbol's code only one bit is
// there.
#include "slim/inflate_tables.h"

#include <algorithm>
#include <array>
#include <bit>

namespace inflate {
namespace {

constexpr unsigned kLongestCode = 15;
constexpr std::size_t kMostSymbols = 288;
constexpr Entry kUndefined = kNotLiteral | kRare | kNoSymbol | kLongestCode;

// Lengths and distances are coded as ranges (RFC 1951, section 3.2.5): the symbol names the range,
// the extra bits behind its code the place in it. Ranges double in width every four lengths and
// every two distances, but for the last length, 258, which has a symbol of its own.
struct Range {
    std::uint16_t base;
    std::uint8_t extraBits;
};

constexpr Range kLengths[] = {
    {3, 0},  {4, 0},  {5, 0},  {6, 0},   {7, 0},   {8, 0},   {9, 0},   {10, 0},  {11, 1},  {13, 1},
    {15, 1}, {17, 1}, {19, 2}, {23, 2},  {27, 2},  {31, 2},  {35, 3},  {43, 3},  {51, 3},  {59, 3},
    {67, 4}, {83, 4}, {99, 4}, {115, 4}, {131, 5}, {163, 5}, {195, 5}, {227, 5}, {258, 0},
};

constexpr Range kDistances[] = {
    {1, 0},     {2, 0},     {3, 0},     {4, 0},      {5, 1},      {7, 1},
    {9, 2},     {13, 2},    {17, 3},    {25, 3},     {33, 4},     {49, 4},
    {65, 5},    {97, 5},    {129, 6},   {193, 6},    {257, 7},    {385, 7},
    {513, 8},   {769, 8},   {1025, 9},  {1537, 9},   {2049, 10},  {3073, 10},
    {4097, 11}, {6145, 11}, {8193, 12}, {12289, 12}, {16385, 13}, {24577, 13},
};

// The entries of all symbols as they are before their codes are known.
constexpr Entry toTable(unsigned rootBits) {
    return Entry{rootBits} << 8;
}

constexpr auto kLiteralSymbols = [] {
    std::array<Entry, kMostSymbols> symbols{};
    for (Entry byte = 0; byte < 256; ++byte) {
        symbols[byte] = kLiteral | byte << 40 | toTable(kLiteralRootBits);
    }
    symbols[256] = kNotLiteral | kRare | kEndOfBlock;
    for (std::size_t i = 0; i < std::size(kLengths); ++i) {
        const Range& length = kLengths[i];
        symbols[257 + i] =
            kNotLiteral | Entry{length.base} << 16 | toTable(kDistanceRootBits) | length.extraBits;
    }
    symbols[286] = symbols[287] = kNotLiteral | kRare | kNoSymbol;
    return symbols;
}();

constexpr auto kDistanceSymbols = [] {
    std::array<Entry, std::size(kDistances)> symbols{};
    for (std::size_t i = 0; i < symbols.size(); ++i) {
        const Range& distance = kDistances[i];
        symbols[i] = Entry{distance.base} << 48 | toTable(kLiteralRootBits) | distance.extraBits;
    }
    return symbols;
}();

constexpr auto kCodeLengthSymbols = [] {
    std::array<Entry, 19> symbols{};
    for (Entry symbol = 0; symbol < symbols.size(); ++symbol)
        symbols[symbol] = symbol << 16;
    return symbols;
}();

constexpr Entry withCode(Entry symbol, unsigned bits) {
    return symbol + (Entry{bits} << 32 | bits);
}

constexpr Entry subTableEntry(unsigned offset, unsigned indexBits) {
    // The entry has 64 bits; the analyzer takes it for 32.
    // NOLINTNEXTLINE(clang-analyzer-core.UndefinedBinaryOperatorResult)
    return kNotLiteral | kRare | kSubTable | Entry{offset} << 48 | indexBits;
}

// Counting up on a number whose bits stand in reverse: the carry runs from the top down.
constexpr unsigned nextReversed(unsigned code, unsigned bits) {
    const unsigned highestZero = std::bit_floor(~code & ((1U << bits) - 1));
    return (code & (highestZero - 1)) | highestZero;
}

// The symbols in the order of their codes, and how many there are of each length.
struct CanonicalCode {
    std::uint16_t counts[kLongestCode + 1] = {};
    std::uint16_t symbols[kMostSymbols];
    unsigned shortest = 0;
    unsigned longest = 0;
};

// A counting sort by length, which keeps the order of the symbols: that is the order in which the
// format gives out the codes (RFC 1951, section 3.2.2).
constexpr void sortByLength(CanonicalCode& code, const std::uint8_t* lengths, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        ++code.counts[lengths[i]];
    // Symbols without a code go behind the others, so that no branch has to tell them apart.
    std::uint16_t ends[kLongestCode + 1] = {};
    ends[0] = static_cast<std::uint16_t>(count - code.counts[0]);
    code.counts[0] = 0;
    for (unsigned length = 1; length <= kLongestCode; ++length) {
        if (length > 1) {
            ends[length] = static_cast<std::uint16_t>(ends[length - 1] + code.counts[length - 1]);
        }
        if (code.counts[length] == 0) continue;
        code.longest = length;
        if (code.shortest == 0) code.shortest = length;
    }
    for (std::size_t i = 0; i < count; ++i) {
        code.symbols[ends[lengths[i]]++] = static_cast<std::uint16_t>(i);
    }
}

// The Kraft sum. A tree has two places at its first level, and every place that no code takes
// becomes two at the next. Fewer than none left means that codes overlap; some left at the end,
// that there are bits which no code stands for.
constexpr CodeShape judge(const CanonicalCode& code) {
    int unused = 1;
    for (unsigned length = 1; length <= kLongestCode; ++length) {
        unused = 2 * unused - code.counts[length];
        if (unused < 0) return CodeShape::overSubscribed;
    }
    if (unused == 0) return CodeShape::complete;
    if (code.longest == 0) return CodeShape::empty;
    return code.longest == 1 ? CodeShape::single : CodeShape::incomplete;
}

// Index bits of the sub-table that begins with `left` codes of `length` bits yet to place: as many
// as it takes until the codes that follow fill it.
constexpr unsigned subTableBits(const CanonicalCode& code, unsigned length, unsigned left,
                                unsigned rootBits) {
    unsigned used = left;
    unsigned bits = length - rootBits;
    while (used < 1U << bits) {
        ++bits;
        used = 2 * used + code.counts[rootBits + bits];
    }
    return bits;
}

// What is left to place: the next code, reversed, and its symbol.
struct Position {
    unsigned reversed = 0;
    const std::uint16_t* symbol;
};

template <unsigned rootBits>
constexpr void fillSubTables(Entry* table, const CanonicalCode& code, const Entry* symbols,
                             Position at) {
    constexpr unsigned kRootMask = (1U << rootBits) - 1;
    unsigned end = 1U << rootBits;
    unsigned start = 0, width = 0;
    unsigned prefix = ~0U;
    for (unsigned length = rootBits + 1; length <= code.longest; ++length) {
        for (unsigned left = code.counts[length]; left > 0; --left) {
            if ((at.reversed & kRootMask) != prefix) {
                prefix = at.reversed & kRootMask;
                const unsigned bits = subTableBits(code, length, left, rootBits);
                start = end;
                width = 1U << bits;
                end += width;
                table[prefix] = subTableEntry(start, bits);
            }
            const Entry entry = withCode(symbols[*at.symbol++], length);
            for (unsigned i = at.reversed >> rootBits; i < width; i += 1U << (length - rootBits)) {
                table[start + i] = entry;
            }
            at.reversed = nextReversed(at.reversed, length);
        }
    }
}

template <unsigned rootBits>
constexpr void fill(Entry* table, const CanonicalCode& code, const Entry* symbols) {
    std::fill_n(table, std::size_t{1} << code.shortest, kUndefined);
    Position at = {0, code.symbols};
    for (unsigned length = code.shortest; length <= rootBits; ++length) {
        const std::size_t half = (std::size_t{1} << length) / 2;
        if (length > code.shortest) std::copy_n(table, half, table + half);
        for (unsigned left = code.counts[length]; left > 0; --left) {
            table[at.reversed] = withCode(symbols[*at.symbol++], length);
            at.reversed = nextReversed(at.reversed, length);
        }
    }
    if (code.longest > rootBits) fillSubTables<rootBits>(table, code, symbols, at);
}

template <unsigned rootBits>
CodeShape build(Entry* table, const Entry* symbols, const std::uint8_t* lengths,
                std::size_t count) {
    CanonicalCode code;
    sortByLength(code, lengths, count);
    const CodeShape shape = judge(code);
    if (shape != CodeShape::overSubscribed && shape != CodeShape::incomplete) {
        fill<rootBits>(table, code, symbols);
    }
    return shape;
}

// The codes of type 1, made by the same builder and at compile time (RFC 1951, section 3.2.6). The
// symbols 286 and 287 and the distances 30 and 31 take part in the codes but must not occur.
constexpr Codes kFixed = [] {
    std::uint8_t lengths[288] = {};
    std::fill(lengths, lengths + 144, std::uint8_t{8});
    std::fill(lengths + 144, lengths + 256, std::uint8_t{9});
    std::fill(lengths + 256, lengths + 280, std::uint8_t{7});
    std::fill(lengths + 280, lengths + 288, std::uint8_t{8});
    Codes codes{};
    CanonicalCode literals;
    sortByLength(literals, lengths, 288);
    fill<kLiteralRootBits>(codes.literals(), literals, kLiteralSymbols.data());

    std::fill(lengths, lengths + 30, std::uint8_t{5});
    CanonicalCode distances;
    sortByLength(distances, lengths, 30);
    fill<kDistanceRootBits>(codes.distances(), distances, kDistanceSymbols.data());
    return codes;
}();

// Drops the bits of both, and has one literal more than the second.
Entry pairOf(Entry first, Entry second) {
    constexpr Entry kFirst = Entry{0xFF} << 40;
    const Entry bits = codeBits(first);
    return (second & ~kFirst) + ((second & kFirst) << 8) + (first & kFirst) + kLiteral +
           (bits << 56 | bits << 32 | bits);
}

}  // namespace

constinit const Codes& kFixedCodes = kFixed;

// From the top down: what lies behind a code is at a lower index, where there is no pair yet.
void addPairs(Entry* table) {
    for (std::size_t i = 1U << kLiteralRootBits; i-- > 0;) {
        const Entry first = table[i];
        const Entry second = table[i >> codeBits(first)];
        const Entry isNone = (first & kNotLiteral) | (second & kRare);
        if (isNone == 0 && codeBits(first) + codeBits(second) <= kLiteralRootBits) {
            table[i] = pairOf(first, second);
        }
    }
}

CodeShape buildLiteralTable(Entry* table, const std::uint8_t* lengths, std::size_t count) {
    return build<kLiteralRootBits>(table, kLiteralSymbols.data(), lengths, count);
}

CodeShape buildDistanceTable(Entry* table, const std::uint8_t* lengths, std::size_t count) {
    return build<kDistanceRootBits>(table, kDistanceSymbols.data(), lengths, count);
}

CodeShape buildCodeLengthTable(Entry* table, const std::uint8_t* lengths, std::size_t count) {
    return build<kCodeLengthRootBits>(table, kCodeLengthSymbols.data(), lengths, count);
}

}  // namespace inflate
