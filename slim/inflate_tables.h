// Decoding tables for the prefix codes of DEFLATE (RFC 1951, sections 3.2.1 to 3.2.7).
//
// A table is indexed by the next bits of the stream. Its root decodes every code of up to so many
// bits at once; a longer code leads from there to a sub-table, indexed by the bits behind the
// root's. An entry says all that decoding a symbol takes:
//
//   bits  0..7    bits to drop in total, the extra bits behind the code included
//   bits  8..15   root bits of the table in which the next symbol is found
//   bits 16..24   literal, or base of a length, or symbol of the code-length code
//   bits 25..28   bits of the code alone
//   bit  29       leads to a sub-table: bits 0..7 are its index bits, bits 16..27 its offset
//   bit  30       rare: no literal, length or distance; without bit 29
//                 bit 16 end of block,
//                 bit 17 no symbol: bits without a meaning, or a symbol that must not occur
//   bit  31       a literal
//   bits 32..47   base of a distance, or offset of a sub-table of distances
//
// so that the lowest two bytes are the operand of the processor's bit field instruction that finds
// the next index: how many bits to skip and how many to take. Bits without a meaning are 15 bits
// long, since so many must be read to know it.
#pragma once

#include <cstddef>
#include <cstdint>

namespace inflate {

/// Of literals and lengths, and of the code-length code. Half the size keeps twice as many in the
/// cache, and no other table is as large.
using Entry = std::uint32_t;
using DistanceEntry = std::uint64_t;

inline constexpr Entry kLiteral = 1U << 31;
inline constexpr Entry kRare = 1U << 30;
inline constexpr Entry kSubTable = 1U << 29;
inline constexpr Entry kNoSymbol = 1U << 17;
inline constexpr Entry kEndOfBlock = 1U << 16;

inline constexpr unsigned kLiteralRootBits = 11;
inline constexpr unsigned kDistanceRootBits = 8;
inline constexpr unsigned kCodeLengthRootBits = 7;

constexpr unsigned dropBits(std::uint64_t entry) {
    return entry & 0x3F;
}
/// Of an entry that is not rare.
constexpr unsigned codeBits(std::uint64_t entry) {
    return (entry >> 25) & 0xF;
}
constexpr unsigned value(Entry entry) {
    return (entry >> 16) & 0x1FF;
}
constexpr std::size_t value(DistanceEntry entry) {
    return entry >> 32;
}
constexpr std::size_t subTable(Entry entry) {
    return (entry >> 16) & 0xFFF;
}
constexpr std::size_t subTable(DistanceEntry entry) {
    return entry >> 32;
}

/// The entry of the symbol at the start of `bits`: 15 of them, or zeros in place of missing ones.
template <unsigned rootBits, typename AnyEntry>
AnyEntry lookUp(const AnyEntry* table, std::uint64_t bits) {
    const AnyEntry entry = table[bits & ((1U << rootBits) - 1)];
    if ((entry & kSubTable) == 0) return entry;
    return table[subTable(entry) + ((bits >> rootBits) & ((1U << dropBits(entry)) - 1))];
}

inline Entry lookUpLiteral(const Entry* table, std::uint64_t bits) {
    return lookUp<kLiteralRootBits>(table, bits);
}
inline DistanceEntry lookUpDistance(const DistanceEntry* table, std::uint64_t bits) {
    return lookUp<kDistanceRootBits>(table, bits);
}

/// The largest tables that any complete code of 286, 30 and 19 symbols needs.
inline constexpr std::size_t kLiteralTableSize = 2340;
inline constexpr std::size_t kDistanceTableSize = 400;
inline constexpr std::size_t kCodeLengthTableSize = 128;

/// `empty` and `single` are the two incomplete codes that some places of the format allow: no code
/// at all, and one symbol with a code of one bit.
enum class CodeShape { complete, single, empty, incomplete, overSubscribed };

/// Build the table for the code lengths of `count` symbols, each 0 (no code) to 15, in `table`,
/// which has room for the size above. The code-length code has lengths up to 7. An incomplete or
/// over-subscribed code gives no table.
CodeShape buildLiteralTable(Entry* table, const std::uint8_t* lengths, std::size_t count);
CodeShape buildDistanceTable(DistanceEntry* table, const std::uint8_t* lengths, std::size_t count);
CodeShape buildCodeLengthTable(Entry* table, const std::uint8_t* lengths, std::size_t count);

/// The tables of blocks with fixed codes.
extern const Entry* const kFixedLiterals;
extern const DistanceEntry* const kFixedDistances;

}  // namespace inflate
