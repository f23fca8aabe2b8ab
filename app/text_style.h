// The kinds of text in the window, and the question that layout asks of the drawing system.
#pragma once

#include <functional>
#include <string>

enum class TextStyle {
    brand,
    largeBrand,
    subtitle,
    cardTitle,
    tab,
    button,
    primaryButton,
    smallButton,
    row,
    choice,
    label,
    caption,
    hint,
    log,
};
inline constexpr int kTextStyleCount = static_cast<int>(TextStyle::log) + 1;

struct TextSize {
    float widthDip = 0;
    float heightDip = 0;
};

/// The size of a text laid out in a style within `maxWidthDip`; zero when it cannot be laid out.
using MeasureText =
    std::function<TextSize(const std::wstring& text, TextStyle style, float maxWidthDip)>;
