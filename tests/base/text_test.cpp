#include "base/text.h"

#include <gtest/gtest.h>

#include <limits>

TEST(Text, ConvertsWellFormedTextBothWays) {
    const struct {
        const char* utf8;
        const wchar_t* wide;
    } cases[] = {
        {"", L""},
        {"plan.cdr", L"plan.cdr"},
        {"\xC3\xA9\xD0\xA9", L"\u00E9\u0429"},
        {"\xE4\xB8\xAD\xE6\x96\x87", L"\u4E2D\u6587"},
        {"\xF0\x9F\x98\x80", L"\U0001F600"},
        {"\xF4\x8F\xBF\xBF", L"\U0010FFFF"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(wideFromUtf8(c.utf8), c.wide) << c.utf8;
        EXPECT_EQ(utf8FromWide(c.wide), c.utf8);
    }
}

TEST(Text, ReplacesWhatIsMalformedAndKeepsTheRest) {
    const struct {
        const char* utf8;
        const wchar_t* wide;
    } cases[] = {
        {"a\x80z", L"a\uFFFDz"},
        {"\xC0\xAF", L"\uFFFD\uFFFD"},
        {"\xE4\xB8", L"\uFFFD\uFFFD"},
        {"\xF4\x90\x80\x80", L"\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"\xF8x", L"\uFFFDx"},
        {"\xE0\x80\xAF", L"\uFFFD\uFFFD\uFFFD"},
        {"\xED\xA0\xBD\xED\xB8\x80!", L"\U0001F600!"},
        {"\xED\xA0\xBD!", L"\uFFFD!"},
        {"\xED\xB8\x80\xED\xA0\xBD", L"\uFFFD\uFFFD"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(wideFromUtf8(c.utf8), c.wide);
    EXPECT_EQ(utf8FromWide(std::wstring{static_cast<wchar_t>(0xD83D), L'!'}), "\xEF\xBF\xBD!");
    EXPECT_EQ(utf8FromWide(std::wstring{static_cast<wchar_t>(0xDE00)}), "\xEF\xBF\xBD");
}

TEST(Text, WritesNumbersAtTheirLimits) {
    EXPECT_EQ(decimal(0), L"0");
    EXPECT_EQ(decimal(-7), L"-7");
    EXPECT_EQ(decimal(std::numeric_limits<std::int64_t>::min()), L"-9223372036854775808");
    EXPECT_EQ(decimalUnsigned(std::numeric_limits<std::uint64_t>::max()), L"18446744073709551615");
}

TEST(Text, ComparesIgnoringCaseOnlyWholeTexts) {
    EXPECT_TRUE(equalsIgnoringCase(L"", L""));
    EXPECT_TRUE(equalsIgnoringCase(L"Content/Root.DAT", L"content/root.dat"));
    EXPECT_FALSE(equalsIgnoringCase(L"content/root.dat", L"content/root.da"));
    EXPECT_FALSE(equalsIgnoringCase(L"a_b", L"a b"));
}
