#include "tests/slim/slim_model.h"

#include <zlib.h>

#include <algorithm>
#include <vector>

namespace {

void put(Bytes& out, std::uint64_t value, int count) {
    for (; count > 0; --count, value >>= 8)
        out.push_back(static_cast<std::uint8_t>(value));
}

void put(Bytes& out, const Bytes& from, std::size_t start, std::size_t end) {
    out.insert(out.end(), from.data() + start, from.data() + end);
}

std::string textAt(const Bytes& bytes, std::size_t start, std::size_t length) {
    if (start + length > bytes.size()) return {};
    return std::string(bytes.data() + start, bytes.data() + start + length);
}

bool isRiff(const Bytes& stream) {
    return stream.size() >= 12 && textAt(stream, 0, 4) == "RIFF";
}

std::uint32_t countRange(const Bytes& stream, std::size_t start, std::size_t end,
                         const std::string& fourcc, int depth) {
    std::uint32_t count = 0;
    for (std::size_t p = start; depth < 8 && p + 8 <= end;) {
        const std::size_t size = readU32(stream, p + 4);
        if (p + 8 + size > end) break;
        const std::string id = textAt(stream, p, 4);
        if (id == fourcc) ++count;
        if (id == "LIST" && size >= 4)
            count += countRange(stream, p + 12, p + 8 + size, fourcc, depth + 1);
        p += size + 8;
        if (p % 2 != 0) ++p;
    }
    return count;
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
            put(out, stream, p, next);
        } else {
            const Bytes body = stripRange(stream, p + 12, p + 8 + size, fourcc, depth + 1, removed);
            put(out, stream, p, p + 4);
            put(out, body.size() + 4, 4);
            put(out, stream, p + 8, p + 12);
            put(out, body, 0, body.size());
            if (body.size() % 2 != 0) out.push_back(0);
        }
        p = next;
    }
    put(out, stream, p, end);
    return out;
}

struct Entry {
    std::string name;
    std::string key;
    std::size_t header = 0;
    unsigned method = 0;
    std::uint32_t compressedSize = 0;
    std::uint32_t uncompressedSize = 0;
    Bytes data;
};

std::string keyOf(std::string name) {
    for (char& c : name) {
        if (c == '\\') c = '/';
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return name;
}

std::vector<Entry> readZip(const Bytes& file) {
    std::vector<Entry> entries;
    const std::size_t n = file.size();
    std::size_t end = n;
    for (std::size_t p = 0; p + 22 <= n; ++p) {
        if (p + 65557 >= n && readU32(file, p) == 0x06054b50 && p + 22 + readU16(file, p + 20) == n)
            end = p;
    }
    if (end == n) return entries;
    std::uint64_t at = readU32(file, end + 16);
    if (at + readU32(file, end + 12) > n) return entries;
    for (unsigned left = readU16(file, end + 10); left > 0; --left) {
        if (at + 46 > n || readU32(file, at) != 0x02014b50) break;
        const std::size_t nameLength = readU16(file, at + 28);
        if (at + 46 + nameLength > n) break;
        Entry entry;
        entry.header = at;
        entry.name = textAt(file, at + 46, nameLength);
        entry.key = keyOf(entry.name);
        entry.method = readU16(file, at + 10);
        entry.compressedSize = readU32(file, at + 20);
        entry.uncompressedSize = readU32(file, at + 24);
        const std::uint64_t local = readU32(file, at + 42);
        if (local + 30 <= n && readU32(file, local) == 0x04034b50) {
            const std::uint64_t start =
                local + 30 + readU16(file, local + 26) + readU16(file, local + 28);
            if (start + entry.compressedSize <= n)
                put(entry.data, file, start, start + entry.compressedSize);
        }
        at += 46 + nameLength + readU16(file, at + 30) + readU16(file, at + 32);
        entries.push_back(std::move(entry));
        if (at > n) break;
    }
    return entries;
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

Bytes extract(const std::vector<Entry>& entries, const std::string& key) {
    for (const Entry& entry : entries) {
        if (entry.key == key) return inflated(entry);
    }
    return {};
}

void replace(std::vector<Entry>& entries, const std::string& key, const Bytes& contents) {
    for (Entry& entry : entries) {
        if (entry.key != key) continue;
        entry.method = 0;
        entry.data = contents;
        return;
    }
}

bool isPreview(const Entry& entry) {
    return entry.key.rfind("previews/", 0) == 0 || entry.key.rfind("metadata/thumbnails/", 0) == 0;
}

Bytes writeZip(const Bytes& file, const std::vector<Entry>& entries) {
    Bytes image;
    Bytes directory;
    for (const Entry& entry : entries) {
        const bool stored = entry.method == 0;
        Bytes common;
        put(common, 0, 2);
        put(common, entry.method, 2);
        put(common, file, entry.header + 12, entry.header + 16);
        if (stored) {
            put(common, ::crc32(0, entry.data.data(), static_cast<uInt>(entry.data.size())), 4);
            put(common, entry.data.size(), 4);
            put(common, entry.data.size(), 4);
        } else {
            put(common, file, entry.header + 16, entry.header + 28);
        }
        put(common, entry.name.size(), 2);
        put(common, 0, 2);

        put(directory, 0x02014b50, 4);
        put(directory, 20, 2);
        put(directory, 20, 2);
        put(directory, common, 0, common.size());
        put(directory, 0, 10);
        put(directory, image.size(), 4);
        directory.insert(directory.end(), entry.name.begin(), entry.name.end());

        put(image, 0x04034b50, 4);
        put(image, 20, 2);
        put(image, common, 0, common.size());
        image.insert(image.end(), entry.name.begin(), entry.name.end());
        put(image, entry.data, 0, entry.data.size());
    }
    const std::size_t offset = image.size();
    put(image, directory, 0, directory.size());
    put(image, 0x06054b50, 4);
    put(image, 0, 4);
    put(image, entries.size(), 2);
    put(image, entries.size(), 2);
    put(image, directory.size(), 4);
    put(image, offset, 4);
    put(image, 0, 2);
    return image;
}

std::string firstPalette(const std::vector<Entry>& entries) {
    const char* const usual = "color/docpalette.xml";
    return extract(entries, usual).empty() ? "docpalette.xml" : usual;
}

std::uint32_t stylesIn(const std::string& xml) {
    std::uint32_t count = 0;
    for (std::size_t i = 0; i + 7 <= xml.size(); ++i)
        count += xml.compare(i, 7, "<color ") == 0;
    return count;
}

std::uint32_t clearPalette(std::vector<Entry>& entries) {
    const std::string key = firstPalette(entries);
    const Bytes bytes = extract(entries, key);
    std::string xml(bytes.begin(), bytes.end());
    const std::uint32_t count = stylesIn(xml);
    const std::size_t open = xml.find("<colors>");
    const std::size_t close = xml.rfind("</colors>");
    if (count == 0 || open == xml.npos || close == xml.npos || close < open) return 0;
    xml.replace(open, close + 9 - open, "<colors><page></page></colors>");
    replace(entries, key, Bytes(xml.begin(), xml.end()));
    return count;
}

std::string verify(const Bytes& image) {
    const std::vector<Entry> entries = readZip(image);
    if (entries.empty()) return "ZIP structure damaged";
    Bytes stream = extract(entries, "content/riffdata.cdr");
    if (stream.empty()) stream = extract(entries, "riffdata.cdr");
    if (stream.empty()) {
        stream = extract(entries, "content/root.dat");
        if (stream.empty()) stream = extract(entries, "root.dat");
        if (!isRiff(stream)) return "riffData.cdr not found";
    }
    if (!isRiff(stream)) return "Invalid RIFF header";
    return readU32(stream, 4) > stream.size() - 8 ? "RIFF size field abnormal" : "";
}

}  // namespace

std::uint32_t modelCount(const Bytes& stream, const std::string& fourcc) {
    return isRiff(stream) ? countRange(stream, 12, stream.size(), fourcc, 0) : 0;
}

int modelStrip(Bytes& stream, const std::string& fourcc) {
    if (!isRiff(stream)) return -1;
    int removed = 0;
    const Bytes body = stripRange(stream, 12, stream.size(), fourcc, 0, removed);
    if (removed == 0) return 0;
    Bytes out;
    put(out, stream, 0, 4);
    put(out, body.size() + 4, 4);
    put(out, stream, 8, 12);
    put(out, body, 0, body.size());
    stream = out;
    return removed;
}

void modelNormalise(Bytes& stream) {
    while (stream.size() % 4 != 0)
        stream.push_back(0);
    const std::size_t n = stream.size();
    writeU32(stream, 4, static_cast<std::uint32_t>(n - 8));
    for (std::size_t p = 12; p + 8 <= n;) {
        std::size_t size = readU32(stream, p + 4);
        if (size == 0) {
            p += 8;
            continue;
        }
        size = std::min(size, n - p - 8);
        writeU32(stream, p + 4, static_cast<std::uint32_t>(size));
        const std::size_t end = p + 8 + size;
        if (textAt(stream, p, 4) == "LIST") {
            for (std::size_t q = p + 12; q + 8 <= end;) {
                const std::size_t child =
                    std::min<std::size_t>(readU32(stream, q + 4), end - q - 8);
                writeU32(stream, q + 4, static_cast<std::uint32_t>(child));
                q += child + 8;
                q += q % 2;
            }
        }
        p = end + end % 2;
    }
}

ModelOutcome modelSlim(const Bytes& file) {
    ModelOutcome outcome;
    if (file.empty()) return {"Cannot read file", {}};
    std::vector<Entry> entries = readZip(file);
    if (entries.empty()) {
        return {textAt(file, 0, 4) == "RIFF" ? "legacy" : "not recognised", {}};
    }
    const std::uint32_t views = modelCount(extract(entries, "content/root.dat"), "bmrk") +
                                modelCount(extract(entries, "content/data2.dat"), "bmrk");
    const Bytes xml = extract(entries, firstPalette(entries));
    const bool hasPreviews = std::any_of(entries.begin(), entries.end(), isPreview);
    if (views == 0 && stylesIn(std::string(xml.begin(), xml.end())) == 0 && !hasPreviews)
        return {"clean", {}};

    outcome.previews = static_cast<std::uint32_t>(std::erase_if(entries, isPreview));
    for (const char* key :
         {"content/root.dat", "content/root.dat", "content/data2.dat", "content/data2.dat"}) {
        Bytes stream = extract(entries, key);
        const int removed = modelStrip(stream, "bmrk");
        if (removed <= 0) continue;
        modelNormalise(stream);
        replace(entries, key, stream);
        outcome.views += static_cast<std::uint32_t>(removed);
    }
    outcome.colors = clearPalette(entries);
    outcome.image = writeZip(file, entries);
    const std::string failure = verify(outcome.image);
    outcome.state = failure.empty() ? "written" : failure;
    return outcome;
}
