#include "slim/zip_archive.h"

#include <gtest/gtest.h>

#include "slim/crc32.h"
#include "slim/zip_format.h"
#include "slim/zip_writer.h"
#include "tests/slim/document_builder.h"

namespace {

const std::vector<TestEntry>& sampleEntries() {
    static const std::vector<TestEntry> entries = {
        {"content\\root.dat", bytesOf("root root root root root"), true},
        {"a", bytesOf("stored"), false},
        {"a", bytesOf("the second of that name"), true},
        {"\xD0\xA9\xD0\xB8\xD1\x82/\xFF.bin", bytesOf("shield"), true},
    };
    return entries;
}

ZipArchive opened(Bytes image) {
    ZipArchive archive;
    EXPECT_TRUE(archive.openFromBytes(std::move(image)).ok);
    return archive;
}

}  // namespace

TEST(ZipArchive, FindsRemovesAndReplacesTheFirstEntryOfAName) {
    ZipArchive archive = opened(zipImage(sampleEntries()));
    EXPECT_EQ(archive.extractEntry(L"Content/Root.DAT"), sampleEntries()[0].contents);
    EXPECT_EQ(archive.extractEntry(L"\u0429\u0438\u0442/\uFFFD.bin"), bytesOf("shield"));
    EXPECT_FALSE(archive.hasEntry(L"content/root.da"));
    EXPECT_FALSE(archive.hasEntry(L"content_root.dat"));
    EXPECT_TRUE(ZipArchive::nameStartsWith(L"Previews\\x.png", L"previews/"));
    EXPECT_FALSE(ZipArchive::nameStartsWith(L"preview", L"previews/"));

    EXPECT_TRUE(archive.replaceEntry(L"content/root.dat", bytesOf("new")));
    const ZipEntry& replaced = archive.entries()[0];
    EXPECT_EQ(replaced.method, zip::kStored);
    EXPECT_EQ(replaced.compressedSize, 3U);
    EXPECT_EQ(replaced.uncompressedSize, 3U);
    EXPECT_EQ(replaced.crc32, crc32(bytesOf("new").data(), 3));
    EXPECT_EQ(archive.extractEntry(L"content/root.dat"), bytesOf("new"));

    EXPECT_EQ(archive.extractEntry(L"A"), bytesOf("stored"));
    EXPECT_TRUE(archive.removeEntry(L"a"));
    EXPECT_EQ(archive.extractEntry(L"a"), sampleEntries()[2].contents);
    EXPECT_TRUE(archive.removeEntry(L"a"));
    EXPECT_FALSE(archive.removeEntry(L"a"));
    EXPECT_FALSE(archive.replaceEntry(L"a", {}));
    EXPECT_EQ(archive.entryCount(), 4U);
    EXPECT_EQ(archive.listEntryNames().size(), 2U);
}

TEST(ZipArchive, AcceptsOnlyAnEndRecordWhoseCommentEndsWithTheFile) {
    const std::size_t comments[][2] = {{0, 0}, {65535, 65535}, {0, 1}, {65535, 65536}};
    for (const auto& [stated, actual] : comments) {
        Bytes image = zipImage(sampleEntries());
        writeU16(image, image.size() - 2, static_cast<std::uint32_t>(stated));
        image.resize(image.size() + actual, 'c');
        ZipArchive archive;
        const OpenResult result = archive.openFromBytes(std::move(image));
        EXPECT_EQ(result.ok, stated == actual) << actual;
        EXPECT_EQ(result.error, result.ok ? L"" : L"ZIP structure parsing failed");
    }
}

TEST(ZipArchive, GivesNothingForDataItCannotTrust) {
    const Bytes image = zipImage(sampleEntries());
    const std::size_t header = centralHeader(image, 0);
    const struct {
        const char* what;
        std::size_t at;
        std::uint32_t value;
        std::size_t extracted;
    } cases[] = {
        {"a stream that holds more than it claims", zip::kCentralUncompressedSize, 23, 0},
        {"nothing claimed", zip::kCentralUncompressedSize, 0, 0},
        {"four gigabytes claimed", zip::kCentralUncompressedSize, 0xFFFFFFFF, 24},
        {"a stream cut short", zip::kCentralCompressedSize, 4, 0},
        {"data beyond the image", zip::kCentralCompressedSize, 0xFFFFFFFF, 0},
        {"a header beyond the image", zip::kCentralLocalOffset, 0xFFFFFFFF, 0},
        {"a header that is none", zip::kCentralLocalOffset, 1, 0},
        {"an unknown method", zip::kCentralMethod, 12, 0},
    };
    for (const auto& c : cases) {
        Bytes changed = image;
        writeU32(changed, header + c.at, c.value);
        ZipArchive archive = opened(std::move(changed));
        Bytes scratch;
        EXPECT_EQ(archive.viewEntry(L"content/root.dat", scratch).size(), c.extracted) << c.what;
        EXPECT_EQ(extractedLength(archive.entries()[0]), c.extracted) << c.what;
        // No stream expands further than 1032 times, whatever it claims.
        EXPECT_LE(scratch.capacity(), 1032 * image.size()) << c.what;
        EXPECT_EQ(archive.entryCount(), 4U) << c.what;
        EXPECT_EQ(archive.extractEntry(L"a"), bytesOf("stored")) << c.what;
    }
}

TEST(ZipWriter, WritesAsManyEntriesAsTheFormatHoldsButNotFourGigabytes) {
    const std::vector<TestEntry> entries(65535, {"n", {}, false});
    const Bytes image = repack(opened(zipImage(entries)));
    EXPECT_EQ(opened(image).entryCount(), 65535U);
    EXPECT_EQ(repack(opened(overlappingZip("n"))), Bytes());
}

// What is taken out and what takes its place decide which data move to the left and which to the
// right; entries in another order than their data cannot stay in the image.
TEST(ZipWriter, WritesTheSameInPlace) {
    Bytes image = zipImage({{"1", Bytes(50, 'a'), false},
                            {"2", Bytes(70, 'b'), false},
                            {"3", Bytes(90, 'c'), false},
                            {"4", Bytes(40, 'd'), false},
                            {"5", Bytes(60, 'e'), false}});
    Bytes reordered = image;
    writeU32(reordered, centralHeader(image, 2) + zip::kCentralLocalOffset,
             static_cast<std::uint32_t>(localHeader(image, 1)));
    writeU32(reordered, centralHeader(image, 1) + zip::kCentralLocalOffset,
             static_cast<std::uint32_t>(localHeader(image, 2)));
    for (const Bytes& each : {image, reordered}) {
        for (const std::size_t size : {0U, 20U, 100U, 5000U}) {
            for (unsigned replaced = 0; replaced < 32; ++replaced) {
                const auto edited = [&] {
                    ZipArchive archive = opened(each);
                    for (unsigned i = 0; i < 5; ++i) {
                        const std::wstring name = std::to_wstring(i + 1);
                        if ((replaced >> i & 1) != 0) archive.replaceEntry(name, Bytes(size, 'r'));
                    }
                    archive.removeEntry(std::to_wstring(1 + replaced % 5));
                    return archive;
                };
                EXPECT_EQ(repackInPlace(edited()), repack(edited())) << size << " " << replaced;
            }
        }
    }
}
