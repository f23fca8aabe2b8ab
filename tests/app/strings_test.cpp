#include "app/strings.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

#include "app/language.h"
#include "app/strings/base_texts.h"
#include "base/text.h"

namespace {

class Strings : public testing::Test {
  protected:
    ~Strings() override { setLanguage(kEnglish); }
};

// Such as "%s%d\n": what a translation must keep, in its order.
std::wstring placeholdersAndBreaks(std::wstring_view text) {
    std::wstring kept;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == L'%') kept += text.substr(i, 2);
        if (text[i] == L'\n') kept += L'\n';
    }
    return kept;
}

// Texts that really are the same in English and another language: names, and words that the
// language took over.
bool mayEqualEnglish(std::string_view key, int language) {
    static const std::map<std::string_view, std::set<int>> agreed = {
        {"tab_diag", {kDutch, kGerman}},
        {"tab_cloud", {kCzech, kDutch, kFrench, kGerman, kItalian}},
        {"card_printer", {kDutch}},
    };
    if (key == "brand_title") return true;
    const auto found = agreed.find(key);
    return found != agreed.end() && found->second.contains(language);
}

}  // namespace

TEST_F(Strings, EveryLanguageKeepsTheShapeOfTheEnglishTexts) {
    for (const LanguageName& language : kLanguages) {
        if (language.displayName == nullptr) break;
        for (const std::string_view key : kStringKeys) {
            setLanguage(kEnglish);
            const std::wstring english = tr(key);
            setLanguage(language.index);
            const std::wstring text = tr(key);
            EXPECT_EQ(placeholdersAndBreaks(text), placeholdersAndBreaks(english))
                << key << " in language " << language.index;
            if (language.index != kEnglish && !mayEqualEnglish(key, language.index)) {
                EXPECT_NE(text, english) << key << " in language " << language.index;
            }
        }
    }
}

TEST_F(Strings, AnswersFromThePackOrTheBaseTable) {
    setLanguage(kTraditionalChinese);
    EXPECT_STREQ(tr("tab_about"), L"關於");
    setLanguage(kSimplifiedChinese);
    EXPECT_STREQ(tr("tab_about"), L"关于");
    setLanguage(kEnglish);
    EXPECT_STREQ(tr("tab_about"), L"About");
    EXPECT_STREQ(tr("no_such_key"), L"<missing>");
    EXPECT_STREQ(tr(""), L"<missing>");
}

TEST_F(Strings, TakesUnknownLanguagesAsEnglish) {
    setLanguage(14);
    EXPECT_EQ(currentLanguage(), kEnglish);
    setLanguage(kGerman);
    setLanguage(-1);
    EXPECT_STREQ(tr("tab_about"), L"About");
}

TEST(Language, ReadsTheChoiceFromTheConfiguration) {
    const struct {
        const char* text;
        int language;
    } cases[] = {
        {"{\"lang\":13}\n", 13},
        {"{\"lang\":0}", 0},
        {"{ \"x\":7, \"lang\" : \t4 }", 4},
        {"\"lang\"\n:\n 6", 6},
        {"{\"lang\":14}", -1},
        {"{\"lang\":-1}", -1},
        {"{\"lang\":99999999999999999999}", -1},
        {"{\"lang\":\"4\"}", -1},
        {"{\"lang\"}", -1},
        {"{\"lang\":", -1},
        {"{\"long\":4}", -1},
        {"", -1},
    };
    for (const auto& c : cases)
        EXPECT_EQ(languageFromConfig(c.text).value_or(-1), c.language) << c.text;
    for (int i = 0; i < kLanguageCount; ++i) {
        EXPECT_EQ(languageFromConfig(configOfLanguage(i)).value_or(-1), i);
        EXPECT_EQ(languageAt(i), i);
    }
    EXPECT_EQ(languageAt(-1), kEnglish);
    EXPECT_EQ(languageAt(14), kEnglish);
}

TEST(Language, DetectsJustTheseIdentifiers) {
    const std::map<int, int> known = {
        {0x0404, 0},  {0x0804, 0}, {0x1004, 0},  {0x0407, 6}, {0x040C, 5},
        {0x0C0A, 12}, {0x0410, 7}, {0x0816, 10}, {0x0411, 8},
    };
    for (int identifier = 0; identifier <= 0xFFFF; ++identifier) {
        const auto found = known.find(identifier);
        const int expected = found != known.end() ? found->second : int{kEnglish};
        ASSERT_EQ(languageFromIdentifier(static_cast<std::uint16_t>(identifier)), expected)
            << identifier;
    }
}
