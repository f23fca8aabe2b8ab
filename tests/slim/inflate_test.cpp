#include "slim/inflate.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "tests/slim/bit_writer.h"
#include "tests/slim/inflate_check.h"

#if defined(MIRELO_HAVE_ZLIB)
#include <zlib.h>
#endif

namespace {

using Bytes = std::vector<std::uint8_t>;

// Writes the header of a dynamic block with these lengths, each as four bits.
BitWriter dynamicBlock(std::vector<unsigned> literals, std::vector<unsigned> distances) {
    BitWriter writer;
    writer.blockHeader(true, 2);
    writer.dynamicHeader(static_cast<unsigned>(literals.size()),
                         static_cast<unsigned>(distances.size()),
                         {0, 0, 0, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4, 4});
    literals.insert(literals.end(), distances.begin(), distances.end());
    for (const unsigned length : literals)
        writer.code(length, 4);
    return writer;
}

std::vector<unsigned> lengthsOf(std::initializer_list<std::pair<unsigned, unsigned>> codes) {
    std::vector<unsigned> lengths(257);
    for (const auto& [symbol, length] : codes) {
        if (lengths.size() <= symbol) lengths.resize(symbol + 1);
        lengths[symbol] = length;
    }
    return lengths;
}

BitWriter fixedBlock() {
    return BitWriter().blockHeader(true, 1);
}

BitWriter header(unsigned literals, unsigned distances, std::initializer_list<unsigned> lengths) {
    return BitWriter().blockHeader(true, 2).dynamicHeader(literals, distances, lengths);
}

struct Crafted {
    const char* what;
    int code;
    Bytes stream;
};

// Every code, and what the format allows at its edges. Symbols 65 and 256 have the codes 0 and 1
// where both have one bit; where 257 is a symbol too, the codes are 0, 10 and 11.
std::vector<Crafted> craftedStreams() {
    const auto end = lengthsOf({{256, 1}});
    const auto letter = lengthsOf({{65, 1}, {256, 1}});
    const auto triple = lengthsOf({{65, 1}, {256, 2}, {257, 2}});
    const auto afterMatch = [&](std::vector<unsigned> distances) {
        return dynamicBlock(triple, std::move(distances)).code(0, 1).code(3, 2);
    };
    const auto afterLetter = [] { return fixedBlock().fixedSymbol(65); };
    return {
        {"no input", 2, {}},
        {"empty stored block", 0, {0x01, 0x00, 0x00, 0xFF, 0xFF}},
        {"bits to skip before a stored block", 0, {0xF9, 0x02, 0x00, 0xFD, 0xFF, 'a', 'b'}},
        {"reserved type", -1, {0x07}},
        {"low byte of the complement", -2, {0x01, 0x01, 0x00, 0xFF, 0xFF, 'a'}},
        {"high byte of the complement", -2, {0x01, 0x01, 0x00, 0xFE, 0xFE, 'a'}},
        {"287 literals", -3, header(287, 1, {0, 0, 0, 0}).done()},
        {"31 distances", -3, header(286, 31, {0, 0, 0, 0}).done()},
        {"no code-length code", -4, header(257, 1, {0, 0, 0, 0}).done()},
        {"single code-length code", -4, header(257, 1, {0, 0, 0, 1}).done()},
        {"three codes of one bit", -4, header(257, 1, {1, 1, 0, 1}).done()},
        {"repeat of nothing", -5, header(257, 1, {1, 0, 0, 1}).code(1, 1).done()},
        {"276 zeros for 258", -6, header(257, 1, {0, 0, 1, 1}).bits(255, 8).bits(255, 8).done()},
        {"over-subscribed literals", -7,
         dynamicBlock(lengthsOf({{1, 1}, {65, 1}, {256, 1}}), {0}).done()},
        {"incomplete literals", -7, dynamicBlock(lengthsOf({{65, 1}, {256, 2}}), {0}).done()},
        {"single literal of two bits", -7, dynamicBlock(lengthsOf({{256, 2}}), {0}).done()},
        {"both codes bad", -7, dynamicBlock(lengthsOf({{256, 2}}), {1, 1, 1}).done()},
        {"over-subscribed distances", -8, dynamicBlock(letter, {1, 1, 1}).done()},
        {"incomplete distances", -8, dynamicBlock(letter, {1, 2}).done()},
        {"no end and both codes bad", -9, dynamicBlock(lengthsOf({{65, 2}}), {1, 1, 1}).done()},
        {"single literal", 0, dynamicBlock(end, {0}).code(0, 1).done()},
        {"not the single literal", -10, dynamicBlock(end, {0}).bits(0x7FFF, 15).done()},
        {"literals only", 0, dynamicBlock(letter, {0, 0}).code(0, 1).code(1, 1).done()},
        {"match without distances", -10, afterMatch({0}).bits(0, 15).done()},
        {"single distance", 0, afterMatch({1}).code(0, 1).code(2, 2).done()},
        {"not the single distance", -10, afterMatch({1}).bits(0x7FFF, 15).done()},
        {"length symbol 286", -10, fixedBlock().fixedSymbol(286).done()},
        {"length symbol 287", -10, fixedBlock().fixedSymbol(287).done()},
        {"distance symbol 30", -10, afterLetter().fixedSymbol(257).code(30, 5).bits(0, 10).done()},
        {"distance 2 after one byte", -11, afterLetter().fixedMatch(3, 2).done()},
        {"distance 1 after one byte", 0, afterLetter().fixedMatch(258, 1).fixedSymbol(256).done()},
    };
}

TEST(Inflate, GivesEachCode) {
    for (const Crafted& crafted : craftedStreams()) {
        Bytes out(300);
        std::size_t outSize = out.size(), inSize = crafted.stream.size();
        EXPECT_EQ(inflateRaw(out.data(), &outSize, crafted.stream.data(), &inSize), crafted.code)
            << crafted.what;
    }
}

// Each length of match at each distance, near enough for the copies to overlap, and far ones.
Bytes everyMatch() {
    constexpr unsigned kFarthest = 34;
    BitWriter writer = fixedBlock();
    for (unsigned i = 0; i < kFarthest; ++i)
        writer.fixedSymbol(i * 37 % 256);
    for (unsigned distance = 1; distance <= kFarthest; ++distance) {
        for (unsigned length = 3; length <= 258; ++length) {
            writer.fixedSymbol((distance * 7 + length) % 256).fixedMatch(length, distance);
        }
    }
    for (unsigned distance = 35; distance <= 32768; distance += distance / 3) {
        writer.fixedSymbol(distance % 256).fixedMatch(distance % 256 + 3, distance);
    }
    return writer.fixedMatch(258, 32768).fixedSymbol(256).done();
}

TEST(Inflate, CopiesEveryMatch) {
    const Bytes stream = everyMatch();
    const std::size_t size = ReferenceInflate::decode(stream, {}).output.size();
    EXPECT_EQ(disagreement(stream, size), "");
    EXPECT_EQ(disagreement(stream, size - 1), "");
    EXPECT_EQ(disagreement(stream, {}), "");
}

#if defined(MIRELO_HAVE_ZLIB)

// Letters so uneven that their codes reach 15 bits, repeats near and far, and noise.
Bytes variedData(std::size_t size) {
    std::mt19937 random(7);
    Bytes data;
    while (data.size() < size) {
        const auto kind = random() % 3;
        const std::size_t distance = 1 + random() % (random() % 4 == 0 ? 32768 : 12);
        for (std::size_t left = 1 + random() % 60; left > 0; --left) {
            unsigned letter = 0;
            while (letter < 20 && random() % 13 < 8)
                ++letter;
            const bool repeats = kind == 0 && distance <= data.size();
            data.push_back(repeats     ? data[data.size() - distance]
                           : kind == 1 ? static_cast<std::uint8_t>('a' + letter)
                                       : static_cast<std::uint8_t>(random()));
        }
    }
    data.resize(size);
    return data;
}

Bytes deflated(const Bytes& data, int level, int strategy) {
    z_stream z = {};
    EXPECT_EQ(deflateInit2(&z, level, Z_DEFLATED, -15, 9, strategy), Z_OK);
    Bytes stream(deflateBound(&z, static_cast<uLong>(data.size())));
    z.next_in = const_cast<Bytef*>(data.data());
    z.avail_in = static_cast<uInt>(data.size());
    z.next_out = stream.data();
    z.avail_out = static_cast<uInt>(stream.size());
    EXPECT_EQ(deflate(&z, Z_FINISH), Z_STREAM_END);
    stream.resize(z.total_out);
    deflateEnd(&z);
    return stream;
}

TEST(Inflate, RestoresWhatZlibPacked) {
    const Bytes data = variedData(200000);
    for (int level = 0; level <= 9; ++level) {
        for (int strategy = Z_DEFAULT_STRATEGY; strategy <= Z_FIXED; ++strategy) {
            Bytes stream = deflated(data, level, strategy);
            const std::size_t packed = stream.size();
            stream.push_back(0xAA);
            Bytes out(data.size());
            std::size_t outSize = out.size(), inSize = stream.size();
            EXPECT_EQ(inflateRaw(out.data(), &outSize, stream.data(), &inSize), 0);
            EXPECT_EQ(inSize, packed) << "level " << level << " strategy " << strategy;
            EXPECT_TRUE(outSize == out.size() && out == data) << level << " " << strategy;
        }
    }
}

#endif

std::vector<Bytes> shortStreams() {
    std::vector<Bytes> streams;
    for (const Crafted& crafted : craftedStreams())
        streams.push_back(crafted.stream);
    BitWriter nearAndFar = fixedBlock();
    for (unsigned i = 0; i < 60; ++i) {
        nearAndFar.fixedSymbol(i * 5 % 256).fixedMatch(3 + i % 9, 1 + i * 3 % (i + 1));
    }
    streams.push_back(nearAndFar.fixedSymbol(256).done());
#if defined(MIRELO_HAVE_ZLIB)
    for (const int strategy : {Z_DEFAULT_STRATEGY, Z_HUFFMAN_ONLY, Z_FIXED}) {
        streams.push_back(deflated(variedData(700), 9, strategy));
    }
#endif
    return streams;
}

// Cut short anywhere, with room for any part of the output, with any bit of the beginning wrong and
// some of the rest.
TEST(Inflate, AgreesWithAReaderOfSingleBits) {
    for (const Bytes& stream : shortStreams()) {
        const std::size_t size = ReferenceInflate::decode(stream, {}).output.size();
        for (std::size_t length = 0; length <= stream.size(); ++length) {
            EXPECT_EQ(disagreement(std::span(stream).first(length), size), "") << length;
        }
        for (std::size_t capacity = 0; capacity <= size; ++capacity) {
            EXPECT_EQ(disagreement(stream, capacity), "") << capacity;
        }
        for (std::size_t bit = 0; bit < 8 * stream.size(); bit += bit < 800 ? 1 : 7) {
            Bytes flipped = stream;
            flipped[bit / 8] = static_cast<std::uint8_t>(flipped[bit / 8] ^ 1 << bit % 8);
            EXPECT_EQ(disagreement(flipped, 2 * size), "") << bit;
            EXPECT_EQ(disagreement(flipped, {}), "") << bit;
        }
    }
}

}  // namespace
