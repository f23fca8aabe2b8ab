// The bytes of a message are the coefficients of a polynomial over GF(2), the first bit the
// highest; its CRC is the remainder modulo P (ISO/IEC 13239). Bits are reflected throughout: the
// lowest bit of a word stands for its highest power.
//
// The register starts as all ones and is complemented at the end, so that zeros at either end count
// too (the convention of ZIP, application note 4.4.7, and of gzip, RFC 1952 section 8).
//
// By table: a byte that leaves the register takes with it what it means for the 32 bits below.
// Eight tables, one for each distance to the end of a word, do eight bytes in independent look-ups.
//
// Folding replaces 128 bits by others of the same remainder further on: a part A that stands n bits
// before the target counts as A * x^n there, and A * (x^n mod P) is short enough to be added in.
#include "slim/crc32.h"

#include <array>
#include <bit>
#include <cstring>

#if defined(__x86_64__) && !defined(MIRELO_PORTABLE)
#include <immintrin.h>
#define MIRELO_CRC32_FOLDING 1
#endif

namespace {

constexpr std::uint32_t kPolynomial = 0xEDB88320;

static_assert(std::endian::native == std::endian::little);

constexpr std::uint32_t timesX(std::uint32_t remainder) {
    return (remainder >> 1) ^ ((remainder & 1) != 0 ? kPolynomial : 0);
}

// kTables[k][b] is what byte b contributes when k more bytes follow it.
constexpr auto kTables = [] {
    std::array<std::array<std::uint32_t, 256>, 8> tables{};
    for (std::uint32_t byte = 0; byte < 256; ++byte) {
        std::uint32_t crc = byte;
        for (int bit = 0; bit < 8; ++bit)
            crc = timesX(crc);
        tables[0][byte] = crc;
    }
    for (std::size_t k = 1; k < tables.size(); ++k) {
        for (std::size_t byte = 0; byte < 256; ++byte) {
            const std::uint32_t before = tables[k - 1][byte];
            tables[k][byte] = (before >> 8) ^ tables[0][before & 0xFF];
        }
    }
    return tables;
}();

std::uint32_t load32(const std::uint8_t* bytes) {
    std::uint32_t word;
    std::memcpy(&word, bytes, sizeof word);
    return word;
}

// What four bytes contribute when so many more follow them.
template <std::size_t following>
std::uint32_t contribution(std::uint32_t bytes) {
    const std::uint32_t early =
        kTables[following + 3][bytes & 0xFF] ^ kTables[following + 2][(bytes >> 8) & 0xFF];
    const std::uint32_t late =
        kTables[following + 1][(bytes >> 16) & 0xFF] ^ kTables[following][bytes >> 24];
    return early ^ late;
}

std::uint32_t updateByTable(std::uint32_t crc, const std::uint8_t* bytes, std::size_t length) {
    for (; length >= 8; bytes += 8, length -= 8) {
        crc = contribution<4>(crc ^ load32(bytes)) ^ contribution<0>(load32(bytes + 4));
    }
    for (; length > 0; ++bytes, --length) {
        crc = (crc >> 8) ^ kTables[0][(crc ^ *bytes) & 0xFF];
    }
    return crc;
}

#if defined(MIRELO_CRC32_FOLDING)

constexpr std::uint64_t powerOfX(unsigned exponent) {
    std::uint32_t remainder = 0x80000000;
    for (; exponent > 0; --exponent)
        remainder = timesX(remainder);
    return std::uint64_t{remainder} << 32;
}

// The multipliers that carry 128 bits `distance` bits on. Its lower, earlier half stands 64 bits
// further away. The product of two reflected words comes out one bit low, which is one power of x.
struct FoldingKey {
    std::uint64_t earlier;
    std::uint64_t later;
};

constexpr FoldingKey foldingKey(unsigned distance) {
    return {powerOfX(distance + 64 - 1), powerOfX(distance - 1)};
}

constexpr FoldingKey kByOneBlock = foldingKey(1 * 128);
constexpr FoldingKey kByTwoBlocks = foldingKey(2 * 128);
constexpr FoldingKey kByThreeBlocks = foldingKey(3 * 128);
constexpr FoldingKey kByFourBlocks = foldingKey(4 * 128);
constexpr FoldingKey kBySixBlocks = foldingKey(6 * 128);
constexpr FoldingKey kByEightBlocks = foldingKey(8 * 128);

#define MIRELO_FOLDING __attribute__((target("pclmul")))

MIRELO_FOLDING inline __m128i loadBlock(const std::uint8_t* bytes) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
}

MIRELO_FOLDING inline void storeBlock(std::uint8_t* bytes, __m128i block) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(bytes), block);
}

MIRELO_FOLDING inline __m128i loadKey(FoldingKey key) {
    return _mm_set_epi64x(static_cast<long long>(key.later), static_cast<long long>(key.earlier));
}

MIRELO_FOLDING inline __m128i fold(__m128i block, __m128i key, __m128i onto) {
    const __m128i earlier = _mm_clmulepi64_si128(block, key, 0x00);
    const __m128i later = _mm_clmulepi64_si128(block, key, 0x11);
    return _mm_xor_si128(_mm_xor_si128(earlier, later), onto);
}

// The accumulator and `length` more bytes, less than a block, are a message of one block and a bit.
// It is cut not behind its first block but before its last one:
//
//   0000000000000000AAAAAAAAAAAAAAAABBBBBB      16 zeros, 16 bytes of the accumulator, 6 more
//         0000000000AAAAAA                      the bit
//                         AAAAAAAAAABBBBBB      the block
MIRELO_FOLDING inline __m128i foldTail(__m128i accumulator, __m128i byOne,
                                       const std::uint8_t* bytes, std::size_t length) {
    if (length == 0) return accumulator;
    std::uint8_t message[48];
    storeBlock(message, _mm_setzero_si128());
    // A whole block that ends with the bytes, and over what was before them the accumulator.
    storeBlock(message + 16 + length, loadBlock(bytes + length - 16));
    storeBlock(message + 16, accumulator);
    return fold(loadBlock(message + length), byOne, loadBlock(message + 16 + length));
}

MIRELO_FOLDING inline std::uint32_t foldRest(__m128i accumulator, const std::uint8_t* bytes,
                                             std::size_t length) {
    const __m128i byOne = loadKey(kByOneBlock);
    for (; length >= 16; bytes += 16, length -= 16)
        accumulator = fold(accumulator, byOne, loadBlock(bytes));
    accumulator = foldTail(accumulator, byOne, bytes, length);
    std::uint8_t folded[16];
    storeBlock(folded, accumulator);
    return updateByTable(0, folded, sizeof folded);
}

constexpr std::size_t kLeastFolded = 64;

// Four accumulators, because one multiplication takes as long as four can be started in.
MIRELO_FOLDING std::uint32_t updateByFolding(std::uint32_t crc, const std::uint8_t* bytes,
                                             std::size_t length) {
    const __m128i byFour = loadKey(kByFourBlocks);
    const __m128i byOne = loadKey(kByOneBlock);
    __m128i a = _mm_xor_si128(loadBlock(bytes), _mm_cvtsi32_si128(static_cast<int>(crc)));
    __m128i b = loadBlock(bytes + 16);
    __m128i c = loadBlock(bytes + 32);
    __m128i d = loadBlock(bytes + 48);
    for (bytes += 64, length -= 64; length >= 64; bytes += 64, length -= 64) {
        a = fold(a, byFour, loadBlock(bytes));
        b = fold(b, byFour, loadBlock(bytes + 16));
        c = fold(c, byFour, loadBlock(bytes + 32));
        d = fold(d, byFour, loadBlock(bytes + 48));
    }
    a = fold(a, loadKey(kByThreeBlocks), fold(b, loadKey(kByTwoBlocks), fold(c, byOne, d)));
    return foldRest(a, bytes, length);
}

// Two blocks at once. The compiler does not align the stack to 32 bytes on Windows, so that only an
// optimised build, which needs no stack here, may do it.
#if defined(__OPTIMIZE__) || !defined(_WIN32)
#define MIRELO_CRC32_PAIRS 1
#define MIRELO_PAIRS __attribute__((target("vpclmulqdq,avx2,pclmul")))

MIRELO_PAIRS inline __m256i loadPair(const std::uint8_t* bytes) {
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(bytes));
}

MIRELO_PAIRS inline __m256i loadPairKey(FoldingKey key) {
    return _mm256_broadcastsi128_si256(loadKey(key));
}

MIRELO_PAIRS inline __m256i foldPair(__m256i pair, __m256i key, __m256i onto) {
    const __m256i earlier = _mm256_clmulepi64_epi128(pair, key, 0x00);
    const __m256i later = _mm256_clmulepi64_epi128(pair, key, 0x11);
    return _mm256_xor_si256(_mm256_xor_si256(earlier, later), onto);
}

constexpr std::size_t kLeastPaired = 256;

MIRELO_PAIRS std::uint32_t updateByPairs(std::uint32_t crc, const std::uint8_t* bytes,
                                         std::size_t length) {
    const __m256i byEight = loadPairKey(kByEightBlocks);
    const __m256i before = _mm256_zextsi128_si256(_mm_cvtsi32_si128(static_cast<int>(crc)));
    __m256i a = _mm256_xor_si256(loadPair(bytes), before);
    __m256i b = loadPair(bytes + 32);
    __m256i c = loadPair(bytes + 64);
    __m256i d = loadPair(bytes + 96);
    for (bytes += 128, length -= 128; length >= 128; bytes += 128, length -= 128) {
        a = foldPair(a, byEight, loadPair(bytes));
        b = foldPair(b, byEight, loadPair(bytes + 32));
        c = foldPair(c, byEight, loadPair(bytes + 64));
        d = foldPair(d, byEight, loadPair(bytes + 96));
    }
    c = foldPair(c, loadPairKey(kByTwoBlocks), d);
    b = foldPair(b, loadPairKey(kByFourBlocks), c);
    a = foldPair(a, loadPairKey(kBySixBlocks), b);
    const __m128i joined =
        fold(_mm256_castsi256_si128(a), loadKey(kByOneBlock), _mm256_extracti128_si256(a, 1));
    return foldRest(joined, bytes, length);
}
#endif

// What this processor can do.
struct Folding {
    bool single = false;
    bool pairs = false;
};

Folding detectFolding() {
    __builtin_cpu_init();
    const bool single = __builtin_cpu_supports("pclmul") != 0;
    return {single, single && __builtin_cpu_supports("avx2") != 0 &&
                        __builtin_cpu_supports("vpclmulqdq") != 0};
}

#endif

std::uint32_t update(std::uint32_t crc, const std::uint8_t* bytes, std::size_t length) {
#if defined(MIRELO_CRC32_FOLDING)
    static const Folding folding = detectFolding();
#if defined(MIRELO_CRC32_PAIRS)
    if (length >= kLeastPaired && folding.pairs) return updateByPairs(crc, bytes, length);
#endif
    if (length >= kLeastFolded && folding.single) return updateByFolding(crc, bytes, length);
#endif
    return updateByTable(crc, bytes, length);
}

}  // namespace

std::uint32_t crc32(const std::uint8_t* bytes, std::size_t length, std::uint32_t before) {
    return ~update(~before, bytes, length);
}
