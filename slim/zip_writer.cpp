// Local headers with their data, the central directory, the end record: PKWARE's application note,
// section 4.3.6. zip_format.h draws them.
//
// The length of the image follows from the entries, so the buffer has its size before the first
// byte is written. It is a new one, or that of the old image, in which data that stay only move:
//
//   before  [h][  data 1  ][h][ data 2 ][h][   data 3   ][h][ data 4 ][directory]
//   after   [h][  data 1  ][h][     data 2 anew     ][h][   data 3   ][directory]
//
// Data 3 move to the right here; behind a large entry that was taken out they move to the left.
#include "slim/zip_writer.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <optional>

#include "slim/crc32.h"
#include "slim/zip_format.h"

namespace {

constexpr std::uint16_t kVersion = 20;
constexpr std::size_t kLongestName = 65535;

// What both headers of an entry say, and where its data come from.
struct Written {
    const ZipEntry* entry;
    std::uint32_t crc;
    std::uint32_t compressedSize;
    std::uint32_t uncompressedSize;
    std::uint32_t localOffset;
    bool isInPlace;  // the data stand already where they have to

    std::size_t nameLength() const { return entry->rawName.size(); }
};

// Fills a buffer that was sized beforehand.
class Writer {
  public:
    explicit Writer(Bytes bytes) : bytes_(std::move(bytes)) {}

    void u16(std::uint32_t value) {
        writeU16(bytes_, length_, value);
        length_ += 2;
    }
    void u32(std::uint32_t value) {
        writeU32(bytes_, length_, value);
        length_ += 4;
    }
    void append(const auto& bytes) {
        if (!bytes.empty()) std::memcpy(bytes_.data() + length_, bytes.data(), bytes.size());
        length_ += bytes.size();
    }
    ByteView next(std::size_t count) const { return ByteView(bytes_).subspan(length_, count); }
    void skip(std::size_t count) { length_ += count; }
    std::uint32_t length() const { return static_cast<std::uint32_t>(length_); }
    Bytes finish() {
        bytes_.resize(length_);
        return std::move(bytes_);
    }

  private:
    Bytes bytes_;
    std::size_t length_ = 0;
};

// What is written at all. A name of more than 65,535 bytes has no place in the format.
std::vector<Written> selectEntries(const ZipArchive& archive) {
    std::vector<Written> selected;
    selected.reserve(archive.entryCount());
    for (const ZipEntry& entry : archive.entries()) {
        if (entry.deleted || entry.rawName.size() > kLongestName) continue;
        selected.push_back(
            {&entry, entry.crc32, entry.compressedSize, entry.uncompressedSize, 0, false});
    }
    return selected;
}

// Every name stands twice, in the local and in the central header.
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
    const ZipEntry& entry = *written.entry;
    const std::size_t size = entry.data().size();
    const std::size_t beforeData = zip::kLocalSize + written.nameLength();
    const ByteView data =
        written.isInPlace ? writer.next(beforeData + size).subspan(beforeData) : entry.data();
    if (entry.method == zip::kStored) {
        written.crc = crc32(data.data(), size);
        written.compressedSize = static_cast<std::uint32_t>(size);
        written.uncompressedSize = written.compressedSize;
    }
    written.localOffset = writer.length();
    writer.u32(zip::kLocalSignature);
    writer.u16(kVersion);
    writeCommonFields(writer, written);
    writer.append(entry.rawName);
    if (written.isInPlace) return writer.skip(size);
    writer.append(data);
}

// The central header repeats the local one's fields and adds what this writer leaves at 0.
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

// The end record of an archive on one disk: disk 0, with all entries on it.
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

Bytes write(std::vector<Written>& selected, Bytes image) {
    Writer writer(std::move(image));
    for (Written& written : selected)
        writeLocal(writer, written);
    const std::uint32_t directoryOffset = writer.length();
    for (const Written& written : selected)
        writeCentral(writer, written);
    writeEnd(writer, selected.size(), directoryOffset);
    return writer.finish();
}

// Data that stay in the image and their new place.
struct Move {
    std::size_t from;
    std::size_t to;
    std::size_t count;
};

// In the order of the entries, which is the order of the new places; nothing when the old places
// have another order, or overlap.
std::optional<std::vector<Move>> planMoves(ByteView image, std::vector<Written>& selected) {
    std::vector<Move> moves;
    moves.reserve(selected.size());
    std::size_t to = 0;
    std::size_t lastEnd = 0;
    for (Written& written : selected) {
        const ByteView data = written.entry->data();
        to += zip::kLocalSize + written.nameLength();
        if (!written.entry->replacement && !data.empty()) {
            const auto from = static_cast<std::size_t>(data.data() - image.data());
            if (from < lastEnd) return std::nullopt;
            lastEnd = from + data.size();
            moves.push_back({from, to, data.size()});
            written.isInPlace = true;
        }
        to += data.size();
    }
    return moves;
}

// Old and new places have one order, so nothing is overwritten that has yet to move when first
// those to the left go, from the left, and then those to the right, from the right.
void apply(const std::vector<Move>& moves, Bytes& image) {
    const auto carry = [&](const Move& move) {
        std::memmove(image.data() + move.to, image.data() + move.from, move.count);
    };
    for (const Move& move : moves) {
        if (move.to < move.from) carry(move);
    }
    for (auto move = moves.rbegin(); move != moves.rend(); ++move) {
        if (move->to > move->from) carry(*move);
    }
}

}  // namespace

Bytes repack(const ZipArchive& archive) try {
    std::vector<Written> selected = selectEntries(archive);
    const std::uint64_t size = imageSize(selected);
    if (size > UINT32_MAX) return {};
    return write(selected, Bytes(static_cast<std::size_t>(size)));
} catch (const std::bad_alloc&) {
    return {};
}

Bytes repackInPlace(ZipArchive archive) try {
    std::vector<Written> selected = selectEntries(archive);
    const std::uint64_t size = imageSize(selected);
    if (size > UINT32_MAX) return {};
    const std::optional<std::vector<Move>> moves = planMoves(archive.image(), selected);
    if (!moves) return repack(archive);

    Bytes image = archive.takeImage();
    const std::size_t largest = std::max(image.size(), static_cast<std::size_t>(size));
    image.reserve(largest);
    image.resize(largest);
    apply(*moves, image);
    return write(selected, std::move(image));
} catch (const std::bad_alloc&) {
    return {};
}
