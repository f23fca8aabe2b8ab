// Where the window stands at first, in pixels.
#pragma once

struct SizePx {
    int width = 0;
    int height = 0;
};

struct RectPx {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    [[nodiscard]] constexpr int width() const { return right - left; }
    [[nodiscard]] constexpr int height() const { return bottom - top; }
};

inline constexpr SizePx kDefaultSizeDip{1040, 880};
inline constexpr SizePx kSmallestSizeDip{880, 640};

/// A length in device-independent pixels as whole pixels.
int pixelsFromDip(int dip, unsigned dpi);
SizePx pixelsFromDip(SizePx dip, unsigned dpi);

/// The default window at this DPI, centred in the work area. What does not fit there is cut to it,
/// but never below the smallest size; the title bar lies inside the work area in any case.
RectPx firstPlace(unsigned dpi, const RectPx& work);

/// The same size around the centre of an older place, moved only as far as the work area asks.
RectPx placeAround(const RectPx& old, unsigned dpi, const RectPx& work);
