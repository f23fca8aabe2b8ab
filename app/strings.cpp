#include "app/strings.h"

#include <algorithm>
#include <array>
#include <string>
#include <unordered_map>

#include "app/strings/base_texts.h"
#include "app/strings/packs.h"

namespace {

using TextMap = std::unordered_map<std::string_view, const wchar_t*>;

std::int32_t g_language = kEnglish;

std::array<TextMap, kLanguageCount> loadPacks() {
    std::array<TextMap, kLanguageCount> maps;
    for (const auto* pack : {&kTraditionalChineseTexts, &kCzechTexts, &kDutchTexts, &kFrenchTexts,
                             &kGermanTexts, &kItalianTexts, &kJapaneseTexts, &kPolishTexts,
                             &kPortugueseTexts, &kRussianTexts, &kSpanishTexts, &kTurkishTexts}) {
        for (const PackText& record : *pack) {
            maps[static_cast<std::size_t>(record.language)].emplace(record.key, record.text);
        }
    }
    return maps;
}

const TextMap& packOf(std::int32_t language) {
    static const std::array<TextMap, kLanguageCount> maps = loadPacks();
    return maps[static_cast<std::size_t>(language)];
}

// Texts that take the place of the base table's, by the decimal FNV-1a hash of the key (RFC draft
// "The FNV Non-Cryptographic Hash Algorithm"). A required place for a maker's own wording: nothing
// fills it, and it stays.
const std::unordered_map<std::string, std::wstring>& overrides() {
    static const std::unordered_map<std::string, std::wstring> none;
    return none;
}

std::string overrideKey(std::string_view key) {
    std::uint64_t hash = 0xcbf29ce484222325;
    for (const char c : key) {
        hash ^= static_cast<unsigned char>(c);
        hash *= 0x100000001b3;
    }
    return std::to_string(hash);
}

bool isKnown(std::int32_t language) {
    return language >= 0 && language < kLanguageCount;
}

const wchar_t* baseText(const BaseText& record) {
    const auto isFilled = [](const wchar_t* text) { return text != nullptr && *text != L'\0'; };
    if (isKnown(g_language) && isFilled(record.text[g_language])) return record.text[g_language];
    return isFilled(record.text[kEnglish]) ? record.text[kEnglish]
                                           : record.text[kSimplifiedChinese];
}

}  // namespace

void setLanguage(std::int32_t language) {
    g_language = language >= kLanguageCount ? std::int32_t{kEnglish} : language;
}

std::int32_t currentLanguage() {
    return g_language;
}

const wchar_t* tr(std::string_view key) {
    if (isKnown(g_language)) {
        const TextMap& pack = packOf(g_language);
        if (const auto found = pack.find(key); found != pack.end()) return found->second;
    }
    const auto* record = std::find_if(std::begin(kBaseTexts), std::end(kBaseTexts),
                                      [&](const BaseText& base) { return base.key == key; });
    if (record == std::end(kBaseTexts)) return L"<missing>";
    const auto replacement = overrides().find(overrideKey(key));
    return replacement != overrides().end() ? replacement->second.c_str() : baseText(*record);
}
