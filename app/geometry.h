// Points and rectangles in device-independent pixels, 96 to the inch.
#pragma once

#include <algorithm>

struct PointDip {
    float x = 0;
    float y = 0;
};

struct RectDip {
    float x = 0;
    float y = 0;
    float width = 0;
    float height = 0;

    [[nodiscard]] constexpr float right() const { return x + width; }
    [[nodiscard]] constexpr float bottom() const { return y + height; }
    /// All four edges belong to the rectangle.
    [[nodiscard]] constexpr bool contains(PointDip p) const {
        return x <= p.x && p.x <= right() && y <= p.y && p.y <= bottom();
    }
};

/// The smallest rectangle that holds both.
constexpr RectDip around(const RectDip& a, const RectDip& b) {
    const float x = std::min(a.x, b.x);
    const float y = std::min(a.y, b.y);
    return {x, y, std::max(a.right(), b.right()) - x, std::max(a.bottom(), b.bottom()) - y};
}
