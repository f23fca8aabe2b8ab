// A ZIP archive (PKWARE's application note, APPNOTE.TXT, section 4.3):
//
//   local header | name | extra | data         4.3.7: for each entry, in any order, with gaps
//   central header | name | extra | comment    4.3.12: for each entry, without gaps
//   end record | comment                       4.3.16: up to the last byte of the file
//
// An archive is read from its end: the end record tells where the directory is, the directory where
// each entry's local header is, and that, by the lengths of its own name and extra field, where the
// data begin. What an archive claims is checked against the image before it is used.
//
// Where central and local header differ the central one holds, except for the start of the data,
// which only the local header's own lengths tell. The two may differ for a good reason: who writes
// an entry before its size is known leaves zeros in the local header (bit 3 of the flags, 4.4.4)
// and puts the numbers into a data descriptor behind the data (4.3.9), which is not read here.
#include "slim/zip_archive.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "base/text.h"
#include "slim/crc32.h"
#include "slim/failure_text.h"
#include "slim/inflate.h"
#include "slim/zip_format.h"

namespace {

// A deflated match of 258 bytes costs two bits at least, one for its length and one for its
// distance: no stream expands further than this, and no claimed size beyond it is believed.
constexpr std::uint64_t kMostExpansion = 1032;

struct Directory {
    std::size_t offset;
    std::size_t totalEntries;
    std::size_t endRecord;
};

// The record whose comment ends exactly where the file does, searched from the end (4.3.16). A
// comment may hold anything, the signature included; a record that does not account for every byte
// up to the end of the file is such an accident. The farthest it can begin is its own length and
// that of the longest comment before the end.
std::optional<Directory> findDirectory(ByteView image) {
    const std::size_t n = image.size();
    if (n < zip::kEndSize) return std::nullopt;
    constexpr std::size_t kFarthest = zip::kEndSize + zip::kLongestComment;
    const std::size_t lowest = n > kFarthest ? n - kFarthest : 0;
    for (std::size_t p = n - zip::kEndSize + 1; p-- > lowest;) {
        if (readU32(image, p) != zip::kEndSignature) continue;
        if (p + zip::kEndSize + readU16(image, p + zip::kEndCommentLength) != n) continue;
        const std::size_t size = readU32(image, p + zip::kEndDirectorySize);
        const std::size_t offset = readU32(image, p + zip::kEndDirectoryOffset);
        if (offset > n || size > n - offset) return std::nullopt;
        return Directory{offset, readU16(image, p + zip::kEndTotalEntries), p};
    }
    return std::nullopt;
}

// The local header repeats the name, but has an extra field of its own length (4.3.7): CorelDRAW
// writes one into central headers only. Sums are done in 64 bits, where 32-bit fields cannot wrap.
ByteView locateData(ByteView image, std::uint64_t localOffset, std::uint32_t compressedSize) {
    if (localOffset + zip::kLocalSize > image.size()) return {};
    const auto local = static_cast<std::size_t>(localOffset);
    if (readU32(image, local) != zip::kLocalSignature) return {};
    const std::uint64_t start = localOffset + zip::kLocalSize +
                                readU16(image, local + zip::kLocalNameLength) +
                                readU16(image, local + zip::kLocalExtraLength);
    if (start + compressedSize > image.size()) return {};
    return image.subspan(static_cast<std::size_t>(start), compressedSize);
}

struct Header {
    ZipEntry entry;
    std::size_t length;
};

// The central header at `at`, or nothing when no whole header stands there. Its length may pass
// the end of the image.
std::optional<Header> readHeader(ByteView image, std::size_t at) {
    const std::size_t left = image.size() - at;
    if (left < zip::kCentralSize) return std::nullopt;
    const ByteView header = image.subspan(at);
    if (readU32(header, 0) != zip::kCentralSignature) return std::nullopt;
    const std::size_t nameLength = readU16(header, zip::kCentralNameLength);
    if (nameLength > left - zip::kCentralSize) return std::nullopt;

    ZipEntry entry;
    const ByteView name = header.subspan(zip::kCentralSize, nameLength);
    entry.rawName.assign(name.begin(), name.end());
    entry.name = wideFromUtf8(entry.rawName);
    entry.method = readU16(header, zip::kCentralMethod);
    entry.modTime = readU16(header, zip::kCentralTime);
    entry.modDate = readU16(header, zip::kCentralDate);
    entry.crc32 = readU32(header, zip::kCentralCrc);
    entry.compressedSize = readU32(header, zip::kCentralCompressedSize);
    entry.uncompressedSize = readU32(header, zip::kCentralUncompressedSize);
    entry.stored =
        locateData(image, readU32(header, zip::kCentralLocalOffset), entry.compressedSize);
    return Header{std::move(entry), zip::kCentralSize + nameLength +
                                        readU16(header, zip::kCentralExtraLength) +
                                        readU16(header, zip::kCentralCommentLength)};
}

// The walk ends at the first place where no header stands; what the end record counts beyond that
// is missing, and the proof before a write says so.
//
// Memory is reserved for as many headers as fit into the rest of the image, whatever the end record
// counts.
void readEntries(ByteView image, const Directory& directory, std::vector<ZipEntry>& entries) {
    std::size_t at = directory.offset;
    entries.reserve(std::min(directory.totalEntries, (image.size() - at) / zip::kCentralSize));
    while (entries.size() < directory.totalEntries) {
        std::optional<Header> header = readHeader(image, at);
        if (!header) return;
        entries.push_back(std::move(header->entry));
        if (header->length > image.size() - at) return;
        at += header->length;
    }
}

// A compressed size that the data do not have means that they could not be located.
bool isDecodable(const ZipEntry& entry) {
    return entry.method == zip::kDeflated && entry.uncompressedSize != 0 &&
           entry.data().size() == entry.compressedSize;
}

// Enough for whatever the entry can hold, whatever it claims to hold: a few bytes that claim to be
// 4 GB get room for a thousand times themselves.
std::size_t capacityFor(const ZipEntry& entry) {
    return static_cast<std::size_t>(
        std::min<std::uint64_t>(entry.uncompressedSize, entry.data().size() * kMostExpansion));
}

bool isSeparator(wchar_t c) {
    return c == L'/' || c == L'\\';
}

// Equal when the parts between separators are, and the separators stand in the same places.
bool isSameName(std::wstring_view left, std::wstring_view right) {
    if (left.size() != right.size()) return false;
    while (true) {
        const auto leftEnd = std::find_if(left.begin(), left.end(), isSeparator);
        const auto rightEnd = std::find_if(right.begin(), right.end(), isSeparator);
        const auto length = static_cast<std::size_t>(leftEnd - left.begin());
        if (length != static_cast<std::size_t>(rightEnd - right.begin())) return false;
        if (!equalsIgnoringCase(left.substr(0, length), right.substr(0, length))) return false;
        if (leftEnd == left.end()) return true;
        left.remove_prefix(length + 1);
        right.remove_prefix(length + 1);
    }
}

// The first entry of this name that is not deleted, or null. Archives hold tens of entries: a
// search from the start is quick enough.
template <typename Entries>
auto findEntry(Entries& entries, std::wstring_view name) -> decltype(entries.data()) {
    const auto found = std::find_if(entries.begin(), entries.end(), [&](const ZipEntry& entry) {
        return !entry.deleted && isSameName(entry.name, name);
    });
    return found == entries.end() ? nullptr : &*found;
}

}  // namespace

OpenResult ZipArchive::openFromBytes(Bytes bytes) {
    owned_ = std::move(bytes);
    image_ = owned_;
    return parse();
}

OpenResult ZipArchive::openView(ByteView image) {
    owned_ = {};
    image_ = image;
    return parse();
}

OpenResult ZipArchive::parse() {
    entries_.clear();
    outOfMemory_ = false;
    OpenResult result;
    try {
        const std::optional<Directory> directory = findDirectory(image_);
        if (directory) {
            endRecord_ = directory->endRecord;
            readEntries(image_, *directory, entries_);
        }
        result.ok = !entries_.empty();
    } catch (const std::bad_alloc&) {
        outOfMemory_ = true;
    }
    if (!result.ok) setFailureText(result.error, L"ZIP structure parsing failed");
    result.entryCount = static_cast<std::uint32_t>(entries_.size());
    loaded_ = result.ok;
    return result;
}

Bytes ZipArchive::extractEntry(std::wstring_view name) {
    Bytes scratch;
    const ByteView contents = viewEntry(name, scratch);
    if (!scratch.empty() || contents.empty()) return scratch;
    try {
        scratch.resize(contents.size());
        std::memcpy(scratch.data(), contents.data(), contents.size());
        return scratch;
    } catch (const std::bad_alloc&) {
        outOfMemory_ = true;
        return {};
    }
}

ByteView ZipArchive::viewEntry(std::wstring_view name, Bytes& scratch) {
    scratch.clear();
    const ZipEntry* entry = findEntry(entries_, name);
    if (!entry) return {};
    if (entry->method == zip::kStored) return entry->data();
    if (!isDecodable(*entry)) return {};
    std::size_t produced = capacityFor(*entry);
    try {
        scratch.resize(produced);
    } catch (const std::bad_alloc&) {
        outOfMemory_ = true;
        return {};
    }
    std::size_t consumed = entry->data().size();
    if (inflateRaw(scratch.data(), &produced, entry->data().data(), &consumed) != 0) produced = 0;
    scratch.resize(produced);
    return scratch;
}

bool ZipArchive::hasEntry(std::wstring_view name) const {
    return findEntry(entries_, name) != nullptr;
}

std::vector<std::wstring> ZipArchive::listEntryNames() const try {
    std::vector<std::wstring> names;
    for (const ZipEntry& entry : entries_) {
        if (!entry.deleted) names.push_back(entry.name);
    }
    return names;
} catch (const std::bad_alloc&) {
    return {};
}

bool ZipArchive::removeEntry(std::wstring_view name) {
    ZipEntry* entry = findEntry(entries_, name);
    if (!entry) return false;
    entry->deleted = true;
    return true;
}

std::uint32_t ZipArchive::removeEntriesUnder(std::wstring_view prefix) {
    std::uint32_t removed = 0;
    for (ZipEntry& entry : entries_) {
        if (entry.deleted || !nameStartsWith(entry.name, prefix)) continue;
        entry.deleted = true;
        ++removed;
    }
    return removed;
}

bool ZipArchive::replaceEntry(std::wstring_view name, Bytes bytes) {
    ZipEntry* entry = findEntry(entries_, name);
    if (!entry || bytes.size() > UINT32_MAX) return false;
    entry->method = zip::kStored;
    entry->crc32 = crc32(bytes.data(), bytes.size());
    entry->compressedSize = static_cast<std::uint32_t>(bytes.size());
    entry->uncompressedSize = entry->compressedSize;
    entry->replacement = std::move(bytes);
    return true;
}

bool ZipArchive::nameStartsWith(std::wstring_view name, std::wstring_view prefix) {
    return name.size() >= prefix.size() && isSameName(name.substr(0, prefix.size()), prefix);
}

std::uint64_t extractedLength(const ZipEntry& entry) {
    if (entry.method == zip::kStored) return entry.data().size();
    if (!isDecodable(entry)) return 0;
    const ByteView data = entry.data();
    const DecodedSum decoded = sumDecoded(data.data(), data.size(), entry.uncompressedSize);
    return decoded.code == 0 ? decoded.length : 0;
}
