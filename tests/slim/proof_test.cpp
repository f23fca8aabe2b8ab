#include "slim/proof.h"

#include <gtest/gtest.h>

#include "slim/slim_document.h"
#include "slim/zip_format.h"
#include "slim/zip_writer.h"
#include "tests/slim/document_builder.h"
#include "tests/slim/fake_files.h"

namespace {

enum Entry : std::size_t { kMimetype, kBitmaps, kRoot, kPreview, kMetadata, kLast };

Bytes stream(std::size_t views, const Bytes& tail = {}) {
    std::vector<Bytes> chunks(views, chunk("bmrk", Bytes(16, 1)));
    chunks.push_back(chunk("loda", bytesOf("odd")));
    return riff("CDRR", {chunk("fver", Bytes(16, 0)), list("doc ", {list("bmkt", chunks)}), tail});
}

Bytes document(const Bytes& root = stream(2)) {
    return zipImage({{"mimetype", bytesOf("zip"), false},
                     {"content/data/Bitmaps.dat", Bytes(300, 'b')},
                     {"content/root.dat", root},
                     {"previews/page1.png", bytesOf("png")},
                     {"META-INF/metadata.xml", bytesOf("<metadata/>")}});
}

// Central and local header as CorelDRAW writes them, with one field changed.
Bytes with(bool isCentral, std::size_t entry, std::size_t field, std::uint32_t value) {
    Bytes image = document();
    const std::size_t header = isCentral ? centralHeader(image, entry) : localHeader(image, entry);
    writeU16(image, header + field, value & 0xFFFF);
    if (value > 0xFFFF) writeU16(image, header + field + 2, value >> 16);
    return image;
}

Bytes counting(std::uint32_t entries) {
    Bytes image = document();
    writeU16(image, image.size() - zip::kEndSize + zip::kEndTotalEntries, entries);
    return image;
}

std::uint32_t otherSum(std::size_t entry) {
    const Bytes image = document();
    return readU16(image, centralHeader(image, entry) + zip::kCentralCrc) ^ 4U;
}

}  // namespace

TEST(Proof, RefusesArchivesThatWouldLoseSomething) {
    const std::wstring zip64 = L" has 64-bit sizes (ZIP64)";
    const std::wstring noData = L" has no usable data";
    const std::wstring sum = L" does not match its checksum";
    const std::wstring headers = L" is described differently in its two headers";
    const std::wstring directory = L"the directory of the archive is damaged";
    const std::wstring bitmaps = L"\"content/data/Bitmaps.dat\"";
    const std::wstring mimetype = L"\"mimetype\"";
    constexpr std::uint32_t kAll = 0xFFFFFFFF;
    const std::pair<Bytes, std::wstring> cases[] = {
        {document(), L""},
        {with(true, kBitmaps, zip::kCentralCompressedSize, kAll), bitmaps + zip64},
        {with(true, kBitmaps, zip::kCentralUncompressedSize, kAll), bitmaps + zip64},
        {with(true, kBitmaps, zip::kCentralLocalOffset, kAll), bitmaps + zip64},
        {with(true, kBitmaps, zip::kCentralFlags, 0x0801), bitmaps + L" is encrypted"},
        {with(false, kBitmaps, zip::kLocalFlags, 0x0801), bitmaps + L" is encrypted"},
        {with(false, kBitmaps, 0, 0x4B51), bitmaps + noData},
        {with(true, kMimetype, zip::kCentralCompressedSize, 2000), mimetype + noData},
        {with(true, kMimetype, zip::kCentralUncompressedSize, 2), mimetype + sum},
        {with(true, kMimetype, zip::kCentralCrc, otherSum(kMimetype)), mimetype + sum},
        {with(true, kBitmaps, zip::kCentralCrc, otherSum(kBitmaps)), bitmaps + sum},
        {with(true, kBitmaps, zip::kCentralUncompressedSize, 301), bitmaps + sum},
        {with(true, kBitmaps, zip::kCentralMethod, 12), bitmaps + headers},
        {with(true, kBitmaps, zip::kCentralSize, 'C' | 'o' << 8),
         L"\"Content/data/Bitmaps.dat\"" + headers},
        {with(true, kMetadata, 0, 0x4B51), directory},
        {with(true, kPreview, zip::kCentralCommentLength, 1), directory},
        {counting(kLast - 1), directory},
        {counting(kLast + 1), directory},
        // A chunk whose size passes the end of its stream: what it held cannot be told.
        {document(stream(2, joined({bytesOf("loda\xFF"), Bytes(7, 0)}))),
         L"\"content/root.dat\" would lose more than it should"},
        {document(stream(2, Bytes(1, 7))), L""},
    };
    const std::wstring path = L"plan.cdr";
    for (const auto& [image, detail] : cases) {
        FakeFiles files{{{path, image}}};
        const SlimOutcome outcome = slimDocument(path, {}, files.seam());
        const std::wstring refusal =
            L"Repack verification failed: " + detail + L". File not modified, backup kept.";
        EXPECT_EQ(outcome.message, detail.empty() ? L"" : refusal);
        EXPECT_EQ(outcome.ok, detail.empty());
        EXPECT_EQ(files.writes, detail.empty() ? 1 : 0);
        ZipArchive slimmed;
        if (outcome.ok) slimmed.openView(files.contents[path]);
        EXPECT_EQ(slimmed.extractEntry(L"content/root.dat").size() % 4, 0U);
    }
}

// Images that a faulty editor or writer would leave behind.
TEST(Proof, FindsWhatIsMissing) {
    const Bytes palette = bytesOf("<p><colors><color /></colors><keep/></p>");
    const Bytes cleared = bytesOf("<p><colors><page></page></colors><keep/></p>");
    const TestEntry drawing = {"content/root.dat", stream(0), false};
    const TestEntry inks = {"docPalette.xml", cleared, false};
    const TestEntry bitmaps = {"Bitmaps.dat", Bytes(300, 'b')};
    const TestEntry other = {"Bitmaps.dat", Bytes(300, 'c')};
    const TestEntry renamed = {"bitmaps.dat", Bytes(300, 'b')};
    ZipArchive archive;
    archive.openFromBytes(
        zipImage({{"content/root.dat", stream(2)}, {"docPalette.xml", palette}, bitmaps}));
    archive.replaceEntry(L"content/root.dat", drawing.contents);
    archive.replaceEntry(L"docPalette.xml", cleared);
    const Inventory before = takeInventory(archive);
    EXPECT_EQ(before.defect, L"");
    const std::vector<Rewritten> rewritten = {{L"content/root.dat", stream(2)},
                                              {L"docPalette.xml", palette}};
    const auto loss = [&](const std::vector<TestEntry>& entries) {
        return findLoss(before, rewritten, zipImage(entries));
    };
    const auto withStream = [&](const Bytes& contents) {
        return loss({{"content/root.dat", contents, false}, inks, bitmaps});
    };
    const auto withPalette = [&](const char* text) {
        return loss({drawing, {"docPalette.xml", bytesOf(text), false}, bitmaps});
    };
    EXPECT_EQ(loss({drawing, inks, bitmaps}), L"");
    EXPECT_EQ(findLoss(before, rewritten, repack(archive)), L"");
    EXPECT_EQ(loss({drawing, inks}), L"entries would be lost");
    EXPECT_EQ(loss({drawing, inks, other}), L"\"Bitmaps.dat\" would not be kept as it is");
    EXPECT_EQ(loss({drawing, inks, renamed}), L"\"bitmaps.dat\" would not be kept as it is");
    EXPECT_EQ(loss({inks, drawing, bitmaps}), L"\"docPalette.xml\" would not be kept as it is");
    EXPECT_EQ(findLoss(before, rewritten, {}), L"the new archive cannot be read");

    const std::wstring lossOfStream = L"\"content/root.dat\" would lose more than it should";
    Bytes wrongSize = stream(0);
    wrongSize[4] ^= 2;
    const Bytes shorter = riff("CDRR", {chunk("fver", Bytes(16, 0))});
    const Bytes changed =
        riff("CDRR", {chunk("fver", Bytes(16, 0)),
                      list("doc ", {list("bmkt", {chunk("loda", bytesOf("ods"))})})});
    const Bytes retyped =
        riff("CDRR", {chunk("fver", Bytes(16, 0)),
                      list("doc ", {list("bmkx", {chunk("loda", bytesOf("odd"))})})});
    const Bytes longer = stream(0, Bytes(4, 0));
    for (const Bytes& each : {wrongSize, shorter, changed, retyped, longer, stream(1), Bytes()})
        EXPECT_EQ(withStream(each), lossOfStream);
    const std::wstring lossOfPalette = L"\"docPalette.xml\" would lose more than it should";
    EXPECT_EQ(withPalette("<p><colors><page></page></colors><keeq/></p>"), lossOfPalette);
    EXPECT_EQ(withPalette("<p><colors><page></xage></colors><keep/></p>"), lossOfPalette);
    EXPECT_EQ(withPalette("<q><colors><page></page></colors><keep/></p>"), lossOfPalette);
}
