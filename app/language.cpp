#include "app/language.h"

#include <cstdlib>

std::int32_t languageAt(std::int32_t position) {
    if (position < 0 || position >= kLanguageCount) return kEnglish;
    return kLanguages[position].index;
}

std::optional<std::int32_t> languageFromConfig(std::string_view text) {
    const std::size_t key = text.find("\"lang\"");
    if (key == std::string_view::npos) return std::nullopt;
    const std::size_t colon = text.find(':', key);
    if (colon == std::string_view::npos) return std::nullopt;

    const std::string number(text.substr(colon + 1));
    char* end = nullptr;
    const long value = std::strtol(number.c_str(), &end, 10);
    if (end == number.c_str() || value < 0 || value >= kLanguageCount) return std::nullopt;
    return static_cast<std::int32_t>(value);
}

std::string configOfLanguage(std::int32_t language) {
    return "{\"lang\":" + std::to_string(language) + "}\n";
}

std::int32_t languageFromIdentifier(std::uint16_t identifier) {
    // All Chinese of mainland China, Taiwan and Singapore, but not of Hong Kong.
    if (((identifier + 0xFBFCU) & 0xF3FFU) == 0 && identifier != 0x0C04) return kSimplifiedChinese;
    switch (identifier) {
        case 0x0407:
            return kGerman;
        case 0x040C:
            return kFrench;
        case 0x0C0A:
            return kSpanish;
        case 0x0410:
            return kItalian;
        case 0x0816:
            return kPortuguese;
        case 0x0411:
            return kJapanese;
        default:
            return kEnglish;
    }
}
