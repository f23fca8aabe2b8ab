#include "app/window_place.h"

#include <algorithm>

namespace {

SizePx firstSize(unsigned dpi, const RectPx& work) {
    const SizePx wanted = pixelsFromDip(kDefaultSizeDip, dpi);
    const SizePx smallest = pixelsFromDip(kSmallestSizeDip, dpi);
    return {std::max(std::min(wanted.width, work.width()), smallest.width),
            std::max(std::min(wanted.height, work.height()), smallest.height)};
}

// What is larger than the work area keeps its left and upper edge, where the title bar begins.
int movedInside(int start, int length, int workStart, int workEnd) {
    return std::max(std::min(start, workEnd - length), workStart);
}

}  // namespace

int pixelsFromDip(int dip, unsigned dpi) {
    return static_cast<int>(dip * static_cast<double>(dpi) / 96);
}

SizePx pixelsFromDip(SizePx dip, unsigned dpi) {
    return {pixelsFromDip(dip.width, dpi), pixelsFromDip(dip.height, dpi)};
}

RectPx firstPlace(unsigned dpi, const RectPx& work) {
    return placeAround(work, dpi, work);
}

RectPx placeAround(const RectPx& old, unsigned dpi, const RectPx& work) {
    const SizePx size = firstSize(dpi, work);
    const int left =
        movedInside(old.left + (old.width() - size.width) / 2, size.width, work.left, work.right);
    const int top =
        movedInside(old.top + (old.height() - size.height) / 2, size.height, work.top, work.bottom);
    return {left, top, left + size.width, top + size.height};
}
