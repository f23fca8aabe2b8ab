// DEFLATE (RFC 1951) is LZ77 behind Huffman codes. A stream is a row of blocks:
//
//   1 bit last block?   2 bits type   type 0: to the next byte, LEN, complement of LEN, LEN bytes
//                                     type 1: symbols in the fixed codes (3.2.6)
//                                     type 2: two codes (3.2.7), then symbols in them
//
// A symbol of the first code is a literal, the end of the block, or the length of a match; behind a
// length follow its extra bits, a symbol of the second code, the distance, and its extra bits
// (3.2.5). A match repeats what was put out so many bytes ago, itself included: distance 1 and
// length 9 make ten equal bytes of one. Numbers come with their lowest bit first, codes with their
// first bit first, and bytes are filled from their lowest bit up (3.1.1).
//
//   first byte          second byte
//   7 6 5 4 3 2 1 0     7 6 5 4 3 2 1 0
//   d d c c c b b a     ...       e d d      a: last block?  b: type  c: a code of 3 bits ...
//
// Speed comes from five things. The next bits stand in one word, which is filled up by one load
// and without a branch. One table look-up decodes a whole symbol, the place of its extra bits
// included, and where codes are short two of them (inflate_tables.h). Bounds are checked once for a
// round of several symbols. Short matches are copied without looking at length and distance.
//
// And what comes next is fetched before it is known what it is. Behind a literal stands a literal
// or a length, behind a length a distance, and the processor often guesses wrong which of the two:
//
//   entry --index--+--> next   in the table of literals and lengths   if entry is of a literal
//                  +--> far    in the table of distances              if it is of a length
//
// Both are read at the same index, and one is not used. When the processor has to start again
// behind the branch, the right one is there already.
//
// Two loops decode the symbols of a block. The fast one runs while so much input and output remain
// that neither can end within one of its rounds, and therefore checks for neither. The careful one
// decodes the rest and is the only one that can find an end. Both keep the order in which a reader
// of single bits would meet what is wrong.
#include "slim/inflate.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <iterator>
#include <limits>

#include "slim/crc32.h"
#include "slim/inflate_tables.h"

#if defined(__x86_64__) && !defined(MIRELO_PORTABLE)
#define MIRELO_INFLATE_BMI 1
#endif

// The fast loop must be compiled once for each kind of processor, not shared between them.
#define MIRELO_ALWAYS_INLINE inline __attribute__((always_inline))
#define MIRELO_INLINE_LAMBDA __attribute__((always_inline))

namespace {

using inflate::Codes;
using inflate::CodeShape;
using inflate::dropBits;
using inflate::Entry;

static_assert(std::endian::native == std::endian::little);

enum Result {
    kSuccess = 0,
    kOutputFull = 1,
    kInputExhausted = 2,
    kBadBlockType = -1,
    kBadStoredLength = -2,
    kTooManyCodes = -3,
    kBadCodeLengthCode = -4,
    kNothingToRepeat = -5,
    kTooManyLengths = -6,
    kBadLiteralCode = -7,
    kBadDistanceCode = -8,
    kNoEndOfBlock = -9,
    kBadSymbol = -10,
    kTooFarBack = -11,
};

// The bit buffer. `buffer` holds the next `count` bits, least significant first. Above them are
// zeros or already the bits that follow, so that those may be ORed in again.
struct BitReader {
    std::uint64_t buffer;
    unsigned count;
    const std::uint8_t* next;
    const std::uint8_t* end;
};

// Where the output goes. `produced` counts from `dest`. A sliding window (RFC 1951, section 2) is a
// buffer that moves along the output: what leaves it is only counted and, if wanted, summed up.
struct Stream {
    BitReader bits;
    std::uint8_t* dest;
    std::size_t capacity;
    std::size_t produced;
    bool isWindow = false;
    bool isSummed = false;
    std::uint64_t passed = 0;  // bytes that left the window
    std::uint64_t limit = 0;   // of `passed`
    std::size_t summed = 0;    // bytes of the window that are in `crc`
    std::uint32_t crc = 0;
};

// No distance is longer (RFC 1951, section 3.2.5): so much history has to stay in the window.
constexpr std::size_t kHistory = 32768;
// Small enough to stay in the second-level cache, large enough that moving the history is rare.
constexpr std::size_t kWindowSize = 6 * kHistory;

void sumUp(Stream& stream) {
    if (!stream.isSummed) return;
    stream.crc = crc32(stream.dest + stream.summed, stream.produced - stream.summed, stream.crc);
    stream.summed = stream.produced;
}

// Makes room in a window. False where there is none to make.
bool slide(Stream& stream) {
    if (!stream.isWindow || stream.passed > stream.limit) return false;
    sumUp(stream);
    const std::size_t leaving = stream.produced - std::min(stream.produced, kHistory);
    stream.produced -= leaving;
    std::memmove(stream.dest, stream.dest + leaving, stream.produced);
    stream.passed += leaving;
    stream.summed = stream.produced;
    return true;
}

bool hasRoom(Stream& stream, std::size_t length) {
    if (stream.capacity - stream.produced >= length) return true;
    return slide(stream);
}

MIRELO_ALWAYS_INLINE std::uint64_t load64(const std::uint8_t* from) {
    std::uint64_t word;
    std::memcpy(&word, from, sizeof word);
    return word;
}

MIRELO_ALWAYS_INLINE void store16(std::uint8_t* to, std::uint16_t word) {
    std::memcpy(to, &word, sizeof word);
}

// To at least 56 bits, without a branch; eight bytes must be left. Of `count` only the lowest six
// bits are looked at.
//
// The load is put in above the bits that are there. What does not fit falls off at the top, and
// what is no whole byte is look-ahead: it is not counted, and the next refill ORs the same bits to
// the same place. So `next` moves by the whole bytes that found room, (63 - count) / 8, which for
// counts below 64 is 7 - count / 8, and the count becomes 56 and its own remainder modulo 8.
MIRELO_ALWAYS_INLINE void refillWord(BitReader& bits) {
    bits.buffer |= load64(bits.next) << (bits.count & 63);
    bits.next += 7 - ((bits.count >> 3) & 7);
    bits.count |= 56;
}

void refillBytes(BitReader& bits) {
    while (bits.count < 56 && bits.next != bits.end) {
        bits.buffer |= std::uint64_t{*bits.next++} << bits.count;
        bits.count += 8;
    }
}

// To at least `needed` bits, 56 at most, or all that are left.
inline void refill(BitReader& bits, unsigned needed) {
    if (bits.count >= needed) return;
    if (bits.end - bits.next >= 8) {
        refillWord(bits);
    } else {
        refillBytes(bits);
    }
}

MIRELO_ALWAYS_INLINE void drop(BitReader& bits, unsigned count) {
    bits.buffer >>= count;
    bits.count -= count;
}

// The next `count` bits, which must be there.
inline unsigned take(BitReader& bits, unsigned count) {
    const auto taken = static_cast<unsigned>(bits.buffer & ((1U << count) - 1));
    drop(bits, count);
    return taken;
}

// The first byte of which no bit has been taken.
const std::uint8_t* unread(const BitReader& bits) {
    return bits.next - bits.count / 8;
}

// Compilers find none of these three instructions by themselves.

// Of `count` only the lowest eight bits are looked at, which must be less than 64.
template <bool hasBmi>
MIRELO_ALWAYS_INLINE std::uint64_t lowBits(std::uint64_t word, std::uint64_t count) {
#if defined(MIRELO_INFLATE_BMI)
    if constexpr (hasBmi) {
        std::uint64_t low;
        __asm__("bzhi %2, %1, %0" : "=r"(low) : "r"(word), "r"(count) : "cc");
        return low;
    }
#endif
    return word & ((1ULL << static_cast<std::uint8_t>(count)) - 1);
}

constexpr std::uint64_t kLiteralMask = (1U << inflate::kLiteralRootBits) - 1;
constexpr std::uint64_t kDistanceMask = (1U << inflate::kDistanceRootBits) - 1;

// The index of the symbol behind the one that `entry` decodes. Without the instruction it has as
// many bits as the larger root.
template <bool hasBmi>
MIRELO_ALWAYS_INLINE std::uint64_t nextIndex(std::uint64_t buffer, std::uint64_t entry) {
#if defined(MIRELO_INFLATE_BMI)
    if constexpr (hasBmi) {
        std::uint64_t index;
        __asm__("bextr %2, %1, %0" : "=r"(index) : "r"(buffer), "r"(entry) : "cc");
        return index;
    }
#endif
    return (buffer >> static_cast<std::uint8_t>(entry)) & kLiteralMask;
}

// The extra bits behind a code, in a buffer that still begins with the code.
template <bool hasBmi>
MIRELO_ALWAYS_INLINE std::size_t extraBits(Entry entry, std::uint64_t buffer) {
    return lowBits<hasBmi>(buffer, entry) >> inflate::codeBits(entry);
}

// 16 bytes in one register, which every x86-64 has.
using Block = std::uint8_t __attribute__((vector_size(16)));
constexpr std::size_t kBlock = sizeof(Block);

// Which byte of a block comes where.
struct Order {
    alignas(kBlock) std::uint8_t from[kBlock];
};

#if defined(MIRELO_INFLATE_BMI)
MIRELO_ALWAYS_INLINE Block inOrder(Block block, const Order& order) {
    __asm__("pshufb %1, %0" : "+x"(block) : "m"(order));
    return block;
}
#endif

MIRELO_ALWAYS_INLINE Block loadBlock(const std::uint8_t* from) {
    Block block;
    std::memcpy(&block, from, sizeof block);
    return block;
}

MIRELO_ALWAYS_INLINE void storeBlock(std::uint8_t* to, Block block) {
    std::memcpy(to, &block, sizeof block);
}

void copyBytes(std::uint8_t* out, std::size_t distance, std::size_t length) {
    for (std::size_t i = 0; i < length; ++i)
        out[i] = *(out + i - distance);
}

// A match that reaches back less than a block overlaps itself: it is a run, of which the first
// period stands there. Reading the others back from memory would wait for each store.
struct Run {
    Order first;   // in which the bytes that stand there make the first block of the run
    Order second;  // in which those of the first block make the second
};

// By distance; the last one keeps the order, for all that do not overlap.
constexpr auto kRuns = [] {
    std::array<Run, kBlock + 1> runs{};
    for (unsigned distance = 1; distance <= kBlock; ++distance) {
        for (unsigned i = 0; i < kBlock; ++i) {
            runs[distance].first.from[i] = static_cast<std::uint8_t>(i % distance);
            runs[distance].second.from[i] = static_cast<std::uint8_t>((kBlock + i) % distance);
        }
    }
    return runs;
}();

// Two blocks of a match, whatever its length. A copy must not read what it has just written itself,
// so the second block of a run comes from the first: where it would overlap, `from + near` is where
// the match begins.
template <bool hasBmi>
MIRELO_ALWAYS_INLINE void beginMatch(std::uint8_t* out, std::size_t distance) {
#if defined(MIRELO_INFLATE_BMI)
    if constexpr (hasBmi) {
        const std::uint8_t* const from = out - distance;
        const std::size_t near = std::min(distance, kBlock);
        storeBlock(out, inOrder(loadBlock(from), kRuns[near].first));
        storeBlock(out + kBlock, inOrder(loadBlock(from + near), kRuns[near].second));
        return;
    }
#endif
    if (distance < kBlock) return copyBytes(out, distance, 2 * kBlock);
    storeBlock(out, loadBlock(out - distance));
    storeBlock(out + kBlock, loadBlock(out + kBlock - distance));
}

// The rest of a run. Not where it is called: few are so long, and the registers are needed there.
__attribute__((noinline)) void continueRun(std::uint8_t* out, std::size_t distance,
                                           const std::uint8_t* end) {
    const Block first = loadBlock(out);
    const Block second = loadBlock(out + kBlock);
    const std::size_t wholePeriods = 2 * kBlock / distance * distance;
    for (out += wholePeriods; out < end; out += wholePeriods) {
        storeBlock(out, first);
        storeBlock(out + kBlock, second);
    }
}

// What `copyMatch` may write beyond the match: all but one byte of two blocks.
constexpr std::ptrdiff_t kCopyOverrun = 2 * kBlock;

// Most matches are shorter than two blocks: so much is copied before length or distance decide
// anything.
template <bool hasBmi>
MIRELO_ALWAYS_INLINE void copyMatch(std::uint8_t* out, std::size_t distance, std::size_t length) {
    const std::uint8_t* const end = out + length;
    const std::uint8_t* from = out - distance;
    beginMatch<hasBmi>(out, distance);
    if (length <= 2 * kBlock) [[likely]] {
        return;
    }
    if (distance < kBlock) return continueRun(out, distance, end);
    do {
        out += 2 * kBlock;
        from += 2 * kBlock;
        storeBlock(out, loadBlock(from));
        storeBlock(out + kBlock, loadBlock(from + kBlock));
    } while (out + 2 * kBlock < end);
}

int copyCarefully(Stream& stream, std::size_t distance, std::size_t length) {
    if (distance > stream.produced) return kTooFarBack;
    if (!hasRoom(stream, length)) return kOutputFull;
    copyBytes(stream.dest + stream.produced, distance, length);
    stream.produced += length;
    return kSuccess;
}

// Two refills and three entries of two literals fit between the checks of the fast loop.
constexpr std::ptrdiff_t kFastInput = 16;
constexpr std::ptrdiff_t kFastOutput = 6 + kCopyOverrun;

// Decodes until the end of the block, of the input or of the output is near. What is fetched is
// always one symbol ahead: that chain is what decoding waits for. Of the count of bits only the
// lowest six are meant, which spares cutting an entry to size.
template <bool hasBmi>
MIRELO_ALWAYS_INLINE int decodeFast(Stream& stream, const Codes& codes) {
    BitReader bits = stream.bits;
    std::uint8_t* const dest = stream.dest;
    std::uint8_t* out = dest + stream.produced;
    const std::uint8_t* const lastIn = bits.end - kFastInput;
    const std::uint8_t* const lastOut = dest + stream.capacity - kFastOutput;
    int result = kSuccess;
    Entry entry, next, far;

    const auto fetchBehind = [&](Entry fetched) MIRELO_INLINE_LAMBDA {
        entry = fetched;
        const std::uint64_t index = nextIndex<hasBmi>(bits.buffer, entry);
        next = codes.literals()[index];
        far = codes.distances()[hasBmi ? index : index & kDistanceMask];
        // Keeps compilers from moving each load to where it is used, behind the branch.
        __asm__ volatile("" : "+r"(next), "+r"(far));
    };
    const auto dropEntry = [&](std::uint64_t dropped) MIRELO_INLINE_LAMBDA {
        bits.buffer >>= static_cast<std::uint8_t>(dropped);
        bits.count -= static_cast<unsigned>(dropped);
    };
    const auto putLiterals = [&]() MIRELO_INLINE_LAMBDA {
        store16(out, inflate::literals(entry));
        out += inflate::literalCount(entry);
        dropEntry(entry);
    };

    refillWord(bits);
    fetchBehind(codes.literals()[bits.buffer & kLiteralMask]);
    while (bits.next <= lastIn) {
        if (!(entry & inflate::kNotLiteral)) [[unlikely]] {
            // Three entries of literals take 30 bits, a match 48: another refill is due before one.
            putLiterals();
            fetchBehind(next);
            if (!(entry & inflate::kNotLiteral)) {
                putLiterals();
                fetchBehind(next);
                if (!(entry & inflate::kNotLiteral)) {
                    putLiterals();
                    refillWord(bits);
                    fetchBehind(next);
                    if (out > lastOut) break;
                    continue;
                }
            }
            refillWord(bits);
        }
        if (entry & inflate::kRare) [[unlikely]] {
            fetchBehind(inflate::lookUpLiteral(codes, bits.buffer));
            if (entry & inflate::kRare) break;
            if (!(entry & inflate::kNotLiteral)) {
                putLiterals();
                refillWord(bits);
                fetchBehind(next);
                if (out > lastOut) break;
                continue;
            }
        }
        *out = static_cast<std::uint8_t>(inflate::literals(entry));
        out += inflate::literalCount(entry);
        const std::size_t length =
            inflate::lengthBase(entry) + extraBits<hasBmi>(entry, bits.buffer);
        dropEntry(entry);
        if (far & inflate::kRare) [[unlikely]] {
            far = inflate::lookUpDistance(codes, bits.buffer);
            if (far & inflate::kRare) {
                dropEntry(far);
                result = kBadSymbol;
                break;
            }
        }
        const Entry behind = codes.literals()[nextIndex<hasBmi>(bits.buffer, far)];
        const std::size_t distance =
            inflate::distanceBase(far) + extraBits<hasBmi>(far, bits.buffer);
        dropEntry(far);
        refillWord(bits);
        fetchBehind(behind);
        const bool isTooFar = reinterpret_cast<std::uintptr_t>(out) - distance <
                              reinterpret_cast<std::uintptr_t>(dest);
        const bool fits = lastOut - out >= static_cast<std::ptrdiff_t>(length);
        if (isTooFar || !fits) [[unlikely]] {
            stream.produced = static_cast<std::size_t>(out - dest);
            result = copyCarefully(stream, distance, length);
            out = dest + stream.produced;
            break;
        }
        copyMatch<hasBmi>(out, distance, length);
        out += length;
    }
    bits.count &= 63;
    stream.bits = bits;
    stream.produced = static_cast<std::size_t>(out - dest);
    return result;
}

int decodeFastPortable(Stream& stream, const Codes& codes) {
    return decodeFast<false>(stream, codes);
}

#if defined(MIRELO_INFLATE_BMI)
// With the byte shuffle that is older than both.
__attribute__((target("bmi,bmi2,ssse3"))) int decodeFastBmi(Stream& stream, const Codes& codes) {
    return decodeFast<true>(stream, codes);
}

bool hasBmi() {
    static const bool has = [] {
        __builtin_cpu_init();
        return __builtin_cpu_supports("bmi") != 0 && __builtin_cpu_supports("bmi2") != 0 &&
               __builtin_cpu_supports("ssse3") != 0;
    }();
    return has;
}
#endif

int decodeFastIfRoom(Stream& stream, const Codes& codes) {
    const bool room = stream.bits.end - stream.bits.next >= kFastInput &&
                      stream.capacity - stream.produced >= kFastOutput;
    if (!room) return kSuccess;
#if defined(MIRELO_INFLATE_BMI)
    if (hasBmi()) return decodeFastBmi(stream, codes);
#endif
    return decodeFastPortable(stream, codes);
}

// A length and a distance with all their bits: codes of 15 each, 5 and 13 extra bits. One refill
// gives 56, so that a whole match can be taken from it.
constexpr unsigned kLongestMatchBits = 15 + 5 + 15 + 13;

// What the careful loop returns when the fast one may go on.
constexpr int kGoOn = 3;

// To the end of the block; in a window only one symbol, because then there is room again. Zeros
// stand in for bits that the input does not have. A symbol that was looked up with them and needs
// more bits than there are shows that the input ended.
int decodeCarefully(Stream& stream, const Codes& codes) {
    BitReader& bits = stream.bits;
    do {
        refill(bits, kLongestMatchBits);
        const Entry entry = inflate::lookUpLiteral(codes, bits.buffer);
        if (dropBits(entry) > bits.count) return kInputExhausted;
        const std::size_t length =
            inflate::lengthBase(entry) + extraBits<false>(entry, bits.buffer);
        drop(bits, dropBits(entry));
        if (!(entry & inflate::kNotLiteral)) {
            if (!hasRoom(stream, 1)) return kOutputFull;
            stream.dest[stream.produced++] = static_cast<std::uint8_t>(inflate::literals(entry));
            continue;
        }
        if (entry & inflate::kRare) return entry & inflate::kEndOfBlock ? kSuccess : kBadSymbol;

        const Entry far = inflate::lookUpDistance(codes, bits.buffer);
        if (dropBits(far) > bits.count) return kInputExhausted;
        const std::size_t distance =
            inflate::distanceBase(far) + extraBits<false>(far, bits.buffer);
        drop(bits, dropBits(far));
        if (far & inflate::kRare) return kBadSymbol;
        if (const int result = copyCarefully(stream, distance, length); result != kSuccess) {
            return result;
        }
    } while (!stream.isWindow);
    return kGoOn;
}

int decodeSymbols(Stream& stream, const Codes& codes) {
    int result;
    do {
        result = decodeFastIfRoom(stream, codes);
        if (result == kSuccess) result = decodeCarefully(stream, codes);
    } while (result == kGoOn);
    return result;
}

// The lengths of the two codes, one after the other, themselves coded (RFC 1951, section 3.2.7): a
// run length coding in which 0 to 15 are lengths, 16 repeats the one before three to six times, 17
// and 18 are three to ten and eleven to 138 zeros. A run may pass from the first code into the
// second, but not beyond.
int readLengths(BitReader& bits, const Entry* codeLengths, std::uint8_t* lengths,
                std::size_t count) {
    constexpr std::uint8_t kBase[] = {3, 3, 11};
    constexpr std::uint8_t kExtraBits[] = {2, 3, 7};
    std::size_t filled = 0;
    while (filled < count) {
        refill(bits, 7 + 7);
        const Entry entry = inflate::lookUp<inflate::kCodeLengthRootBits>(codeLengths, bits.buffer);
        if (dropBits(entry) > bits.count) return kInputExhausted;
        drop(bits, dropBits(entry));
        const unsigned symbol = inflate::codeLength(entry);
        if (symbol < 16) {
            lengths[filled++] = static_cast<std::uint8_t>(symbol);
            continue;
        }
        if (symbol == 16 && filled == 0) return kNothingToRepeat;
        const std::uint8_t length = symbol == 16 ? lengths[filled - 1] : std::uint8_t{0};
        if (kExtraBits[symbol - 16] > bits.count) return kInputExhausted;
        const std::size_t repeat = kBase[symbol - 16] + take(bits, kExtraBits[symbol - 16]);
        if (repeat > count - filled) return kTooManyLengths;
        std::fill_n(lengths + filled, repeat, length);
        filled += repeat;
    }
    return kSuccess;
}

// The third code, in which the lengths of the other two are coded. Its own lengths have three bits
// each and come in an order in which the last ones are mostly zero and left out.
int readCodeLengthCode(BitReader& bits, std::size_t count, Entry* table) {
    constexpr std::uint8_t kOrder[] = {16, 17, 18, 0, 8,  7, 9,  6, 10, 5,
                                       11, 4,  12, 3, 13, 2, 14, 1, 15};
    std::uint8_t lengths[std::size(kOrder)] = {};
    for (std::size_t i = 0; i < count; ++i) {
        refill(bits, 3);
        if (bits.count < 3) return kInputExhausted;
        lengths[kOrder[i]] = static_cast<std::uint8_t>(take(bits, 3));
    }
    const CodeShape shape = inflate::buildCodeLengthTable(table, lengths, std::size(lengths));
    return shape == CodeShape::complete ? kSuccess : kBadCodeLengthCode;
}

// Bytes of input from which on pairs pay off.
constexpr std::ptrdiff_t kWorthPairs = 4096;

// Five bits, five bits and four bits say how many lengths there are of each code: HLIT, HDIST and
// HCLEN. The format has 286 literals and lengths and 30 distances; the counts could say 288 and 32.
int readDynamicCodes(BitReader& bits, Codes& codes) {
    refill(bits, 14);
    if (bits.count < 14) return kInputExhausted;
    const std::size_t literalCount = take(bits, 5) + 257;
    const std::size_t distanceCount = take(bits, 5) + 1;
    const std::size_t codeLengthCount = take(bits, 4) + 4;
    if (literalCount > 286 || distanceCount > 30) return kTooManyCodes;

    Entry codeLengths[inflate::kCodeLengthTableSize];
    int result = readCodeLengthCode(bits, codeLengthCount, codeLengths);
    if (result != kSuccess) return result;
    std::uint8_t lengths[286 + 30] = {};
    result = readLengths(bits, codeLengths, lengths, literalCount + distanceCount);
    if (result != kSuccess) return result;
    if (lengths[256] == 0) return kNoEndOfBlock;

    switch (inflate::buildLiteralTable(codes.literals(), lengths, literalCount)) {
        case CodeShape::complete:
        case CodeShape::single:
            break;
        default:
            return kBadLiteralCode;
    }
    if (bits.end - bits.next >= kWorthPairs) inflate::addPairs(codes.literals());
    switch (inflate::buildDistanceTable(codes.distances(), lengths + literalCount, distanceCount)) {
        case CodeShape::complete:
        case CodeShape::single:
        case CodeShape::empty:
            return kSuccess;
        default:
            return kBadDistanceCode;
    }
}

int decodeDynamicBlock(Stream& stream) {
    Codes codes;
    const int result = readDynamicCodes(stream.bits, codes);
    return result != kSuccess ? result : decodeSymbols(stream, codes);
}

// Bytes as they are (RFC 1951, section 3.2.4). The bits left in the byte that has been begun are
// dropped; whole bytes that the bit buffer took already are given back.
int copyStoredBlock(Stream& stream) {
    BitReader& bits = stream.bits;
    bits = {0, 0, unread(bits), bits.end};
    if (bits.end - bits.next < 4) return kInputExhausted;
    const std::size_t length = bits.next[0] + 256U * bits.next[1];
    const std::size_t complement = bits.next[2] + 256U * bits.next[3];
    bits.next += 4;
    if ((length ^ complement) != 0xFFFF) return kBadStoredLength;
    if (static_cast<std::size_t>(bits.end - bits.next) < length) return kInputExhausted;
    if (!stream.isWindow && stream.capacity - stream.produced < length) return kOutputFull;
    for (std::size_t left = length; left > 0;) {
        if (!hasRoom(stream, 1)) return kOutputFull;
        const std::size_t part = std::min(left, stream.capacity - stream.produced);
        std::memcpy(stream.dest + stream.produced, bits.next, part);
        bits.next += part;
        stream.produced += part;
        left -= part;
    }
    return kSuccess;
}

int decodeBlocks(Stream& stream) {
    for (;;) {
        refill(stream.bits, 3);
        if (stream.bits.count < 3) return kInputExhausted;
        const bool isLast = take(stream.bits, 1) != 0;
        int result = kBadBlockType;
        switch (take(stream.bits, 2)) {
            case 0:
                result = copyStoredBlock(stream);
                break;
            case 1:
                result = decodeSymbols(stream, inflate::kFixedCodes);
                break;
            case 2:
                result = decodeDynamicBlock(stream);
                break;
        }
        if (result != kSuccess || isLast) return result;
    }
}

// For who does not want the output itself.
int decodeThroughWindow(Stream& stream) {
    std::uint8_t window[kWindowSize];
    stream.dest = window;
    stream.capacity = sizeof window;
    stream.isWindow = true;
    const int result = decodeBlocks(stream);
    sumUp(stream);
    stream.dest = nullptr;
    return result;
}

}  // namespace

int inflateRaw(std::uint8_t* dest, std::size_t* destLen, const std::uint8_t* source,
               std::size_t* sourceLen) {
    Stream stream = {{0, 0, source, source + *sourceLen}, dest, *destLen, 0};
    stream.limit = std::numeric_limits<std::uint64_t>::max();
    const int result = dest != nullptr ? decodeBlocks(stream) : decodeThroughWindow(stream);
    if (result <= 0) {
        *destLen = static_cast<std::size_t>(stream.passed) + stream.produced;
        *sourceLen = static_cast<std::size_t>(unread(stream.bits) - source);
    }
    return result;
}

DecodedSum sumDecoded(const std::uint8_t* source, std::size_t sourceLen, std::uint64_t limit) {
    Stream stream = {{0, 0, source, source + sourceLen}, nullptr, 0, 0};
    stream.limit = limit;
    stream.isSummed = true;
    int code = decodeThroughWindow(stream);
    const std::uint64_t length = stream.passed + stream.produced;
    if (code == kSuccess && length > limit) code = kOutputFull;
    return {code, length, stream.crc};
}
