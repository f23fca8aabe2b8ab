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

Bytes writeZip(const std::vector<ZipRecord>& records, unsigned flags, unsigned madeBy,
               ByteView centralExtra) {
    Bytes image;
    Bytes directory;
    for (const ZipRecord& record : records) {
        Bytes common;
        put(common, 20, 2);
        put(common, flags, 2);
        put(common, record.method, 2);
        put(common, record.time, 4);
        put(common, record.crc, 4);
        put(common, record.compressedSize, 4);
        put(common, record.uncompressedSize, 4);
        put(common, record.name.size(), 2);

        put(directory, zip::kCentralSignature, 4);
        put(directory, madeBy, 2);
        put(directory, common);
        put(directory, centralExtra.size(), 2);
        put(directory, Bytes(10, 0));
        put(directory, image.size(), 4);
        put(directory, bytesOf(record.name));
        put(directory, centralExtra);

        put(image, zip::kLocalSignature, 4);
        put(image, common);
        put(image, 0, 2);
        put(image, bytesOf(record.name));
        put(image, record.data);
    }
    const std::size_t offset = image.size();
    put(image, directory);
    put(image, zip::kEndSignature, 4);
    put(image, 0, 4);
    put(image, records.size(), 2);
    put(image, records.size(), 2);
    put(image, directory.size(), 4);
    put(image, offset, 4);
    put(image, 0, 2);
    return image;
}

Bytes zipImage(const std::vector<TestEntry>& entries) {
    std::vector<ZipRecord> records;
    for (const auto& [name, contents, isDeflated] : entries) {
        const auto size = static_cast<std::uint32_t>(contents.size());
        Bytes data = isDeflated ? deflated(contents) : contents;
        records.push_back({.name = name,
                           .method = isDeflated ? zip::kDeflated : zip::kStored,
                           .crc = static_cast<std::uint32_t>(::crc32(0, contents.data(), size)),
                           .compressedSize = static_cast<std::uint32_t>(data.size()),
                           .uncompressedSize = size,
                           .data = std::move(data)});
    }
    Bytes ntfsTimes;
    put(ntfsTimes, 0x0020000A, 4);
    put(ntfsTimes, Bytes(32, 7));
    return writeZip(records, 0x0800, 45, ntfsTimes);
}

std::size_t centralHeader(ByteView image, std::size_t index) {
    std::size_t at = readU32(image, image.size() - zip::kEndSize + zip::kEndDirectoryOffset);
    for (; index > 0; --index)
        at += zip::kCentralSize + readU16(image, at + zip::kCentralNameLength) +
              readU16(image, at + zip::kCentralExtraLength);
    return at;
}

std::size_t localHeader(ByteView image, std::size_t index) {
    return readU32(image, centralHeader(image, index) + zip::kCentralLocalOffset);
}

Bytes overlappingZip(const std::string& firstName) {
    std::vector<ZipRecord> records(65535, {.name = "n", .compressedSize = 100000, .data = {}});
    records[0].name = firstName;
    records[0].data = Bytes(100000, 'x');
    Bytes image = writeZip(records);
    std::size_t header = centralHeader(image, 0);
    for (const ZipRecord& record : records) {
        writeU32(image, header + zip::kCentralLocalOffset, 0);
        header += zip::kCentralSize + record.name.size();
    }
    return image;
}
