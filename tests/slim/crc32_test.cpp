#include "slim/crc32.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <random>
#include <vector>

std::uint32_t crc32Portable(const std::uint8_t* bytes, std::size_t length, std::uint32_t before);

// Lengths around each step of both forms, at every alignment; the buffers end where the bytes do.
TEST(Crc32, BothFormsAgreeWithZlib) {
    std::mt19937 random(7);
    for (std::size_t length = 0; length < 700; ++length) {
        std::vector<std::uint8_t> buffer(length % 16 + length);
        for (std::uint8_t& byte : buffer)
            byte = static_cast<std::uint8_t>(random());
        const std::uint8_t* const bytes = buffer.data() + length % 16;
        const auto expected = static_cast<std::uint32_t>(::crc32_z(0, bytes, length));
        EXPECT_EQ(crc32Portable(bytes, length, 0), expected) << length;
        const std::size_t part = length / 3;
        EXPECT_EQ(crc32(bytes, length), expected) << length;
        EXPECT_EQ(crc32(bytes + part, length - part, crc32(bytes, part)), expected) << length;
    }
}
