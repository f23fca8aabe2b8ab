// Local headers with their data, the central directory, the end record: PKWARE's application note,
// section 4.3.6.
#include "slim/zip_writer.h"

#include <algorithm>
#include <new>

#include "slim/crc32.h"
#include "slim/zip_format.h"

namespace {

constexpr std::uint16_t kVersion = 20;
constexpr std::size_t kLongestName = 65535;

// What both headers of an entry say.
struct Written {
    const ZipEntry* entry;
    std::uint32_t crc;
    std::uint32_t compressedSize;
    std::uint32_t uncompressedSize;
    std::uint32_t localOffset;
};

// Appends into a buffer that was sized beforehand.
class Writer {
  public:
    explicit Writer(std::size_t size) { bytes_.resize(size); }

    void u16(std::uint32_t value) {
        writeU16(bytes_, length_, value);
        length_ += 2;
    }
    void u32(std::uint32_t value) {
        writeU32(bytes_, length_, value);
        length_ += 4;
    }
    void append(const auto& bytes) {
        std::copy(bytes.begin(), bytes.end(),
                  bytes_.begin() + static_cast<std::ptrdiff_t>(length_));
        length_ += bytes.size();
    }
    std::uint32_t length() const { return static_cast<std::uint32_t>(length_); }
    Bytes take() { return std::move(bytes_); }

  private:
    Bytes bytes_;
    std::size_t length_ = 0;
};

std::vector<Written> selectEntries(const ZipArchive& archive) {
    std::vector<Written> selected;
    selected.reserve(archive.entryCount());
    for (const ZipEntry& entry : archive.entries()) {
        if (entry.deleted || entry.rawName.size() > kLongestName) continue;
        selected.push_back({&entry, entry.crc32, entry.compressedSize, entry.uncompressedSize, 0});
    }
    return selected;
}

std::uint64_t imageSize(const std::vector<Written>& selected) {
    std::uint64_t size = zip::kEndSize;
    for (const Written& written : selected) {
        size += zip::kLocalSize + zip::kCentralSize + 2 * written.entry->rawName.size() +
                written.entry->data().size();
    }
    return size;
}

// The fields from the flags to the extra length, which both kinds of header share.
void writeCommonFields(Writer& writer, const Written& written) {
    const ZipEntry& entry = *written.entry;
    writer.u16(0);
    writer.u16(entry.method);
    writer.u16(entry.modTime);
    writer.u16(entry.modDate);
    writer.u32(written.crc);
    writer.u32(written.compressedSize);
    writer.u32(written.uncompressedSize);
    writer.u16(static_cast<std::uint32_t>(entry.rawName.size()));
    writer.u16(0);
}

void writeLocal(Writer& writer, Written& written) {
    const ByteView data = written.entry->data();
    if (written.entry->method == zip::kStored) {
        written.crc = crc32(data.data(), data.size());
        written.compressedSize = static_cast<std::uint32_t>(data.size());
        written.uncompressedSize = written.compressedSize;
    }
    written.localOffset = writer.length();
    writer.u32(zip::kLocalSignature);
    writer.u16(kVersion);
    writeCommonFields(writer, written);
    writer.append(written.entry->rawName);
    writer.append(data);
}

void writeCentral(Writer& writer, const Written& written) {
    writer.u32(zip::kCentralSignature);
    writer.u16(kVersion);
    writer.u16(kVersion);
    writeCommonFields(writer, written);
    writer.u16(0);  // comment length
    writer.u16(0);  // disk number
    writer.u16(0);  // internal attributes
    writer.u32(0);  // external attributes
    writer.u32(written.localOffset);
    writer.append(written.entry->rawName);
}

void writeEnd(Writer& writer, std::size_t entryCount, std::uint32_t directoryOffset) {
    const std::uint32_t directorySize = writer.length() - directoryOffset;
    writer.u32(zip::kEndSignature);
    writer.u16(0);
    writer.u16(0);
    writer.u16(static_cast<std::uint32_t>(entryCount));
    writer.u16(static_cast<std::uint32_t>(entryCount));
    writer.u32(directorySize);
    writer.u32(directoryOffset);
    writer.u16(0);
}

}  // namespace

Bytes repack(const ZipArchive& archive) try {
    std::vector<Written> selected = selectEntries(archive);
    const std::uint64_t size = imageSize(selected);
    if (size > UINT32_MAX) return {};

    Writer writer(static_cast<std::size_t>(size));
    for (Written& written : selected)
        writeLocal(writer, written);
    const std::uint32_t directoryOffset = writer.length();
    for (const Written& written : selected)
        writeCentral(writer, written);
    writeEnd(writer, selected.size(), directoryOffset);
    return writer.take();
} catch (const std::bad_alloc&) {
    return {};
}
