#include "app/strings.h"

#include <gtest/gtest.h>

#include <map>
#include <set>

#include "app/language.h"
#include "app/strings/base_texts.h"

// Such as "%s%d\n": what a translation must keep, in its order.
static std::wstring placeholdersAndBreaks(std::wstring_view text) {
    std::wstring kept;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == L'%') kept += text.substr(i, 2);
        if (text[i] == L'\n') kept += L'\n';
    }
    return kept;
}

// The words that a language writes like English. Every other text must differ.
static bool isTakenOver(std::string_view key, int language) {
    static const std::map<std::string_view, std::set<int>> kTakenOver = {
        {"tab_cloud", {kCzech, kDutch, kFrench, kGerman, kItalian}},
        {"tab_diag", {kDutch, kGerman}},
        {"card_printer", {kDutch}},
    };
    const auto found = kTakenOver.find(key);
    return key == "brand_title" || (found != kTakenOver.end() && found->second.contains(language));
}

TEST(Strings, EveryLanguageIsTranslatedInTheShapeOfTheEnglishTexts) {
    for (int language = 0; language < kLanguageCount; ++language) {
        if (language == kEnglish) continue;
        for (const std::string_view key : kStringKeys) {
            SCOPED_TRACE(testing::Message() << key << " in language " << language);
            setLanguage(kEnglish);
            const std::wstring english = tr(key);
            setLanguage(language);
            EXPECT_EQ(placeholdersAndBreaks(tr(key)), placeholdersAndBreaks(english));
            EXPECT_EQ(english == tr(key), isTakenOver(key, language));
        }
    }
    setLanguage(14);
    EXPECT_STREQ(tr("tab_about"), L"About");
    EXPECT_STREQ(tr("no_such_key"), L"<missing>");
    setLanguage(kEnglish);
}

TEST(Language, IsFoundByConfigurationPositionAndIdentifier) {
    for (int i = 0; i < kLanguageCount; ++i) {
        EXPECT_EQ(languageFromConfig(configOfLanguage(i)).value_or(-1), i);
        EXPECT_EQ(languageAt(i), i);
    }
    EXPECT_EQ(languageAt(-1) + languageAt(14), 2 * kEnglish);
    EXPECT_EQ(languageFromConfig("{\"x\":7, \"lang\"\n : \t6x}").value_or(-1), 6);
    for (const char* text :
         {"", "{\"lang\":14}", "{\"lang\":-1}", "{\"lang\":99999999999999999999}", "{\"lang\"}",
          "{\"lang\":\"4\"}", "{\"long\":4}"})
        EXPECT_FALSE(languageFromConfig(text)) << text;
    for (const auto& [identifier, language] : std::map<std::uint16_t, int>{
             {0x0404, 0}, {0x0407, kGerman}, {0x0807, kEnglish}, {0x0C0A, 12}, {0x0816, 10}})
        EXPECT_EQ(languageFromIdentifier(identifier), language) << identifier;
}
