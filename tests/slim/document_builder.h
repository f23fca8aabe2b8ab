// CorelDRAW documents for tests, and the parts to make others from.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/bytes.h"

/// A document of the fuzzers' corpus. "x7" has three views, five colour styles and two previews.
Bytes corpusDocument(const std::string& name);

Bytes bytesOf(std::string_view text);
void put(Bytes& out, std::uint64_t value, unsigned count);

/// A chunk with its pad byte; a list of chunks; a whole stream.
std::string chunk(const std::string& id, const std::string& data);
std::string list(const std::string& type, const std::string& chunks);
Bytes riff(const std::string& form, const std::string& chunks);

/// A raw DEFLATE stream, by zlib's levels and strategies.
Bytes deflated(ByteView contents, int level = 6, int strategy = 0);

struct TestEntry {
    std::string name;
    Bytes contents;
    bool isDeflated = true;
};

/// An archive as CorelDRAW writes it.
Bytes zipImage(const std::vector<TestEntry>& entries);

/// Where the central header of an entry stands in an image, and where its local one does.
std::size_t centralHeader(ByteView image, std::string_view name);
std::size_t localHeader(ByteView image, std::string_view name);
