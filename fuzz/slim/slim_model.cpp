#include "fuzz/slim/slim_model.h"

#include <zlib.h>

#include <algorithm>
#include <vector>

#include "tests/slim/document_builder.h"

namespace {

std::string textAt(const Bytes& bytes, std::size_t start, std::size_t length) {
    if (start + length > bytes.size()) return {};
    return std::string(bytes.data() + start, bytes.data() + start + length);
}

ByteView range(const Bytes& bytes, std::size_t start, std::size_t end) {
    return ByteView(bytes).subspan(start, end - start);
}

Bytes stripRange(const Bytes& stream, std::size_t start, std::size_t end, const std::string& fourcc,
                 int depth, int& removed) {
    Bytes out;
    std::size_t p = start;
    while (p + 8 <= end) {
        const std::size_t size = readU32(stream, p + 4);
        if (p + 8 + size > end) break;
        const std::size_t next = std::min(p + 8 + size + size % 2, end);
        const std::string id = textAt(stream, p, 4);
        if (id == fourcc) {
            ++removed;
        } else if (id != "LIST" || size < 4 || depth == 7) {
            put(out, range(stream, p, next));
        } else {
            Bytes body(stream.begin() + std::ptrdiff_t(p + 8),
                       stream.begin() + std::ptrdiff_t(p + 12));
            put(body, stripRange(stream, p + 12, p + 8 + size, fourcc, depth + 1, removed));
            put(out, chunk("LIST", body));
        }
        p = next;
    }
    put(out, range(stream, p, end));
    return out;
}

struct Entry : ZipRecord {
    std::string key;
    std::uint64_t local = 0;
    std::uint64_t end = 0;
    bool isWhole = false;
};

struct Archive {
    std::vector<Entry> entries;
    bool isWhole = false;
};

std::string keyOf(std::string name) {
    for (char& c : name)
        c = c == '\\' ? '/' : c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
    return name;
}

Entry readEntry(const Bytes& file, std::size_t at, std::size_t directory) {
    const std::uint64_t n = file.size();
    Entry entry;
    entry.name = textAt(file, at + 46, readU16(file, at + 28));
    entry.key = keyOf(entry.name);
    entry.method = readU16(file, at + 10);
    entry.time = readU32(file, at + 12);
    entry.crc = readU32(file, at + 16);
    entry.compressedSize = readU32(file, at + 20);
    entry.uncompressedSize = readU32(file, at + 24);
    entry.local = readU32(file, at + 42);
    if (entry.local + 30 > n || readU32(file, entry.local) != 0x04034b50) return entry;
    const std::size_t nameLength = readU16(file, entry.local + 26);
    const std::uint64_t start = entry.local + 30 + nameLength + readU16(file, entry.local + 28);
    entry.end = start + entry.compressedSize;
    if (entry.end > n) return entry;
    put(entry.data, range(file, start, entry.end));
    const unsigned flags = readU16(file, at + 8) | readU16(file, entry.local + 6);
    const bool isZip64 = std::uint64_t{entry.compressedSize} + 1 > UINT32_MAX ||
                         entry.uncompressedSize == UINT32_MAX;
    entry.isWhole = entry.end <= directory && (flags & 0x2041) == 0 && !isZip64 &&
                    textAt(file, entry.local + 30, nameLength) == entry.name &&
                    readU16(file, entry.local + 8) == entry.method;
    return entry;
}

Archive readZip(const Bytes& file) {
    Archive archive;
    const std::size_t n = file.size();
    std::size_t end = n;
    for (std::size_t p = n > 65557 ? n - 65557 : 0; p + 22 <= n; ++p) {
        if (readU32(file, p) == 0x06054b50 && p + 22 + readU16(file, p + 20) == n) end = p;
    }
    if (end == n) return archive;
    const std::size_t directory = readU32(file, end + 16), total = readU16(file, end + 10);
    if (std::uint64_t{directory} + readU32(file, end + 12) > n) return archive;
    std::size_t at = directory;
    while (archive.entries.size() < total && at + 46 <= n && readU32(file, at) == 0x02014b50) {
        const std::size_t nameLength = readU16(file, at + 28);
        if (at + 46 + nameLength > n) break;
        archive.entries.push_back(readEntry(file, at, directory));
        at += 46 + nameLength + readU16(file, at + 30) + readU16(file, at + 32);
    }
    archive.isWhole = at == end && archive.entries.size() == total;
    for (const Entry& entry : archive.entries) {
        const auto overlaps = [&](const Entry& other) {
            return &entry != &other && entry.local < other.end && other.local < entry.end;
        };
        archive.isWhole = archive.isWhole && entry.isWhole &&
                          std::none_of(archive.entries.begin(), archive.entries.end(), overlaps);
    }
    return archive;
}

Bytes inflated(const Entry& entry) {
    if (entry.method == 0) return entry.data;
    if (entry.method != 8 || entry.data.size() != entry.compressedSize) return {};
    Bytes out(std::min<std::size_t>(entry.uncompressedSize, entry.data.size() * 1032));
    if (out.empty()) return out;
    z_stream stream{};
    inflateInit2(&stream, -15);
    stream.next_in = const_cast<Bytef*>(entry.data.data());
    stream.avail_in = static_cast<uInt>(entry.data.size());
    stream.next_out = out.data();
    stream.avail_out = static_cast<uInt>(out.size());
    const int result = inflate(&stream, Z_FINISH);
    out.resize(result == Z_STREAM_END ? stream.total_out : 0);
    inflateEnd(&stream);
    return out;
}

Entry* find(std::vector<Entry>& entries, const std::string& key) {
    for (Entry& entry : entries) {
        if (entry.key == key) return &entry;
    }
    return nullptr;
}

Bytes extract(std::vector<Entry>& entries, const std::string& key) {
    const Entry* entry = find(entries, key);
    return entry ? inflated(*entry) : Bytes();
}

Bytes extract(std::vector<Entry>& entries, const std::string& key, const std::string& otherKey) {
    const Bytes contents = extract(entries, key);
    return contents.empty() ? extract(entries, otherKey) : contents;
}

void replace(std::vector<Entry>& entries, const std::string& key, const Bytes& contents) {
    Entry* entry = find(entries, key);
    if (!entry) return;
    entry->method = 0;
    entry->data = contents;
}

bool isPreview(const Entry& entry) {
    return entry.key.starts_with("previews/") || entry.key.starts_with("metadata/thumbnails/");
}

const char* const kPalette = "color/docpalette.xml";
const char* const kOtherPalette = "docpalette.xml";

std::uint32_t stylesIn(const Bytes& xml) {
    std::uint32_t count = 0;
    for (std::size_t i = 0; i + 7 <= xml.size(); ++i)
        count += textAt(xml, i, 7) == "<color ";
    return count;
}

std::uint32_t clearPalette(std::vector<Entry>& entries) {
    const char* const key = extract(entries, kPalette).empty() ? kOtherPalette : kPalette;
    const Bytes bytes = extract(entries, key);
    std::string xml(bytes.begin(), bytes.end());
    const std::uint32_t count = stylesIn(bytes);
    const std::size_t open = xml.find("<colors>");
    const std::size_t close = xml.rfind("</colors>");
    if (count == 0 || open == xml.npos || close == xml.npos || close < open) return 0;
    xml.replace(open, close + 9 - open, "<colors><page></page></colors>");
    replace(entries, key, bytesOf(xml));
    return count;
}

bool holdsItsSum(const Entry& entry) {
    if (entry.method != 0 && entry.method != 8) return true;
    const Bytes contents = inflated(entry);
    return contents.size() == entry.uncompressedSize &&
           ::crc32_z(0, contents.data(), contents.size()) == entry.crc;
}

std::string verify(const Bytes& image) {
    std::vector<Entry> entries = readZip(image).entries;
    if (entries.empty()) return "ZIP structure damaged";
    Bytes stream = extract(entries, "content/riffdata.cdr", "riffdata.cdr");
    if (stream.empty()) {
        stream = extract(entries, "content/root.dat", "root.dat");
        if (!modelIsRiff(stream)) return "riffData.cdr not found";
    }
    if (!modelIsRiff(stream)) return "Invalid RIFF header";
    return readU32(stream, 4) > stream.size() - 8 ? "RIFF size field abnormal" : "";
}

Bytes repacked(std::vector<Entry>& entries) {
    std::vector<ZipRecord> records;
    for (Entry& entry : entries) {
        const auto size = static_cast<std::uint32_t>(entry.data.size());
        if (entry.method == 0) {
            entry.crc = static_cast<std::uint32_t>(::crc32(0, entry.data.data(), size));
            entry.compressedSize = entry.uncompressedSize = size;
        }
        records.push_back(entry);
    }
    return writeZip(records);
}

}  // namespace

bool modelIsRiff(const Bytes& stream) {
    return stream.size() >= 12 && textAt(stream, 0, 4) == "RIFF";
}

int modelStrip(Bytes& stream, const std::string& fourcc) {
    if (!modelIsRiff(stream)) return -1;
    int removed = 0;
    const Bytes body = stripRange(stream, 12, stream.size(), fourcc, 0, removed);
    if (removed == 0) return 0;
    stream.resize(12);
    put(stream, body);
    writeU32(stream, 4, static_cast<std::uint32_t>(stream.size() - 8));
    return removed;
}

void modelNormalise(Bytes& stream) {
    while (stream.size() % 4 != 0)
        stream.push_back(0);
    const auto clamp = [&](std::size_t at, std::size_t end) {
        const auto size = std::min<std::size_t>(readU32(stream, at + 4), end - at - 8);
        writeU32(stream, at + 4, static_cast<std::uint32_t>(size));
        return at + 8 + size;
    };
    const std::size_t n = stream.size();
    writeU32(stream, 4, static_cast<std::uint32_t>(n - 8));
    for (std::size_t p = 12; p + 8 <= n; p += p % 2) {
        const std::size_t end = clamp(p, n);
        const bool isList = textAt(stream, p, 4) == "LIST";
        for (std::size_t q = p + 12; isList && q + 8 <= end; q += q % 2)
            q = clamp(q, end);
        p = end;
    }
}

ModelOutcome modelSlim(const Bytes& file) {
    if (file.empty()) return {"Cannot read file"};
    Archive archive = readZip(file);
    std::vector<Entry>& entries = archive.entries;
    if (entries.empty())
        return {textAt(file, 0, 4) == "RIFF" ? "Legacy format" : "Not a recognizable"};
    ModelOutcome outcome;
    const std::uint32_t styles = stylesIn(extract(entries, kPalette, kOtherPalette));
    outcome.previews = static_cast<std::uint32_t>(std::erase_if(entries, isPreview));
    outcome.isIntact = archive.isWhole && std::all_of(entries.begin(), entries.end(), holdsItsSum);

    for (const char* key : {"content/root.dat", "content/data2.dat"}) {
        Bytes stream = extract(entries, key);
        const int removed = modelStrip(stream, "bmrk");
        if (removed <= 0) continue;
        const Bytes stripped = stream;
        modelNormalise(stream);
        outcome.isRepaired =
            outcome.isRepaired ||
            !std::equal(stripped.begin() + 8, stripped.end(), stream.begin() + 8) ||
            stripped.size() % 4 != 0;
        replace(entries, key, stream);
        outcome.views += static_cast<std::uint32_t>(removed);
    }
    if (outcome.views == 0 && styles == 0 && outcome.previews == 0) return {"clean"};
    outcome.colors = clearPalette(entries);
    outcome.image = repacked(entries);
    const std::string failure = verify(outcome.image);
    outcome.state = failure.empty() ? "written" : failure;
    return outcome;
}
