#include "slim/inflate.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include "tests/slim/inflate_check.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

// The fuzzer's corpus: streams for every code and for what the format allows at its edges. A file's
// name begins with the code, without its sign.
std::vector<std::pair<std::string, Bytes>> craftedStreams() {
    std::vector<std::pair<std::string, Bytes>> streams;
    for (const auto& entry : std::filesystem::directory_iterator(MIRELO_INFLATE_CORPUS)) {
        std::ifstream file(entry.path(), std::ios::binary);
        streams.emplace_back(entry.path().filename().string(),
                             Bytes(std::istreambuf_iterator<char>(file), {}));
    }
    return streams;
}

// Every length of match at every short distance and some far ones, in random surroundings.
Bytes matchesOfAllKinds() {
    std::mt19937 random(7);
    Bytes data;
    for (unsigned distance = 1; distance < 32768; distance += distance < 34 ? 1 : distance / 3) {
        for (unsigned length = 3; length <= 258; length += distance < 34 ? 1 : 60) {
            for (unsigned i = 0; i < std::min(distance, 40U); ++i)
                data.push_back(static_cast<std::uint8_t>(random()));
            for (unsigned i = 0; i < length && distance <= data.size(); ++i)
                data.push_back(data[data.size() - distance]);
        }
    }
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

}  // namespace

TEST(Inflate, RestoresWhatZlibPacked) {
    const Bytes data = matchesOfAllKinds();
    for (const int level : {0, 1, 6, 9}) {
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

// Cut short anywhere, with room for any part of the output, with any bit wrong.
TEST(Inflate, AgreesWithAReaderOfSingleBits) {
    for (const auto& [name, stream] : craftedStreams()) {
        const ReferenceResult whole = ReferenceInflate::decode(stream, {});
        EXPECT_EQ(-whole.code, std::stoi(name)) << name;
        const std::size_t size = whole.output.size();
        for (std::size_t length = 0; length <= stream.size(); ++length)
            EXPECT_EQ(disagreement(std::span(stream).first(length), size), "") << name << length;
        for (std::size_t room = 0; room <= size; room += 1 + room / 400)
            EXPECT_EQ(disagreement(stream, room), "") << name << room;
        for (std::size_t bit = 0; bit < 8 * stream.size(); bit += bit < 1200 ? 1 : 7) {
            Bytes flipped = stream;
            flipped[bit / 8] = static_cast<std::uint8_t>(flipped[bit / 8] ^ 1 << bit % 8);
            EXPECT_EQ(disagreement(flipped, 2 * size), "") << name << bit;
            EXPECT_EQ(disagreement(flipped, {}), "") << name << bit;
        }
    }
}
