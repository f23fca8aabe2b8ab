#include "tests/slim/document_builder.h"

#include <zlib.h>

#include <algorithm>
#include <fstream>
#include <iterator>

#include "slim/zip_format.h"

namespace {

struct Field {
    std::uint64_t value;
    unsigned count;
};

void put(Bytes& out, const std::vector<Field>& fields) {
    for (const auto& [value, count] : fields)
        put(out, value, count);
}

void put(Bytes& out, ByteView bytes) {
    out.insert(out.end(), bytes.begin(), bytes.end());
}

}  // namespace

Bytes corpusDocument(const std::string& name) {
    std::ifstream file(MIRELO_SLIM_CORPUS "/document/" + name, std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(file), {});
}

void put(Bytes& out, std::uint64_t value, unsigned count) {
    for (; count > 0; --count, value >>= 8)
        out.push_back(static_cast<std::uint8_t>(value));
}

Bytes bytesOf(std::string_view text) {
    return Bytes(text.begin(), text.end());
}

std::string chunk(const std::string& id, const std::string& data) {
    Bytes size;
    put(size, data.size(), 4);
    return id + std::string(size.begin(), size.end()) + data + std::string(data.size() % 2, '\0');
}

std::string list(const std::string& type, const std::string& chunks) {
    return chunk("LIST", type + chunks);
}

Bytes riff(const std::string& form, const std::string& chunks) {
    return bytesOf(chunk("RIFF", form + chunks));
}

Bytes deflated(ByteView contents, int level, int strategy) {
    z_stream stream{};
    deflateInit2(&stream, level, Z_DEFLATED, -15, 8, strategy);
    Bytes out(deflateBound(&stream, static_cast<uLong>(contents.size())));
    stream.next_in = const_cast<Bytef*>(contents.data());
    stream.avail_in = static_cast<uInt>(contents.size());
    stream.next_out = out.data();
    stream.avail_out = static_cast<uInt>(out.size());
    deflate(&stream, Z_FINISH);
    out.resize(stream.total_out);
    deflateEnd(&stream);
    return out;
}

// The extra field goes into the central headers only.
Bytes zipImage(const std::vector<TestEntry>& entries) {
    Bytes image, directory;
    for (const auto& [name, contents, isDeflated] : entries) {
        const Bytes data = isDeflated ? deflated(contents) : contents;
        const std::vector<Field> common = {
            {0x08000014, 4},  // version needed, flags
            {isDeflated ? zip::kDeflated : zip::kStored, 2},
            {0x58314A20, 4},
            {::crc32_z(0, contents.data(), contents.size()), 4},
            {data.size(), 4},
            {contents.size(), 4},
            {name.size(), 2},
        };
        put(directory, {{zip::kCentralSignature, 4}, {45, 2}});
        put(directory, common);
        put(directory, {{36, 2}, {0, 8}, {0, 2}, {image.size(), 4}});
        put(directory, bytesOf(name));
        put(directory, Bytes(36, 7));

        put(image, zip::kLocalSignature, 4);
        put(image, common);
        put(image, 0, 2);
        put(image, bytesOf(name));
        put(image, data);
    }
    const std::size_t offset = image.size();
    put(image, directory);
    put(image, {{zip::kEndSignature, 4}, {0, 4}, {entries.size(), 2}, {entries.size(), 2}});
    put(image, {{directory.size(), 4}, {offset, 4}, {0, 2}});
    return image;
}

std::size_t centralHeader(ByteView image, std::string_view name) {
    const auto found = std::find_end(image.begin(), image.end(), name.begin(), name.end());
    return static_cast<std::size_t>(found - image.begin()) - zip::kCentralSize;
}

std::size_t localHeader(ByteView image, std::string_view name) {
    const auto found = std::search(image.begin(), image.end(), name.begin(), name.end());
    return static_cast<std::size_t>(found - image.begin()) - zip::kLocalSize;
}
