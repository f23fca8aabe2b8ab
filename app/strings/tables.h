// The shapes of the text tables, and the checks that every table makes of itself at compile time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>

#include "app/strings/keys.h"

inline constexpr int kLanguageCount = 14;

enum Language : std::int32_t {
    kSimplifiedChinese = 0,
    kTraditionalChinese = 1,
    kCzech = 2,
    kDutch = 3,
    kEnglish = 4,
    kFrench = 5,
    kGerman = 6,
    kItalian = 7,
    kJapanese = 8,
    kPolish = 9,
    kPortuguese = 10,
    kRussian = 11,
    kSpanish = 12,
    kTurkish = 13,
};

/// One record of the base table: only Simplified Chinese and English are filled, the rest is null.
struct BaseText {
    const char* key;
    const wchar_t* text[kLanguageCount];
};

/// One record of a language pack.
struct PackText {
    std::int32_t language;
    const char* key;
    const wchar_t* text;
};

/// True when a text can be shown as it stands: not empty, no blank at either end.
constexpr bool isShowable(const wchar_t* text) {
    if (text == nullptr || *text == L'\0') return false;
    const std::wstring_view view(text);
    const auto isBlank = [](wchar_t c) {
        return c == L' ' || c == L'\n' || c == L'\t' || c == 0xA0 || c == 0x3000;
    };
    return !isBlank(view.front()) && !isBlank(view.back());
}

/// True when a pack holds every key once, in table order, for one language, each with a
/// text that can be shown.
template <std::size_t N>
constexpr bool isCompletePack(const PackText (&pack)[N], std::int32_t language) {
    if (N != kStringKeys.size()) return false;
    for (std::size_t i = 0; i < N; ++i) {
        if (pack[i].language != language || kStringKeys[i] != pack[i].key) return false;
        if (!isShowable(pack[i].text)) return false;
    }
    return true;
}
