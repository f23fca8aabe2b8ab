#include "slim/crc32.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <vector>

std::uint32_t crc32Portable(const std::uint8_t* bytes, std::size_t length, std::uint32_t before);

// Lengths around each step of both forms, at every alignment; the buffers end where the bytes do.
TEST(Crc32, BothFormsAgreeWithZlib) {
    for (std::size_t length = 0; length < 700; ++length) {
        const std::size_t offset = length % 16;
        std::vector<std::uint8_t> buffer(offset + length);
        auto state = static_cast<std::uint32_t>(length);
        for (std::uint8_t& byte : buffer) {
            state = state * 1664525 + 1013904223;
            byte = static_cast<std::uint8_t>(state >> 24);
        }
        const std::uint8_t* const bytes = buffer.data() + offset;
        const auto expected = static_cast<std::uint32_t>(::crc32_z(0, bytes, length));
        EXPECT_EQ(crc32(bytes, length), expected) << length;
        EXPECT_EQ(crc32Portable(bytes, length, 0), expected) << length;
        const std::size_t part = length / 3;
        EXPECT_EQ(crc32(bytes + part, length - part, crc32(bytes, part)), expected) << length;
    }
}
