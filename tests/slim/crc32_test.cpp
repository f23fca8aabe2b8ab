#include "slim/crc32.h"

#include <gtest/gtest.h>

#include <string_view>
#include <vector>

std::uint32_t crc32Portable(const std::uint8_t* bytes, std::size_t length);

namespace {

std::uint32_t crcByBits(const std::uint8_t* bytes, std::size_t length) {
    std::uint32_t crc = 0xFFFFFFFF;
    for (std::size_t i = 0; i < length; ++i) {
        crc ^= bytes[i];
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ ((crc & 1) != 0 ? 0xEDB88320 : 0);
    }
    return ~crc;
}

TEST(Crc32, HasTheStandardCheckValue) {
    const std::string_view digits = "123456789";
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(digits.data());
    EXPECT_EQ(crc32(bytes, digits.size()), 0xCBF43926U);
    EXPECT_EQ(crc32(nullptr, 0), 0U);
}

// Lengths around each step of both forms, at every alignment; the buffers end where the bytes do.
TEST(Crc32, BothFormsAgreeWithSingleBits) {
    for (std::size_t length = 0; length < 400; ++length) {
        const std::size_t offset = length % 16;
        std::vector<std::uint8_t> buffer(offset + length);
        std::uint32_t state = static_cast<std::uint32_t>(length);
        for (std::uint8_t& byte : buffer) {
            state = state * 1664525 + 1013904223;
            byte = static_cast<std::uint8_t>(state >> 24);
        }
        const std::uint8_t* const bytes = buffer.data() + offset;
        const std::uint32_t expected = crcByBits(bytes, length);
        EXPECT_EQ(crc32(bytes, length), expected) << length;
        EXPECT_EQ(crc32Portable(bytes, length), expected) << length;
    }
}

}  // namespace
