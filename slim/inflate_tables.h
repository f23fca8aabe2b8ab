// Decoding tables for the prefix codes of DEFLATE (RFC 1951, sections 3.2.1 to 3.2.7).
//
// A table is indexed by the next bits of the stream. Its root decodes every code of up to so many
// bits at once; a longer code leads from there to a sub-table, indexed by the bits behind the
// root's. An entry says all that decoding a symbol takes:
//
//   bits  0..7    bits to drop in total, the extra bits behind the code included
//   bits  8..15   root bits of the table in which the next symbol is found
//   bits 16..24   base of a length, or symbol of the code-length code
//   bit  27       no symbol: bits without a meaning, or a symbol that must not occur
//   bit  28       end of block
//   bit  29       leads to a sub-table: bits 0..7 are its index bits, bits 48..63 its offset
//   bit  30       rare: one of the three above; no literal, length or distance
//   bit  31       not just literals
//   bits 32..37   bits of the code alone, of a pair those of both
//   bits 40..55   the literals
//   bits 56..59   in a pair the bits of its first code, else none
//   bits 62..63   number of literals
//   bits 48..63   base of a distance
//
// so that the lowest two bytes are the operand of the processor's bit field instruction that finds
// the next index: how many bits to skip and how many to take. Bits without a meaning are 15 bits
// long, since so many must be read to know it.
//
// A pair decodes two symbols at once: a literal, and a literal or a length behind it, where both
// codes together fit into the root. Its code is the one behind the other.
#pragma once

#include <cstddef>
#include <cstdint>

namespace inflate {

using Entry = std::uint64_t;

inline constexpr Entry kNoSymbol = 1U << 27;
inline constexpr Entry kEndOfBlock = 1U << 28;
inline constexpr Entry kSubTable = 1U << 29;
inline constexpr Entry kRare = 1U << 30;
inline constexpr Entry kNotLiteral = 1U << 31;
inline constexpr Entry kLiteral = Entry{1} << 62;

/// Small enough that the tables stay in the first-level cache beside the last 32 KB of the output.
inline constexpr unsigned kLiteralRootBits = 10;
inline constexpr unsigned kDistanceRootBits = 9;
inline constexpr unsigned kCodeLengthRootBits = 7;

constexpr unsigned dropBits(Entry entry) {
    return entry & 0x3F;
}
/// Of an entry that is not rare.
constexpr unsigned codeBits(Entry entry) {
    return (entry >> 32) & 0x3F;
}
constexpr std::size_t lengthBase(Entry entry) {
    return (static_cast<std::uint32_t>(entry) >> 16) & 0x1FF;
}
constexpr std::size_t distanceBase(Entry entry) {
    return entry >> 48;
}
constexpr unsigned codeLength(Entry entry) {
    return (entry >> 16) & 0x1F;
}
/// The first literal is in the low byte.
constexpr std::uint16_t literals(Entry entry) {
    return static_cast<std::uint16_t>(entry >> 40);
}
constexpr std::size_t literalCount(Entry entry) {
    return entry >> 62;
}
/// The first symbol of a pair, any other entry as it is.
constexpr Entry firstOf(Entry entry) {
    const Entry bits = (entry >> 56) & 0xF;
    return bits == 0 ? entry : kLiteral | (entry & Entry{0xFF} << 40) | bits << 32 | bits;
}

/// The entry of the symbol at the start of `bits`: 15 of them, or zeros in place of missing ones.
template <unsigned rootBits>
Entry lookUp(const Entry* table, std::uint64_t bits) {
    const Entry entry = table[bits & ((1U << rootBits) - 1)];
    if ((entry & kSubTable) == 0) return entry;
    return table[(entry >> 48) + ((bits >> rootBits) & ((1U << dropBits(entry)) - 1))];
}

/// The largest tables that any complete code of 286, 30 and 19 symbols needs.
inline constexpr std::size_t kLiteralTableSize = 1332;
inline constexpr std::size_t kDistanceTableSize = 592;
inline constexpr std::size_t kCodeLengthTableSize = 128;

/// The tables of a block, one behind the other: an index into the root of either is one into the
/// memory of the other, so that both can be read before it is known which is meant.
class Codes {
  public:
    constexpr Entry* distances() { return entries_; }
    constexpr Entry* literals() { return entries_ + kDistanceTableSize; }
    constexpr const Entry* distances() const { return entries_; }
    constexpr const Entry* literals() const { return entries_ + kDistanceTableSize; }

  private:
    static_assert(kDistanceTableSize + kLiteralTableSize >= 1U << kLiteralRootBits);
    Entry entries_[kDistanceTableSize + kLiteralTableSize];
};

/// One symbol, also where the table has a pair.
inline Entry lookUpLiteral(const Codes& codes, std::uint64_t bits) {
    return firstOf(lookUp<kLiteralRootBits>(codes.literals(), bits));
}
inline Entry lookUpDistance(const Codes& codes, std::uint64_t bits) {
    return lookUp<kDistanceRootBits>(codes.distances(), bits);
}

/// `empty` and `single` are the two incomplete codes that some places of the format allow: no code
/// at all, and one symbol with a code of one bit.
enum class CodeShape { complete, single, empty, incomplete, overSubscribed };

/// Build the table for the code lengths of `count` symbols, each 0 (no code) to 15, in `table`,
/// which has room for the size above. The code-length code has lengths up to 7. An incomplete or
/// over-subscribed code gives no table.
CodeShape buildLiteralTable(Entry* table, const std::uint8_t* lengths, std::size_t count);
CodeShape buildDistanceTable(Entry* table, const std::uint8_t* lengths, std::size_t count);
CodeShape buildCodeLengthTable(Entry* table, const std::uint8_t* lengths, std::size_t count);

/// Puts pairs into the root of a table of literals and lengths.
void addPairs(Entry* table);

/// The codes of type 1.
extern const Codes& kFixedCodes;

}  // namespace inflate
