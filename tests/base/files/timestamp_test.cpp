#include "base/files/timestamp.h"

#include <gtest/gtest.h>

#include "base/size_text.h"

TEST(Timestamp, WritesMomentsExactlyAndReadsThemBack) {
    constexpr FileTicks kDay = 86'400 * kTicksPerSecond;
    constexpr FileTicks k1970 = 116'444'736'000'000'000;
    const struct {
        FileTicks ticks;
        const char* text;
    } cases[] = {
        {0, "1601-01-01T00:00:00.0000000Z"},
        {k1970, "1970-01-01T00:00:00.0000000Z"},
        {k1970 - 1, "1969-12-31T23:59:59.9999999Z"},
        {k1970 + 19'782 * kDay + 1, "2024-02-29T00:00:00.0000001Z"},
        {INT64_MAX, "30828-09-14T02:48:05.4775807Z"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(formatTimestamp(c.ticks), c.text);
        EXPECT_EQ(parseTimestamp(c.text), c.ticks);
    }
    EXPECT_EQ(formatTimestamp(UINT64_MAX), formatTimestamp(INT64_MAX));
    EXPECT_EQ(datedName(k1970 - 1), L"1969-12-31_23-59-59");
    for (const char* text :
         {"", "2024-02-29", "2023-02-29T00:00:00.0000000Z", "2024-13-01T00:00:00.0000000Z",
          "2024-00-01T00:00:00.0000000Z", "2024-01-01T24:00:00.0000000Z",
          "2024-01-01T00:60:00.0000000Z", "2024-01-01T00:00:00.000000Z",
          "2024-01-01T00:00:00.00000000Z", "2024-01-01T00:00:00.0000000Z ",
          "2024-01-01 00:00:00.0000000Z", "+024-01-01T00:00:00.0000000Z",
          "1600-12-31T00:00:00.0000000Z", "9999999-01-01T00:00:00.0000000Z"}) {
        EXPECT_FALSE(parseTimestamp(text)) << text;
    }
}

TEST(Words, RoundSizesDown) {
    const struct {
        std::uint64_t bytes;
        const wchar_t* text;
    } cases[] = {
        {0, L"0 bytes"},         {1, L"1 byte"},
        {1023, L"1023 bytes"},   {1024, L"1.0 KB"},
        {1048575, L"1023.9 KB"}, {1048576, L"1.0 MB"},
        {1610612736, L"1.5 GB"}, {UINT64_MAX, L"16777215.9 TB"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(sizeText(c.bytes), c.text);
    EXPECT_EQ(fileCountText(1), L"1 file");
    EXPECT_EQ(fileCountText(0), L"0 files");
}
