#include "slim/zip_archive.h"

#include <gtest/gtest.h>

#include "slim/zip_format.h"
#include "slim/zip_writer.h"
#include "tests/slim/document_builder.h"

namespace {

ZipArchive opened(Bytes image) {
    ZipArchive archive;
    EXPECT_TRUE(archive.openFromBytes(std::move(image)).ok);
    return archive;
}

}  // namespace

TEST(ZipArchive, FindsRemovesAndReplacesTheFirstEntryOfAName) {
    ZipArchive archive = opened(zipImage({{"content\\root.dat", bytesOf("root")},
                                          {"a", bytesOf("stored"), false},
                                          {"a", bytesOf("the second of that name")},
                                          {"\xD0\xA9/\xFF.bin", bytesOf("shield")}}));
    EXPECT_EQ(archive.extractEntry(L"Content/Root.DAT"), bytesOf("root"));
    EXPECT_EQ(archive.extractEntry(L"\u0429/\uFFFD.bin"), bytesOf("shield"));
    EXPECT_FALSE(archive.hasEntry(L"content/root.da"));
    EXPECT_FALSE(archive.hasEntry(L"content_root.dat"));
    EXPECT_TRUE(ZipArchive::nameStartsWith(L"Previews\\x.png", L"previews/"));
    EXPECT_FALSE(ZipArchive::nameStartsWith(L"preview", L"previews/"));

    EXPECT_TRUE(archive.replaceEntry(L"content/root.dat", bytesOf("new")));
    EXPECT_EQ(archive.extractEntry(L"content/root.dat"), bytesOf("new"));
    EXPECT_EQ(archive.extractEntry(L"A"), bytesOf("stored"));
    EXPECT_TRUE(archive.removeEntry(L"a"));
    EXPECT_EQ(archive.extractEntry(L"a"), bytesOf("the second of that name"));
    EXPECT_TRUE(archive.removeEntry(L"a"));
    EXPECT_FALSE(archive.removeEntry(L"a") || archive.replaceEntry(L"a", {}));
}

// No stream expands further than 1032 times, whatever it claims.
TEST(ZipArchive, BelievesNoSizeThatNoStreamHas) {
    for (const std::uint32_t claimed : {0U, 23U, 24U, 0xFFFFFFFFU}) {
        Bytes image = zipImage({{"root.dat", bytesOf("root root root root root")}});
        writeU32(image, centralHeader(image, "root.dat") + zip::kCentralUncompressedSize, claimed);
        ZipArchive archive = opened(image);
        Bytes scratch;
        EXPECT_EQ(archive.viewEntry(L"root.dat", scratch).size(), claimed < 24 ? 0U : 24U);
        EXPECT_LE(scratch.capacity(), 1032 * image.size());
    }
}

// What is taken out and what takes its place decide which data move to the left and which to the
// right; entries in another order than their data cannot stay in the image.
TEST(ZipWriter, WritesTheSameInPlace) {
    const auto name = [](std::size_t i) { return "entry " + std::to_string(i); };
    std::vector<TestEntry> entries;
    for (const unsigned size : {50U, 70U, 90U, 40U, 60U})
        entries.push_back(
            {name(entries.size()), Bytes(size, static_cast<std::uint8_t>(size)), false});
    const Bytes image = zipImage(entries);
    Bytes reordered = image;
    for (const unsigned i : {1U, 2U})
        writeU32(reordered, centralHeader(image, name(i)) + zip::kCentralLocalOffset,
                 static_cast<std::uint32_t>(localHeader(image, name(3 - i))));
    for (const Bytes& each : {image, reordered}) {
        for (const std::size_t size : {0U, 20U, 100U, 5000U}) {
            for (unsigned replaced = 0; replaced < 32; ++replaced) {
                const auto edited = [&] {
                    ZipArchive archive = opened(each);
                    for (unsigned i = 0; i < 5; ++i) {
                        const std::wstring wide = archive.entries()[i].name;
                        if ((replaced >> i & 1) != 0) archive.replaceEntry(wide, Bytes(size, 'r'));
                        if (i == replaced % 5) archive.removeEntry(wide);
                    }
                    return archive;
                };
                EXPECT_EQ(repackInPlace(edited()), repack(edited())) << size << " " << replaced;
            }
        }
    }
}
