// CorelDRAW documents made up for tests: realistic ones, and damaged ones.
#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "base/bytes.h"

using Random = std::mt19937_64;

/// A number below `limit`, the same on every platform.
inline std::size_t below(Random& random, std::size_t limit) {
    return static_cast<std::size_t>(random() % limit);
}

Bytes bytesOf(std::string_view text);
Bytes randomBytes(Random& random, std::size_t length);
Bytes joined(const std::vector<Bytes>& parts);
void put(Bytes& out, std::uint64_t value, unsigned count);
void put(Bytes& out, ByteView bytes);

/// A chunk with its pad byte; a list of chunks; a whole stream.
Bytes chunk(std::string_view fourcc, const Bytes& data);
Bytes list(std::string_view type, const std::vector<Bytes>& chunks);
Bytes riff(std::string_view form, const std::vector<Bytes>& chunks);

/// An entry as both of its headers tell it.
struct ZipRecord {
    std::string name;
    unsigned method = 0;
    std::uint32_t time = 0;
    std::uint32_t crc = 0;
    std::uint32_t compressedSize = 0;
    std::uint32_t uncompressedSize = 0;
    Bytes data;
};

/// The extra field goes into the central headers only.
Bytes writeZip(const std::vector<ZipRecord>& records, unsigned flags = 0, unsigned madeBy = 20,
               ByteView centralExtra = {});

struct TestEntry {
    std::string name;
    Bytes contents;
    bool deflated = true;
};

/// An archive as CorelDRAW writes it.
Bytes zipImage(const std::vector<TestEntry>& entries);

enum class Product { x4, x5, x6, x7 };
enum class PaletteShape { selfClosed, styles, spotInks };

struct DocumentPlan {
    Product product = Product::x7;
    PaletteShape palette = PaletteShape::styles;
    unsigned views = 3;
    unsigned styles = 5;
    unsigned pages = 1;
    unsigned groupDepth = 3;
    bool previews = true;
    /// A second RIFF stream, data2.dat, with as many views again.
    bool data2 = false;
    std::size_t payloadBytes = 200;
    std::uint64_t seed = 1;
};

/// Every shape that documents come in, with a name for each.
struct NamedPlan {
    const char* name;
    DocumentPlan plan;
};
const std::vector<NamedPlan>& documentShapes();

DocumentPlan randomPlan(Random& random);
Bytes rootDat(const DocumentPlan& plan);
Bytes buildDocument(const DocumentPlan& plan);

/// 65,535 entries named "n" but the first, which all claim the 100 KB of the first as their data:
/// extracting them all would give 6.5 GB.
Bytes overlappingZip(const std::string& firstName);

/// Changes a few bytes, mostly where sizes and signatures are, or cuts, or appends.
void damage(Bytes& bytes, Random& random);
