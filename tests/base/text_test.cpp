#include "base/text.h"

#include <gtest/gtest.h>

TEST(Text, ConvertsBothWaysAndReplacesOnlyWhatIsMalformed) {
    const struct {
        const char* utf8;
        const wchar_t* wide;
        bool isWellFormed;
    } cases[] = {
        {"\xC3\xA9\xD0\xA9\xE4\xB8\xAD", L"\u00E9\u0429\u4E2D", true},
        {"\xF0\x9F\x98\x80\xF4\x8F\xBF\xBF", L"\U0001F600\U0010FFFF", true},
        {"a\x80z", L"a\uFFFDz", false},
        {"\xF4\x90\x80\x80", L"\uFFFD\uFFFD\uFFFD\uFFFD", false},
        {"\xE0\x80\xAF", L"\uFFFD\uFFFD\uFFFD", false},
        {"\xED\xA0\xBD\xED\xB8\x80!", L"\U0001F600!", false},
        {"\xED\xB8\x80\xED\xA0\xBD", L"\uFFFD\uFFFD", false},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(wideFromUtf8(c.utf8), c.wide) << c.utf8;
        EXPECT_TRUE(!c.isWellFormed || utf8FromWide(c.wide) == c.utf8) << c.utf8;
    }
    EXPECT_EQ(utf8FromWide(std::wstring{static_cast<wchar_t>(0xD83D), L'!'}), "\xEF\xBF\xBD!");
}
