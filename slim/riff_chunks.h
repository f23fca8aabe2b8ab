// Chunks of RIFF streams: count, strip, repair. A stream is "RIFF", a 32-bit little-endian size and
// a form type; chunks follow from offset 12, each an identifier, a 32-bit size and that many bytes.
// A "LIST" of at least 4 bytes holds a list type and further chunks. Nesting is followed through
// seven lists; a list below them is one opaque chunk. What does not read as chunks (a size that
// passes the end, a rest too short for a header) ends the walk of its list and is kept as it is.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "base/bytes.h"

inline constexpr std::size_t kRiffHeaderSize = 12;

/// What `stripRiffChunks` returns when it did nothing.
inline constexpr int kNotRiff = -1;
inline constexpr int kStripOutOfMemory = -2;

/// True for at least 12 bytes that begin with "RIFF".
bool isRiffStream(ByteView stream);

/// The number of chunks with this four-character identifier; 0 for anything but a RIFF stream.
std::uint32_t countRiffChunks(ByteView stream, std::string_view fourcc);

/// Removes every chunk with this identifier, header, data and pad byte, and corrects the sizes of
/// the lists around it and of the stream. Gives the number removed; the stream is untouched when
/// it is 0 or negative.
int stripRiffChunks(Bytes& stream, std::string_view fourcc);

/// Pads the stream to a multiple of 4 bytes, sets its size, and clamps the sizes of top-level
/// chunks and of their lists' children to what is there. False, with nothing changed, for anything
/// but a RIFF stream or when memory is short.
bool normaliseRiffSizes(Bytes& stream);
