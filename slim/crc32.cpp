#include "slim/crc32.h"

#include <array>

namespace {

constexpr auto kTable = [] {
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t byte = 0; byte < 256; ++byte) {
        std::uint32_t crc = byte;
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ (crc & 1 ? 0xEDB88320U : 0);
        table[byte] = crc;
    }
    return table;
}();

}  // namespace

std::uint32_t crc32(const std::uint8_t* bytes, std::size_t length) {
    std::uint32_t crc = 0xFFFFFFFF;
    for (std::size_t i = 0; i < length; ++i)
        crc = (crc >> 8) ^ kTable[(crc ^ bytes[i]) & 0xFF];
    return ~crc;
}
