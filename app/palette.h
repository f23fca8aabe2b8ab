// The window's colours, and the colours of the report's lines.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

/// In the order in which the brushes are made.
enum class Colour {
    background,
    surface,
    outline,
    accent,
    accentHovered,
    accentLight,
    mainText,
    secondaryText,
    textOnAccent,
    success,
    warning,
    failure,
    logText,
    panel,
};

/// 0xRRGGBB, opaque.
inline constexpr std::array<std::uint32_t, 14> kPalette = {
    0xF5F6F8,  // background
    0xFFFFFF,  // surface
    0xE3E7EE,  // outline
    0xE8590C,  // accent
    0xCC4C08,  // accentHovered
    0xFDEEE6,  // accentLight
    0x161A22,  // mainText
    0x5C6470,  // secondaryText
    0xFFFFFF,  // textOnAccent
    0x2B8A3E,  // success
    0xC86400,  // warning
    0xC82332,  // failure
    0x3B4350,  // logText
    0xE9EDF2,  // panel
};

/// The colour of a report line by the tags in its text; the first class that fits decides.
constexpr Colour logLineColour(std::wstring_view line) {
    constexpr struct {
        std::wstring_view tag;
        Colour colour;
    } kTags[] = {
        {L"[OK]", Colour::success},
        {L"[WARN", Colour::warning},
        {L"Worth attention", Colour::warning},
        {L"[HIGH RISK]", Colour::failure},
        {L"[RED]", Colour::failure},
        {L"failed", Colour::failure},
        {L"Failed", Colour::failure},
        {L"=====", Colour::mainText},
    };
    for (const auto& [tag, colour] : kTags) {
        if (line.find(tag) != std::wstring_view::npos) return colour;
    }
    return Colour::logText;
}
