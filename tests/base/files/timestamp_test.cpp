#include "base/files/timestamp.h"

#include <gtest/gtest.h>

TEST(Timestamp, WritesMomentsExactlyAndReadsThemBack) {
    constexpr FileTicks k1970 = 116'444'736'000'000'000;
    const std::pair<FileTicks, const char*> cases[] = {
        {k1970 - 1, "1969-12-31T23:59:59.9999999Z"},
        {k1970 + 19'782 * 86'400 * kTicksPerSecond + 1, "2024-02-29T00:00:00.0000001Z"},
    };
    for (const auto& [ticks, text] : cases) {
        EXPECT_EQ(formatTimestamp(ticks), text);
        EXPECT_EQ(parseTimestamp(text), ticks);
    }
    for (const char* text : {"2023-02-29T00:00:00.0000000Z", "2024-01-01T00:00:00.000000Z"})
        EXPECT_FALSE(parseTimestamp(text)) << text;
}
