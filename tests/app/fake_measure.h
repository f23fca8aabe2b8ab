// A measurer with simple arithmetic: every character is 7 wide, a line of text 18 high.
#pragma once

#include <algorithm>
#include <cmath>

#include "app/text_style.h"

inline TextSize fakeMeasure(const std::wstring& text, TextStyle style, float maxWidthDip) {
    constexpr float kCharacter = 7;
    constexpr float kLine = 18;
    const float width = static_cast<float>(text.size()) * kCharacter;
    const bool wraps = style == TextStyle::hint || style == TextStyle::log;
    if (!wraps || width <= maxWidthDip) return {width, kLine};
    return {maxWidthDip, kLine * std::ceil(width / std::max(maxWidthDip, kCharacter))};
}
