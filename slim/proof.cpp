// Reads archives and streams once more with code of its own: a fault in the code that edits them
// would otherwise vouch for itself.
#include "slim/proof.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <string_view>

#include "slim/crc32.h"
#include "slim/document.h"
#include "slim/inflate.h"
#include "slim/riff_chunks.h"
#include "slim/zip_format.h"

namespace {

// General purpose flags of encrypted data, of strong encryption, and of masked headers (4.4.4).
constexpr unsigned kEncrypted = 0x2041;
// In a 32-bit field: the value stands in a ZIP64 extra field (4.5.3).
constexpr std::uint32_t kInZip64 = 0xFFFFFFFF;

constexpr std::wstring_view kNoData = L" has no usable data";

std::wstring named(const ZipEntry& entry, std::wstring_view what) {
    constexpr std::size_t kLongest = 80;
    return L"\"" + entry.name.substr(0, kLongest) + L"\"" + std::wstring(what);
}

// The headers of an entry and the place of its data, read from the image.
struct Located {
    ByteView central;
    ByteView data = {};
    std::size_t start = 0;  // of the local header
    std::size_t end = 0;    // of the data
};

std::wstring_view locate(ByteView image, std::size_t directory, Located& entry) {
    const ByteView central = entry.central;
    const std::uint32_t size = readU32(central, zip::kCentralCompressedSize);
    const std::uint32_t offset = readU32(central, zip::kCentralLocalOffset);
    if (std::max({size, offset, readU32(central, zip::kCentralUncompressedSize)}) == kInZip64)
        return L" has 64-bit sizes (ZIP64)";
    if (offset + zip::kLocalSize > directory || readU32(image, offset) != zip::kLocalSignature)
        return kNoData;
    const ByteView local = image.subspan(offset);
    const std::size_t nameLength = readU16(local, zip::kLocalNameLength);
    const std::size_t start =
        offset + zip::kLocalSize + nameLength + readU16(local, zip::kLocalExtraLength);
    if (start + size > directory) return kNoData;
    entry.start = offset;
    entry.end = start + size;
    entry.data = image.subspan(start, size);
    const unsigned flags = readU16(central, zip::kCentralFlags) | readU16(local, zip::kLocalFlags);
    if ((flags & kEncrypted) != 0) return L" is encrypted";
    const bool isSameName =
        nameLength == readU16(central, zip::kCentralNameLength) &&
        std::memcmp(&local[zip::kLocalSize], &central[zip::kCentralSize], nameLength) == 0;
    const bool isSameMethod =
        readU16(local, zip::kLocalMethod) == readU16(central, zip::kCentralMethod);
    return isSameName && isSameMethod ? L"" : L" is described differently in its two headers";
}

// All headers that the end record counts, up to the end record. Gives what is wrong first.
std::wstring locateAll(const ZipArchive& archive, std::vector<Located>& located) {
    const ByteView image = archive.image();
    const std::size_t end = archive.endRecord();
    const std::size_t directory = readU32(image, end + zip::kEndDirectoryOffset);
    std::size_t at = directory;
    std::wstring defect;
    for (const ZipEntry& entry : archive.entries()) {
        const ByteView central = image.subspan(at);
        located.push_back({central});
        const std::wstring_view wrong = locate(image, directory, located.back());
        if (!wrong.empty() && defect.empty()) defect = named(entry, wrong);
        at += zip::kCentralSize + readU16(central, zip::kCentralNameLength) +
              readU16(central, zip::kCentralExtraLength) +
              readU16(central, zip::kCentralCommentLength);
    }
    const bool isWhole = at == end && located.size() == readU16(image, end + zip::kEndTotalEntries);
    if (!isWhole && defect.empty()) defect = L"the directory of the archive is damaged";
    return defect;
}

// Entries that share bytes can claim any amount of work for a small file.
bool areApart(std::vector<Located> located) {
    std::erase_if(located, [](const Located& entry) { return entry.end == 0; });
    std::sort(located.begin(), located.end(),
              [](const Located& left, const Located& right) { return left.start < right.start; });
    const auto overlaps = [](const Located& left, const Located& right) {
        return left.end > right.start;
    };
    return std::adjacent_find(located.begin(), located.end(), overlaps) == located.end();
}

// The sums are taken over what stands in the image, whatever has taken its place since.
bool decodesToItsSum(const KeptEntry& entry, ByteView data) {
    if (entry.method == zip::kStored)
        return entry.dataCrc == entry.crc && entry.dataSize == entry.uncompressedSize;
    if (entry.method != zip::kDeflated) return true;
    const DecodedSum decoded = sumDecoded(data.data(), data.size(), entry.uncompressedSize);
    return decoded.code == 0 && decoded.length == entry.uncompressedSize &&
           decoded.crc == entry.crc;
}

KeptEntry describe(const ZipEntry& entry, const Located& located) {
    const ByteView central = located.central;
    return {entry.rawName,
            readU16(central, zip::kCentralMethod),
            readU16(central, zip::kCentralTime),
            readU16(central, zip::kCentralDate),
            readU32(central, zip::kCentralCrc),
            readU32(central, zip::kCentralUncompressedSize),
            static_cast<std::uint32_t>(located.data.size()),
            crc32(located.data.data(), located.data.size()),
            entry.replacement.has_value()};
}

// Decoding again what has been decoded before and has the same bytes would prove nothing more.
Inventory takeStock(const ZipArchive& archive, bool isDecoded) {
    Inventory inventory;
    std::vector<Located> located;
    inventory.defect = locateAll(archive, located);
    inventory.isShared = !areApart(located);
    if (inventory.defect.empty() && inventory.isShared)
        inventory.defect = L"entries of the archive share their bytes";
    for (std::size_t i = 0; inventory.defect.empty() && i < located.size(); ++i) {
        const ZipEntry& entry = archive.entries()[i];
        if (entry.deleted) continue;
        inventory.kept.push_back(describe(entry, located[i]));
        if (isDecoded && !decodesToItsSum(inventory.kept.back(), located[i].data))
            inventory.defect = named(entry, L" does not match its checksum");
    }
    return inventory;
}

constexpr std::size_t kChunkHeader = 8;
constexpr std::size_t kListType = 4;
constexpr int kMostLists = 7;

struct Chunk {
    std::string_view id;
    ByteView body;
    std::size_t next;
};

// The chunk at `at` with its pad byte, which may be missing at the end; nothing where none fits.
std::optional<Chunk> chunkAt(ByteView range, std::size_t at) {
    if (range.size() - at < kChunkHeader) return std::nullopt;
    const std::size_t size = readU32(range, at + 4);
    if (size > range.size() - at - kChunkHeader) return std::nullopt;
    return Chunk{{reinterpret_cast<const char*>(&range[at]), 4},
                 range.subspan(at + kChunkHeader, size),
                 std::min(at + kChunkHeader + size + size % 2, range.size())};
}

bool isEqual(ByteView left, ByteView right) {
    return left.size() == right.size() &&
           (left.empty() || std::memcmp(left.data(), right.data(), left.size()) == 0);
}

bool holdSameChunks(ByteView before, ByteView after, int depth);

bool isSameChunk(const Chunk& old, const Chunk& now, int depth) {
    if (old.id != now.id) return false;
    const bool isList = old.id == "LIST" && old.body.size() >= kListType && depth < kMostLists;
    if (!isList) return isEqual(old.body, now.body);
    return now.body.size() >= kListType &&
           isEqual(old.body.first(kListType), now.body.first(kListType)) &&
           holdSameChunks(old.body.subspan(kListType), now.body.subspan(kListType), depth + 1);
}

// Side by side, views left out of the old one; what follows the last chunk is the same as well, but
// for the zeros that fill a whole stream up to a multiple of four bytes.
bool holdSameChunks(ByteView before, ByteView after, int depth) {
    std::size_t atOld = 0;
    std::size_t atNew = 0;
    for (;;) {
        const std::optional<Chunk> old = chunkAt(before, atOld);
        if (old && old->id == kViewChunk) {
            atOld = old->next;
            continue;
        }
        const std::optional<Chunk> now = chunkAt(after, atNew);
        if (old.has_value() != now.has_value()) return false;
        if (!old) break;
        if (!isSameChunk(*old, *now, depth)) return false;
        atOld = old->next;
        atNew = now->next;
    }
    ByteView rest = after.subspan(atNew);
    for (int zeros = 0; depth == 0 && zeros < 3 && rest.size() > before.size() - atOld; ++zeros) {
        if (rest.back() == 0) rest = rest.first(rest.size() - 1);
    }
    return isEqual(before.subspan(atOld), rest);
}

bool isSameStream(ByteView before, ByteView after) {
    constexpr std::size_t kForm = 8;
    return isRiffStream(before) && isRiffStream(after) &&
           readU32(after, 4) == after.size() - kChunkHeader &&
           readU32(before, kForm) == readU32(after, kForm) &&
           holdSameChunks(before.subspan(kRiffHeaderSize), after.subspan(kRiffHeaderSize), 0);
}

bool isSamePalette(ByteView before, ByteView after) {
    constexpr std::string_view kList = "<colors><page></page></colors>";
    constexpr std::string_view kListEnd = "</colors>";
    const std::string_view old(reinterpret_cast<const char*>(before.data()), before.size());
    const std::string_view now(reinterpret_cast<const char*>(after.data()), after.size());
    const std::string_view head = old.substr(0, old.find("<colors>"));
    const std::string_view tail = old.substr(old.rfind(kListEnd) + kListEnd.size());
    return now.size() == head.size() + kList.size() + tail.size() && now.starts_with(head) &&
           now.substr(head.size()).starts_with(kList) && now.ends_with(tail);
}

}  // namespace

Inventory takeInventory(const ZipArchive& archive) {
    return takeStock(archive, true);
}

std::wstring findLoss(const Inventory& before, const std::vector<Rewritten>& rewritten,
                      ByteView newImage) {
    ZipArchive archive;
    if (!archive.openView(newImage).ok) return L"the new archive cannot be read";
    const Inventory after = takeStock(archive, false);
    if (!after.defect.empty()) return after.defect;
    if (after.kept.size() != before.kept.size()) return L"entries would be lost";
    for (std::size_t i = 0; i < after.kept.size(); ++i) {
        const bool isSame = before.kept[i].isRewritten
                                ? before.kept[i].rawName == after.kept[i].rawName
                                : before.kept[i] == after.kept[i];
        if (!isSame) return named(archive.entries()[i], L" would not be kept as it is");
    }
    for (const auto& [name, contents] : rewritten) {
        Bytes scratch;
        const ByteView now = archive.viewEntry(name, scratch);
        const bool isPalette = !isRiffStream(contents);
        if (!(isPalette ? isSamePalette(contents, now) : isSameStream(contents, now)))
            return L"\"" + name + L"\" would lose more than it should";
    }
    return {};
}
