// Which language the interface speaks.
#pragma once

#include <cstdint>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>

#include "app/strings/tables.h"

struct LanguageName {
    std::int32_t index;
    const wchar_t* displayName;
};

/// In the order of the selector; position and index coincide. Ended by an entry with index 14.
inline constexpr LanguageName kLanguages[] = {
    {kSimplifiedChinese, L"简体中文"},
    {kTraditionalChinese, L"繁體中文"},
    // Without its háček on purpose.
    {kCzech, L"Ceština"},
    {kDutch, L"Nederlands"},
    {kEnglish, L"English"},
    {kFrench, L"Français"},
    {kGerman, L"Deutsch"},
    {kItalian, L"Italiano"},
    {kJapanese, L"日本語"},
    {kPolish, L"Polski"},
    {kPortuguese, L"Português (Brasil)"},
    {kRussian, L"Русский"},
    {kSpanish, L"Español"},
    {kTurkish, L"Türkçe"},
    {kLanguageCount, nullptr},
};
static_assert(std::size(kLanguages) == kLanguageCount + 1);

/// The language at a position of the selector; English for a position that it does not have.
std::int32_t languageAt(std::int32_t position);

/// The language that a configuration text ("{"lang":4}") chooses; none when it chooses none.
std::optional<std::int32_t> languageFromConfig(std::string_view text);

/// The configuration text of a language.
std::string configOfLanguage(std::int32_t language);

/// The language for a Windows user-interface language identifier. Deliberately coarse: languages
/// that it does not know are reached through the selector.
std::int32_t languageFromIdentifier(std::uint16_t identifier);
