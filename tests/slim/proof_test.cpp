#include "slim/proof.h"

#include <gtest/gtest.h>

#include "slim/slim_document.h"
#include "slim/zip_format.h"
#include "slim/zip_writer.h"
#include "tests/slim/document_builder.h"
#include "tests/slim/fake_files.h"

namespace {

constexpr const char* kBitmaps = "content/data/Bitmaps.dat";

Bytes stream(std::size_t views, const std::string& tail = {}) {
    std::string chunks;
    while (views-- > 0)
        chunks += chunk("bmrk", std::string(16, 'v'));
    return riff("CDRR", chunk("fver", std::string(16, 'f')) +
                            list("doc ", list("bmkt", chunks + chunk("loda", "odd"))) + tail);
}

Bytes document(const Bytes& root = stream(2)) {
    return zipImage({{"mimetype", bytesOf("zip"), false},
                     {kBitmaps, Bytes(300, 'b')},
                     {"content/root.dat", root},
                     {"previews/page1.png", bytesOf("png")},
                     {"META-INF/metadata.xml", bytesOf("<metadata/>")}});
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
    const Bytes good = document();
    const std::size_t local = localHeader(good, kBitmaps);
    const std::size_t first = centralHeader(good, "mimetype");
    const std::size_t second = centralHeader(good, kBitmaps);
    const std::size_t preview = centralHeader(good, "previews/page1.png");
    const std::size_t count = good.size() - zip::kEndSize + zip::kEndTotalEntries;
    const auto with = [&](std::size_t at, std::uint32_t value) {
        Bytes image = good;
        value > 0xFFFF ? writeU32(image, at, value) : writeU16(image, at, value);
        return image;
    };
    const std::pair<Bytes, std::wstring> cases[] = {
        {good, L""},
        {with(second + zip::kCentralCompressedSize, kAll), bitmaps + zip64},
        {with(second + zip::kCentralUncompressedSize, kAll), bitmaps + zip64},
        {with(second + zip::kCentralLocalOffset, kAll), bitmaps + zip64},
        {with(second + zip::kCentralFlags, 0x0801), bitmaps + L" is encrypted"},
        {with(local + zip::kLocalFlags, 0x0801), bitmaps + L" is encrypted"},
        {with(local, 0x4B51), bitmaps + noData},
        {with(first + zip::kCentralCompressedSize, 2000), mimetype + noData},
        {with(first + zip::kCentralUncompressedSize, 2), mimetype + sum},
        {with(first + zip::kCentralCrc, 0), mimetype + sum},
        {with(second + zip::kCentralCrc, 0), bitmaps + sum},
        {with(second + zip::kCentralUncompressedSize, 301), bitmaps + sum},
        {with(second + zip::kCentralMethod, 12), bitmaps + headers},
        {with(second + zip::kCentralSize, 'C' | 'o' << 8),
         L"\"Content/data/Bitmaps.dat\"" + headers},
        {with(centralHeader(good, "META-INF/metadata.xml"), 0x4B51), directory},
        {with(preview + zip::kCentralCommentLength, 1), directory},
        {with(count, 4), directory},
        {with(count, 6), directory},
        // A chunk whose size passes the end of its stream: what it held cannot be told.
        {document(stream(2, chunk("loda", "too long").substr(0, 12))),
         L"\"content/root.dat\" would lose more than it should"},
        {document(stream(2, "x")), L""},
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
    const TestEntry drawing = {"content/root.dat", stream(0), false};
    const TestEntry inks = {"docPalette.xml",
                            bytesOf("<p><colors><page></page></colors><keep/></p>"), false};
    const TestEntry bitmaps = {"Bitmaps.dat", Bytes(300, 'b')};
    ZipArchive archive;
    archive.openFromBytes(
        zipImage({{"content/root.dat", stream(2)}, {"docPalette.xml", palette}, bitmaps}));
    archive.replaceEntry(L"content/root.dat", drawing.contents);
    archive.replaceEntry(L"docPalette.xml", inks.contents);
    const Inventory before = takeInventory(archive);
    const std::vector<Rewritten> rewritten = {{L"content/root.dat", stream(2)},
                                              {L"docPalette.xml", palette}};
    const auto loss = [&](const std::vector<TestEntry>& entries) {
        return findLoss(before, rewritten, zipImage(entries));
    };
    EXPECT_EQ(findLoss(before, rewritten, repack(archive)), L"");
    EXPECT_EQ(findLoss(before, rewritten, {}), L"the new archive cannot be read");
    EXPECT_EQ(loss({drawing, inks, bitmaps}), L"");
    EXPECT_EQ(loss({drawing, inks}), L"entries would be lost");
    EXPECT_EQ(loss({drawing, inks, {"Bitmaps.dat", Bytes(300, 'c')}}),
              L"\"Bitmaps.dat\" would not be kept as it is");
    EXPECT_EQ(loss({drawing, inks, {"bitmaps.dat", bitmaps.contents}}),
              L"\"bitmaps.dat\" would not be kept as it is");
    EXPECT_EQ(loss({inks, drawing, bitmaps}), L"\"docPalette.xml\" would not be kept as it is");

    Bytes wrongSize = stream(0), retyped = stream(0), changed = stream(0);
    wrongSize[4] ^= 2;
    retyped[std::size(retyped) - 13] ^= 1;
    changed[std::size(changed) - 2] ^= 1;
    const Bytes longer = stream(0, std::string(4, '\0'));
    const Bytes shorter = riff("CDRR", chunk("fver", std::string(16, 'f')));
    for (const Bytes& each : {wrongSize, retyped, changed, longer, shorter, stream(1), Bytes()})
        EXPECT_EQ(loss({{"content/root.dat", each, false}, inks, bitmaps}),
                  L"\"content/root.dat\" would lose more than it should");
    for (const char* text : {"<p><colors><page></page></colors><keeq/></p>",
                             "<p><colors><page></xage></colors><keep/></p>",
                             "<q><colors><page></page></colors><keep/></p>"})
        EXPECT_EQ(loss({drawing, {"docPalette.xml", bytesOf(text), false}, bitmaps}),
                  L"\"docPalette.xml\" would lose more than it should");
}
