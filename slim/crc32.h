// The checksum of ZIP entries.
#pragma once

#include <cstddef>
#include <cstdint>

/// The CRC-32 of ISO-HDLC, ZIP and gzip: reflected polynomial 0xEDB88320, initial value and final
/// complement 0xFFFFFFFF. 0 for no bytes, when `bytes` may be null. With the CRC-32 `before` of
/// what comes before them, that of both together. Safe on any thread.
std::uint32_t crc32(const std::uint8_t* bytes, std::size_t length, std::uint32_t before = 0);
