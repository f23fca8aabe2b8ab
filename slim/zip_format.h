// The records of a single-disk ZIP archive: PKWARE's application note, sections 4.3.7, 4.3.12 and
// 4.3.16. Every field is little-endian.
//
//   [local header][name][extra][data]   ...one for every entry
//   [central header][name][extra][comment]   ...one for every entry, together the directory
//   [end record][comment]
//
//   local header    0 signature  4 version  6 flags  8 method  10 time  12 date  14 CRC-32
//     30 bytes     18 compressed size  22 uncompressed size  26 name length  28 extra length
//   central header  0 signature  4 made by  6 version  8 flags  10 method  12 time  14 date
//     46 bytes     16 CRC-32  20 compressed size  24 uncompressed size  28 name length
//                  30 extra length  32 comment length  34 disk  36, 38 attributes
//                  42 offset of the local header
//   end record      0 signature  4, 6 disks  8, 10 entries  12 size and 16 offset of the directory
//     22 bytes     20 comment length
#pragma once

#include <cstddef>
#include <cstdint>

namespace zip {

inline constexpr std::uint16_t kStored = 0;
inline constexpr std::uint16_t kDeflated = 8;

inline constexpr std::uint32_t kLocalSignature = 0x04034b50;
inline constexpr std::size_t kLocalSize = 30;
inline constexpr std::size_t kLocalFlags = 6;
inline constexpr std::size_t kLocalMethod = 8;
inline constexpr std::size_t kLocalNameLength = 26;
inline constexpr std::size_t kLocalExtraLength = 28;

inline constexpr std::uint32_t kCentralSignature = 0x02014b50;
inline constexpr std::size_t kCentralSize = 46;
inline constexpr std::size_t kCentralFlags = 8;
inline constexpr std::size_t kCentralMethod = 10;
inline constexpr std::size_t kCentralTime = 12;
inline constexpr std::size_t kCentralDate = 14;
inline constexpr std::size_t kCentralCrc = 16;
inline constexpr std::size_t kCentralCompressedSize = 20;
inline constexpr std::size_t kCentralUncompressedSize = 24;
inline constexpr std::size_t kCentralNameLength = 28;
inline constexpr std::size_t kCentralExtraLength = 30;
inline constexpr std::size_t kCentralCommentLength = 32;
inline constexpr std::size_t kCentralLocalOffset = 42;

inline constexpr std::uint32_t kEndSignature = 0x06054b50;
inline constexpr std::size_t kEndSize = 22;
inline constexpr std::size_t kEndTotalEntries = 10;
inline constexpr std::size_t kEndDirectorySize = 12;
inline constexpr std::size_t kEndDirectoryOffset = 16;
inline constexpr std::size_t kEndCommentLength = 20;
inline constexpr std::size_t kLongestComment = 65535;

}  // namespace zip
