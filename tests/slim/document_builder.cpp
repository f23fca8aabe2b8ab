#include "tests/slim/document_builder.h"

#include <zlib.h>

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

// A leaf of root.dat: stream number, length, offset, 0.
Bytes leaf(std::string_view fourcc, Random& random) {
    Bytes data;
    for (const std::size_t limit : {4U, 5000U, 100000U, 1U})
        put(data, below(random, limit), 4);
    return chunk(fourcc, data);
}

Bytes group(unsigned depth, Random& random) {
    const Bytes inside =
        depth > 0 ? group(depth - 1, random) : list("lgob", {leaf("loda", random)});
    return list(depth > 0 ? "grp " : "obj ", {leaf("flgs", random), leaf("spid", random), inside});
}

Bytes viewList(const DocumentPlan& plan, Random& random) {
    std::vector<Bytes> views;
    for (unsigned i = 0; i < plan.views; ++i)
        views.push_back(leaf("bmrk", random));
    return list("bmkt", views);
}

// The stream of X4 and X5: real data in the chunks, odd lengths among them, and a list whose body
// is compressed.
Bytes riffData(const DocumentPlan& plan) {
    Random random(plan.seed);
    return riff("CDRE",
                {chunk("vrsn", randomBytes(random, 2)), chunk("DISP", randomBytes(random, 99)),
                 list("INFO", {chunk("IKEY", bytesOf("key"))}),
                 list("doc ", {viewList(plan, random)}), list("cmpr", {randomBytes(random, 301)})});
}

Bytes palette(const DocumentPlan& plan) {
    std::string xml =
        R"(<?xml version="1.0" encoding="UTF-8"?><palette guid="2b5d" name="Document Palette")";
    if (plan.palette == PaletteShape::selfClosed) return bytesOf(xml + "/>");
    xml += plan.palette == PaletteShape::styles
               ? ">"
               : R"(><colorspaces><cs name="Spot"><color cs="LAB"/></cs></colorspaces>)";
    xml += "<colors><page>";
    for (unsigned i = 0; i < plan.styles; ++i)
        xml += R"(<color cs="CMYK" name="Ink )" + std::to_string(i) + R"(" tints="0,0,0,1"/>)";
    return bytesOf(xml + "</page></colors></palette>");
}

}  // namespace

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

Bytes randomBytes(Random& random, std::size_t length) {
    Bytes bytes;
    bytes.reserve(length + 8);
    while (bytes.size() < length)
        put(bytes, random(), 8);
    bytes.resize(length);
    return bytes;
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
        Bytes data = isDeflated ? deflated(contents) : contents;
        records.push_back({name, isDeflated ? zip::kDeflated : zip::kStored, 0x58314A20,
                           static_cast<std::uint32_t>(
                               ::crc32(0, contents.data(), static_cast<uInt>(contents.size()))),
                           static_cast<std::uint32_t>(data.size()),
                           static_cast<std::uint32_t>(contents.size()), std::move(data)});
    }
    Bytes ntfsTimes;
    put(ntfsTimes, 0x0020000A, 4);
    put(ntfsTimes, Bytes(32, 7));
    return writeZip(records, 0x0800, 45, ntfsTimes);
}

const std::vector<NamedPlan>& documentShapes() {
    using enum Product;
    using enum PaletteShape;
    static const std::vector<NamedPlan> shapes = {
        {"x4", {.product = x4, .views = 2}},
        {"x5-no-styles", {.product = x5, .palette = selfClosed}},
        {"x6", {.product = x6, .pages = 2}},
        {"x7", {.product = x7}},
        {"x7-spot-inks", {.palette = spotInks, .groupDepth = 5}},
        {"x7-deep-groups", {.pages = 100, .groupDepth = 12}},
        {"x7-560-views", {.views = 560, .styles = 200}},
        {"x7-data2", {.data2 = true}},
        {"x7-clean", {.palette = selfClosed, .views = 0, .previews = false}},
        {"x7-large", {.views = 40, .pages = 12, .payloadBytes = 400000}},
    };
    return shapes;
}

DocumentPlan randomPlan(Random& random) {
    const auto number = [&](std::size_t limit) {
        return static_cast<unsigned>(below(random, limit));
    };
    DocumentPlan plan;
    plan.product = static_cast<Product>(number(4));
    plan.palette = static_cast<PaletteShape>(number(3));
    plan.views = number(4);
    plan.styles = number(4);
    plan.pages = number(3);
    plan.groupDepth = number(13);
    plan.previews = number(4) != 0;
    plan.data2 = number(3) == 0;
    plan.payloadBytes = number(400);
    plan.seed = random();
    return plan;
}

Bytes rootDat(const DocumentPlan& plan) {
    Random random(plan.seed);
    std::vector<Bytes> chunks = {leaf("fver", random), leaf("vrsn", random)};
    chunks.push_back(list("doc ", {leaf("mcfg", random), list("fntt", {leaf("font", random)}),
                                   viewList(plan, random), leaf("stlt", random)}));
    for (unsigned i = 0; i < plan.pages; ++i) {
        const Bytes layer = list("layr", {leaf("flgs", random), group(plan.groupDepth, random)});
        chunks.push_back(list("page", {leaf("flgs", random), list("gobj", {layer})}));
    }
    return riff("CDRR", chunks);
}

Bytes buildDocument(const DocumentPlan& plan) {
    Random random(plan.seed ^ 0x5bd1e995);
    const bool isX7 = plan.product == Product::x7;
    const auto payload = [&](std::size_t part = 1) {
        return randomBytes(random, plan.payloadBytes / part);
    };
    std::vector<TestEntry> entries;
    if (isX7)
        entries.push_back(
            {"mimetype", bytesOf("application/x-vnd.corel.zcf.draw.document+zip"), false});
    if (plan.product < Product::x6) {
        entries.push_back({"content/riffData.cdr", riffData(plan), false});
    } else {
        entries.push_back({"content/data/data1.dat", payload()});
        entries.push_back({"content/data/Bitmaps.dat", payload()});
        entries.push_back({"content/dataFileList.dat", bytesOf("data1.dat\nBitmaps.dat")});
        entries.push_back({"content/root.dat", rootDat(plan)});
        if (plan.data2)
            entries.push_back({"content/data2.dat", riff("CDRD", {viewList(plan, random)})});
    }
    if (plan.previews) {
        const std::string folder = isX7 ? "previews/" : "metadata/thumbnails/";
        entries.push_back({folder + "thumbnail", payload(8), isX7});
        entries.push_back({folder + "page1", Bytes(plan.payloadBytes / 4, 0x5A)});
    }
    // Some keep their palette at the root, where it is looked for last.
    entries.push_back(
        {plan.seed % 8 == 7 ? "DocPalette.XML" : "color/docPalette.xml", palette(plan)});
    entries.push_back({"color/profiles/Coated FOGRA39%20(ISO).icc", payload(), false});
    entries.push_back({"embed/embedding1.png", payload()});
    entries.push_back({isX7 ? "META-INF/metadata.xml" : "metadata/metadata.xml",
                       bytesOf("<metadata AppVersion=\"2400\"/>")});
    return zipImage(entries);
}

Bytes overlappingZip(const std::string& firstName) {
    std::vector<ZipRecord> records(65535);
    for (ZipRecord& record : records) {
        record.name = "n";
        record.compressedSize = 100000;
    }
    records[0].name = firstName;
    records[0].data = Bytes(100000, 'x');
    Bytes image = writeZip(records);
    std::size_t header = readU32(image, image.size() - zip::kEndSize + zip::kEndDirectoryOffset);
    while (readU32(image, header) == zip::kCentralSignature) {
        writeU32(image, header + zip::kCentralLocalOffset, 0);
        header += zip::kCentralSize + readU16(image, header + zip::kCentralNameLength);
    }
    return image;
}

void damage(Bytes& bytes, Random& random) {
    for (std::size_t i = below(random, 4) + 1; i > 0 && !bytes.empty(); --i) {
        const std::size_t at = below(random, bytes.size());
        const std::size_t fromEnd = at % 200 < bytes.size() ? bytes.size() - 1 - at % 200 : at;
        const std::size_t kind = below(random, 8);
        if (kind == 0) {
            bytes.resize(at);
        } else if (kind == 1) {
            put(bytes, randomBytes(random, below(random, 30)));
        } else if (kind == 2) {
            bytes[at] = 0xFF;
        } else {  // at the end are the end record and the last central headers
            bytes[kind == 3 ? fromEnd : at] ^= static_cast<std::uint8_t>(1U << below(random, 8));
        }
    }
}
