// CorelDRAW documents for tests, and the parts to make others from.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/bytes.h"

/// A document of the fuzzers' corpus. "x7" has three views, five colour styles and two previews.
Bytes corpusDocument(const std::string& name);

Bytes bytesOf(std::string_view text);
Bytes joined(const std::vector<Bytes>& parts);
void put(Bytes& out, std::uint64_t value, unsigned count);
void put(Bytes& out, ByteView bytes);

/// A chunk with its pad byte; a list of chunks; a whole stream.
Bytes chunk(std::string_view fourcc, const Bytes& data);
Bytes list(std::string_view type, const std::vector<Bytes>& chunks);
Bytes riff(std::string_view form, const std::vector<Bytes>& chunks);

struct TestEntry {
    std::string name;
    Bytes contents;
    bool isDeflated = true;
};

/// An archive as CorelDRAW writes it.
Bytes zipImage(const std::vector<TestEntry>& entries);

/// Where the central header of an entry stands in an image, and where its local one does.
std::size_t centralHeader(ByteView image, std::size_t index);
std::size_t localHeader(ByteView image, std::size_t index);

/// 65,535 entries named "n" but the first, which all claim the 100 KB of the first as their data:
/// extracting them all would give 6.5 GB.
Bytes overlappingZip(const std::string& firstName);
