#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include "tests/slim/document_builder.h"
#include "tests/slim/inflate_oracle.h"

namespace {

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
    // Codes so short that the tables decode two of them at once.
    for (int i = 0; i < 50000; ++i)
        data.push_back(u8"eeeeeeeetttaaoin"[random() % 16]);
    // Longer than the window: at every turn of it something refers far back.
    for (int i = 0; i < 300000; ++i)
        data.push_back(data[data.size() - 30000]);
    return data;
}

constexpr std::pair<int, int> kPackings[] = {  // level, strategy
    {0, Z_DEFAULT_STRATEGY},
    {1, Z_FIXED},
    {6, Z_DEFAULT_STRATEGY},
    {9, Z_HUFFMAN_ONLY},
    {9, Z_RLE}};

}  // namespace

TEST(Inflate, RestoresWhatZlibPacked) {
    const Bytes data = matchesOfAllKinds();
    for (const auto& [level, strategy] : kPackings) {
        Bytes stream = deflated(data, level, strategy);
        stream.push_back(0xAA);  // is not the stream's
        EXPECT_TRUE(agreesWithZlib(stream)) << level << " " << strategy;
    }
}

// A stream of the fuzzer's corpus begins its name with its code, without the sign.
TEST(Inflate, TellsWhatIsWrong) {
    for (const auto& entry : std::filesystem::directory_iterator(MIRELO_SLIM_CORPUS "/inflate")) {
        std::ifstream file(entry.path(), std::ios::binary);
        const Bytes stream(std::istreambuf_iterator<char>(file), {});
        const std::string name = entry.path().filename().string();
        Bytes out(1 << 20);
        std::size_t produced = out.size(), consumed = stream.size();
        EXPECT_EQ(-inflateRaw(out.data(), &produced, stream.data(), &consumed), std::stoi(name))
            << name;
    }
}
