#include "tests/slim/document_builder.h"

#include <zlib.h>

#include <algorithm>
#include <iterator>

#include "slim/zip_format.h"

namespace {

void put(Bytes& out, std::uint64_t value, unsigned count) {
    for (unsigned i = 0; i < count; ++i)
        out.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
}

void put(Bytes& out, const Bytes& bytes) {
    out.insert(out.end(), bytes.begin(), bytes.end());
}

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
Bytes pointer(std::string_view fourcc, Random& random) {
    Bytes data;
    put(data, below(random, 4), 4);
    put(data, below(random, 5000), 4);
    put(data, below(random, 100000), 4);
    put(data, 0, 4);
    return chunk(fourcc, data);
}

Bytes group(unsigned depth, Random& random) {
    std::vector<Bytes> chunks = {pointer("flgs", random), pointer("spid", random)};
    chunks.push_back(list("lgob", {pointer("loda", random)}));
    if (depth > 0) chunks.push_back(group(depth - 1, random));
    return list(depth > 0 ? "grp " : "obj ", chunks);
}

std::vector<Bytes> viewChunks(const DocumentPlan& plan, Random& random) {
    std::vector<Bytes> views;
    for (unsigned i = 0; i < plan.views; ++i)
        views.push_back(pointer("bmrk", random));
    return views;
}

Bytes page(const DocumentPlan& plan, Random& random) {
    const Bytes layer = list("layr", {pointer("flgs", random), group(plan.groupDepth, random)});
    return list("page", {pointer("flgs", random), pointer("bbox", random), list("gobj", {layer})});
}

// Streams of X4 and X5: real data in the chunks, odd lengths among them, and a list whose body is
// compressed.
Bytes riffData(const DocumentPlan& plan) {
    Random random(plan.seed);
    Bytes compressed = bytesOf("cmpr");
    put(compressed, randomBytes(random, 301));
    const Bytes views = list("bmkt", viewChunks(plan, random));
    return riff("CDRE",
                {chunk("vrsn", randomBytes(random, 2)), chunk("DISP", randomBytes(random, 99)),
                 list("INFO", {chunk("IKEY", bytesOf("key"))}), list("doc ", {views}),
                 chunk("LIST", compressed)});
}

}  // namespace

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

Bytes zipImage(const std::vector<TestEntry>& entries, bool ntfsTimes) {
    Bytes image;
    Bytes directory;
    for (const TestEntry& entry : entries) {
        const Bytes data = entry.deflated ? deflated(entry.contents) : entry.contents;
        Bytes common;
        put(common, 0x0800, 2);
        put(common, entry.deflated ? zip::kDeflated : zip::kStored, 2);
        put(common, 0x58314A20, 4);
        put(common, ::crc32(0, entry.contents.data(), static_cast<uInt>(entry.contents.size())), 4);
        put(common, data.size(), 4);
        put(common, entry.contents.size(), 4);
        put(common, entry.name.size(), 2);

        put(directory, zip::kCentralSignature, 4);
        put(directory, 45, 2);
        put(directory, 20, 2);
        put(directory, common);
        put(directory, ntfsTimes ? 36 : 0, 2);
        put(directory, Bytes(10, 0));
        put(directory, image.size(), 4);
        put(directory, bytesOf(entry.name));
        if (ntfsTimes) {
            put(directory, 0x0020000A, 4);
            put(directory, Bytes(32, 7));
        }

        put(image, zip::kLocalSignature, 4);
        put(image, 20, 2);
        put(image, common);
        put(image, 0, 2);
        put(image, bytesOf(entry.name));
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
    DocumentPlan plan;
    plan.product = static_cast<Product>(below(random, 4));
    plan.palette = static_cast<PaletteShape>(below(random, 3));
    plan.views = static_cast<unsigned>(below(random, 4));
    plan.styles = static_cast<unsigned>(below(random, 4));
    plan.pages = static_cast<unsigned>(below(random, 3));
    plan.groupDepth = static_cast<unsigned>(below(random, 13));
    plan.previews = below(random, 4) != 0;
    plan.data2 = below(random, 3) == 0;
    plan.payloadBytes = below(random, 400);
    plan.seed = random();
    return plan;
}

Bytes rootDat(const DocumentPlan& plan) {
    Random random(plan.seed);
    std::vector<Bytes> chunks = {pointer("fver", random), pointer("vrsn", random)};
    chunks.push_back(list(
        "doc ", {pointer("mcfg", random), pointer("ptrt", random),
                 list("fntt", {pointer("font", random)}), list("bmkt", viewChunks(plan, random)),
                 list("filt", {pointer("fild", random)}), pointer("stlt", random)}));
    for (unsigned i = 0; i < plan.pages; ++i)
        chunks.push_back(page(plan, random));
    return riff("CDRR", chunks);
}

Bytes palette(const DocumentPlan& plan) {
    std::string xml =
        R"(<?xml version="1.0" encoding="UTF-8"?><palette guid="2b5d" name="Document Palette")";
    if (plan.palette == PaletteShape::selfClosed) return bytesOf(xml + "/>");
    xml += ">";
    if (plan.palette == PaletteShape::spotInks)
        xml +=
            R"(<colorspaces><cs name="Spot"><color cs="LAB" tints="0.2,0.3,0.4"/></cs></colorspaces>)";
    xml += "<colors><page>";
    for (unsigned i = 0; i < plan.styles; ++i)
        xml += R"(<color cs="CMYK" name="Ink )" + std::to_string(i) + R"(" tints="0,0,0,1"/>)";
    return bytesOf(xml + "</page></colors></palette>");
}

std::vector<TestEntry> documentEntries(const DocumentPlan& plan) {
    Random random(plan.seed ^ 0x5bd1e995);
    const bool isX7 = plan.product == Product::x7;
    const std::string metadata = isX7 ? "META-INF/" : "metadata/";
    std::vector<TestEntry> entries;
    const auto add = [&](std::string name, Bytes contents, bool isDeflated = true) {
        entries.push_back({std::move(name), std::move(contents), isDeflated});
    };

    if (isX7) add("mimetype", bytesOf("application/x-vnd.corel.zcf.draw.document+zip"), false);
    if (plan.product < Product::x6) {
        add("content/riffData.cdr", riffData(plan), false);
    } else {
        for (const char* name : {"data1", "masterPage", "page1", "Bitmaps"})
            add(std::string("content/data/") + name + ".dat",
                randomBytes(random, plan.payloadBytes));
        add("content/dataFileList.dat",
            bytesOf("data1.dat\nmasterPage.dat\npage1.dat\nBitmaps.dat"));
        add("content/root.dat", rootDat(plan));
        if (plan.data2)
            add("content/data2.dat", riff("CDRD", {list("bmkt", viewChunks(plan, random))}));
    }
    if (plan.previews) {
        const std::string folder = isX7 ? "previews/" : "metadata/thumbnails/";
        const std::string type = isX7 ? ".png" : ".bmp";
        add(folder + "thumbnail" + type, randomBytes(random, plan.payloadBytes / 8), isX7);
        add(folder + "page1" + type, Bytes(plan.payloadBytes / 4, 0x5A));
    }
    // Some keep their palette at the root, where it is looked for last.
    add(plan.seed % 8 == 7 ? "DocPalette.XML" : "color/docPalette.xml", palette(plan));
    add("color/profiles/Coated FOGRA39%20(ISO).icc", randomBytes(random, plan.payloadBytes), false);
    add("embed/embedding1.png", randomBytes(random, plan.payloadBytes));
    add("styles/document.cdss", Bytes(plan.payloadBytes, 0x20));
    add(metadata + "metadata.xml", bytesOf("<metadata AppVersion=\"2400\"/>"));
    if (isX7)
        add("META-INF/container.xml",
            bytesOf("<container><rootfile full-path=\"previews/page1.png\"/></container>"));
    return entries;
}

Bytes buildDocument(const DocumentPlan& plan) {
    return zipImage(documentEntries(plan), plan.product != Product::x4);
}

Bytes overlappingZip(const std::string& firstName) {
    std::vector<TestEntry> entries(65535, {"n", {}, false});
    entries[0] = {firstName, Bytes(100000, 'x'), false};
    Bytes image = zipImage(entries, false);
    std::size_t header = readU32(image, image.size() - zip::kEndSize + zip::kEndDirectoryOffset);
    while (readU32(image, header) == zip::kCentralSignature) {
        writeU32(image, header + zip::kCentralCompressedSize, 100000);
        writeU32(image, header + zip::kCentralLocalOffset, 0);
        header += zip::kCentralSize + readU16(image, header + zip::kCentralNameLength);
    }
    return image;
}

void damage(Bytes& bytes, Random& random) {
    for (std::size_t i = below(random, 4) + 1; i > 0 && !bytes.empty(); --i) {
        const std::size_t at = below(random, bytes.size());
        switch (below(random, 8)) {
            case 0:
                bytes.resize(at);
                break;
            case 1:
                put(bytes, randomBytes(random, below(random, 30)));
                break;
            case 2:
                bytes[at] = 0xFF;
                break;
            case 3:  // the end record and the last central headers
                bytes[bytes.size() - 1 - at % std::min<std::size_t>(bytes.size(), 200)] ^=
                    static_cast<std::uint8_t>(1U << below(random, 8));
                break;
            default:
                bytes[at] ^= static_cast<std::uint8_t>(1U << below(random, 8));
        }
    }
}
