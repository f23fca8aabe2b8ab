// A page by simple arithmetic: every character is 7 wide, a line of text 18 high.
#pragma once

#include <algorithm>
#include <cmath>

#include "app/layout.h"
#include "base/text.h"

inline TextSize fakeMeasure(const std::wstring& text, TextStyle style, float maxWidthDip) {
    constexpr float kCharacter = 7;
    constexpr float kLine = 18;
    const float width = static_cast<float>(text.size()) * kCharacter;
    const bool wraps = style == TextStyle::hint || style == TextStyle::log;
    if (!wraps || width <= maxWidthDip) return {width, kLine};
    return {maxWidthDip, kLine * std::ceil(width / std::max(maxWidthDip, kCharacter))};
}

/// The page of a tab, with so many instances, the last one selected.
inline Layout layoutOf(int tab, int instances, RectDip client = {0, 0, 1024, 841}) {
    LayoutInput input{client.width, client.height, tab, {}, instances - 1, L"", true};
    for (int i = 0; i < instances; ++i)
        input.instanceRows.push_back(L"PID " + decimal(i));
    return buildLayout(input, fakeMeasure);
}
