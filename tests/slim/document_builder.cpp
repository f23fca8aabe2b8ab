#include "tests/slim/document_builder.h"

#include <zlib.h>

#include <fstream>
#include <iterator>

#include "slim/zip_format.h"

namespace {

Bytes deflated(const Bytes& contents) {
    z_stream stream{};
    deflateInit2(&stream, 6, Z_DEFLATED, -15, 8, Z_DEFAULT_STRATEGY);
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

std::size_t behind(ByteView image, std::size_t header) {
    return header + zip::kCentralSize + readU16(image, header + zip::kCentralNameLength) +
           readU16(image, header + zip::kCentralExtraLength);
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

void put(Bytes& out, ByteView bytes) {
    out.insert(out.end(), bytes.begin(), bytes.end());
}

Bytes bytesOf(std::string_view text) {
    return Bytes(text.begin(), text.end());
}

Bytes joined(const std::vector<Bytes>& parts) {
    Bytes all;
    for (const Bytes& part : parts)
        put(all, part);
    return all;
}

Bytes chunk(std::string_view fourcc, const Bytes& data) {
    Bytes bytes = bytesOf(fourcc);
    put(bytes, data.size(), 4);
    put(bytes, data);
    if (data.size() % 2 != 0) bytes.push_back(0);
    return bytes;
}

Bytes list(std::string_view type, const std::vector<Bytes>& chunks) {
    return chunk("LIST", joined({bytesOf(type), joined(chunks)}));
}

Bytes riff(std::string_view form, const std::vector<Bytes>& chunks) {
    return chunk("RIFF", joined({bytesOf(form), joined(chunks)}));
}

// The extra field, NTFS times, goes into the central headers only.
Bytes zipImage(const std::vector<TestEntry>& entries) {
    Bytes image, directory;
    for (const auto& [name, contents, isDeflated] : entries) {
        const Bytes data = isDeflated ? deflated(contents) : contents;
        Bytes common;
        put(common, 0x08000014, 4);  // version needed, flags
        put(common, isDeflated ? zip::kDeflated : zip::kStored, 2);
        put(common, 0x58314A20, 4);
        put(common, ::crc32_z(0, contents.data(), contents.size()), 4);
        put(common, data.size(), 4);
        put(common, contents.size(), 4);
        put(common, name.size(), 2);

        put(directory, zip::kCentralSignature, 4);
        put(directory, 45, 2);
        put(directory, common);
        put(directory, 36, 2);
        put(directory, Bytes(10, 0));
        put(directory, image.size(), 4);
        put(directory, bytesOf(name));
        put(directory, 0x0020000A, 4);
        put(directory, Bytes(32, 7));

        put(image, zip::kLocalSignature, 4);
        put(image, common);
        put(image, 0, 2);
        put(image, bytesOf(name));
        put(image, data);
    }
    const std::size_t offset = image.size();
    put(image, directory);
    put(image, zip::kEndSignature, 4);
    put(image, 0, 4);
    put(image, entries.size(), 2);
    put(image, entries.size(), 2);
    put(image, directory.size(), 4);
    put(image, offset, 4);
    put(image, 0, 2);
    return image;
}

std::size_t centralHeader(ByteView image, std::size_t index) {
    std::size_t at = readU32(image, image.size() - zip::kEndSize + zip::kEndDirectoryOffset);
    for (; index > 0; --index)
        at = behind(image, at);
    return at;
}

std::size_t localHeader(ByteView image, std::size_t index) {
    return readU32(image, centralHeader(image, index) + zip::kCentralLocalOffset);
}

Bytes overlappingZip(const std::string& firstName) {
    std::vector<TestEntry> entries(65535, {"n", {}, false});
    entries[0] = {firstName, Bytes(100000, 'x'), false};
    Bytes image = zipImage(entries);
    std::size_t header = centralHeader(image, 0);
    for (std::size_t i = 0; i < entries.size(); ++i, header = behind(image, header)) {
        writeU32(image, header + zip::kCentralCompressedSize, 100000);
        writeU32(image, header + zip::kCentralLocalOffset, 0);
    }
    return image;
}
