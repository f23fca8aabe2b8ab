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

TEST(ZipArchive, FindsAndExtractsWhateverTheCaseAndTheSeparators) {
    ZipArchive archive = opened(zipImage(sampleEntries()));
    EXPECT_EQ(archive.extractEntry(L"Content/Root.DAT"), sampleEntries()[0].contents);
    EXPECT_EQ(archive.extractEntry(L"A"), bytesOf("stored"));
    EXPECT_EQ(archive.extractEntry(L"\u0429\u0438\u0442/\uFFFD.bin"), bytesOf("shield"));
    EXPECT_FALSE(archive.hasEntry(L"content/root.da"));
    EXPECT_FALSE(archive.hasEntry(L"content_root.dat"));
    EXPECT_TRUE(ZipArchive::nameStartsWith(L"Previews\\x.png", L"previews/"));
    EXPECT_FALSE(ZipArchive::nameStartsWith(L"preview", L"previews/"));
}

TEST(ZipArchive, RemovesAndReplacesTheFirstEntryOfAName) {
    ZipArchive archive = opened(zipImage(sampleEntries()));
    EXPECT_TRUE(archive.replaceEntry(L"content/root.dat", bytesOf("new")));
    const ZipEntry& replaced = archive.entries()[0];
    EXPECT_EQ(replaced.method, zip::kStored);
    EXPECT_EQ(replaced.compressedSize, 3U);
    EXPECT_EQ(replaced.uncompressedSize, 3U);
    EXPECT_EQ(replaced.crc32, crc32(bytesOf("new").data(), 3));
    EXPECT_EQ(archive.extractEntry(L"content/root.dat"), bytesOf("new"));

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
    const std::size_t header =
        readU32(image, image.size() - zip::kEndSize + zip::kEndDirectoryOffset);
    const struct {
        const char* what;
        std::size_t at;
        std::uint32_t value;
    } cases[] = {
        {"a stream that holds more than it claims", header + zip::kCentralUncompressedSize, 23},
        {"nothing claimed", header + zip::kCentralUncompressedSize, 0},
        {"a stream cut short", header + zip::kCentralCompressedSize, 4},
        {"data beyond the image", header + zip::kCentralCompressedSize, 0xFFFFFFFF},
        {"a header beyond the image", header + zip::kCentralLocalOffset, 0xFFFFFFFF},
        {"a header that is none", header + zip::kCentralLocalOffset, 1},
        {"an unknown method", header + zip::kCentralMethod, 12},
    };
    for (const auto& c : cases) {
        Bytes changed = image;
        writeU32(changed, c.at, c.value);
        ZipArchive archive = opened(std::move(changed));
        EXPECT_EQ(archive.entryCount(), 4U) << c.what;
        EXPECT_EQ(archive.extractEntry(L"content/root.dat"), Bytes()) << c.what;
        EXPECT_EQ(extractedLength(archive.entries()[0]), 0U) << c.what;
        EXPECT_EQ(archive.extractEntry(L"a"), bytesOf("stored")) << c.what;
    }

    Bytes claimsFourGigabytes = image;
    writeU32(claimsFourGigabytes, header + zip::kCentralUncompressedSize, 0xFFFFFFFF);
    ZipArchive archive = opened(std::move(claimsFourGigabytes));
    EXPECT_EQ(archive.extractEntry(L"content/root.dat"), sampleEntries()[0].contents);
    EXPECT_EQ(extractedLength(archive.entries()[0]), 24U);
}

TEST(ZipWriter, WritesAsManyEntriesAsTheFormatHoldsButNotFourGigabytes) {
    const std::vector<TestEntry> entries(65535, {"n", {}, false});
    const Bytes image = repack(opened(zipImage(entries)));
    EXPECT_EQ(opened(image).entryCount(), 65535U);
    EXPECT_EQ(repack(opened(overlappingZip("n"))), Bytes());
}
