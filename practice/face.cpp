#include "practice/face.h"

#include <algorithm>
#include <iterator>
#include <string>

namespace {

constexpr COLORREF kChrome = RGB(240, 240, 240);
constexpr COLORREF kDesk = RGB(214, 217, 221);
constexpr COLORREF kShade = RGB(176, 180, 186);
constexpr COLORREF kPaper = RGB(255, 255, 255);
constexpr COLORREF kInk = RGB(60, 64, 70);

constexpr COLORREF kSwatches[] = {
    RGB(0, 0, 0),     RGB(255, 255, 255), RGB(0, 158, 224),  RGB(230, 0, 126),   RGB(255, 237, 0),
    RGB(227, 6, 19),  RGB(0, 150, 64),    RGB(49, 39, 131),  RGB(243, 146, 0),   RGB(149, 27, 129),
    RGB(58, 170, 53), RGB(104, 36, 58),   RGB(29, 113, 184), RGB(178, 178, 178),
};

/// The device context of one WM_PAINT with the stock brush and pen in it, coloured as we go.
class Canvas {
  public:
    explicit Canvas(HWND window) : window_(window), dc_(BeginPaint(window, &paint_)) {
        GetClientRect(window, &area_);
        SelectObject(dc_, GetStockObject(DC_BRUSH));
        SelectObject(dc_, GetStockObject(NULL_PEN));
        SelectObject(dc_, GetStockObject(DEFAULT_GUI_FONT));
        SetBkMode(dc_, TRANSPARENT);
        SetTextColor(dc_, kInk);
    }
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;
    ~Canvas() { EndPaint(window_, &paint_); }

    [[nodiscard]] HDC dc() const { return dc_; }
    [[nodiscard]] const RECT& area() const { return area_; }
    HDC with(COLORREF color) {
        SetDCBrushColor(dc_, color);
        return dc_;
    }
    void fill(const RECT& part, COLORREF color) {
        FillRect(with(color), &part, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
    }

  private:
    HWND window_;
    PAINTSTRUCT paint_ = {};
    HDC dc_;
    RECT area_ = {};
};

/// Small squares of colour from `left`, `top` on, `perRow` to a row.
void PaintSwatches(Canvas& canvas, int left, int top, int perRow) {
    constexpr int kSize = 14;
    constexpr int kStep = 17;
    int index = 0;
    for (const COLORREF color : kSwatches) {
        const int x = left + index % perRow * kStep;
        const int y = top + index / perRow * kStep;
        canvas.fill({x - 1, y - 1, x + kSize + 1, y + kSize + 1}, kShade);
        canvas.fill({x, y, x + kSize, y + kSize}, color);
        ++index;
    }
}

/// A page with a drawing of three shapes in its middle.
void PaintPage(Canvas& canvas, const RECT& page) {
    constexpr int kShadow = 4;
    constexpr int kDrawingWidth = 12;
    constexpr int kDrawingHeight = 8;
    canvas.fill(
        {page.left + kShadow, page.top + kShadow, page.right + kShadow, page.bottom + kShadow},
        kShade);
    canvas.fill(page, kPaper);
    const int width = page.right - page.left;
    const int height = page.bottom - page.top;
    const int unit = std::min(width / kDrawingWidth, height / kDrawingHeight);
    const int left = page.left + (width - kDrawingWidth * unit) / 2;
    const int top = page.top + (height - kDrawingHeight * unit) / 2;
    const auto x = [&](int units) { return left + units * unit; };
    const auto y = [&](int units) { return top + units * unit; };
    Ellipse(canvas.with(RGB(0, 158, 224)), x(1), y(1), x(6), y(6));
    RoundRect(canvas.with(RGB(255, 204, 0)), x(5), y(3), x(11), y(6), unit, unit);
    const POINT triangle[] = {{x(3), y(7)}, {x(6), y(2)}, {x(9), y(7)}};
    Polygon(canvas.with(RGB(230, 0, 126)), triangle, static_cast<int>(std::size(triangle)));
}

void PaintMainWindow(Canvas& canvas, const std::wstring& title) {
    constexpr int kBarHeight = 32;
    constexpr int kToolWidth = 36;
    constexpr int kToolStep = 30;
    constexpr int kTools = 9;
    constexpr int kMargin = 48;
    const RECT& area = canvas.area();
    canvas.fill(area, kDesk);
    canvas.fill({0, 0, area.right, kBarHeight}, kChrome);
    canvas.fill({0, kBarHeight, kToolWidth, area.bottom}, kChrome);
    canvas.fill({0, area.bottom - kBarHeight, area.right, area.bottom}, kChrome);
    for (int tool = 0; tool < kTools; ++tool) {
        const int y = kBarHeight + 8 + tool * kToolStep;
        RoundRect(canvas.with(kShade), 8, y, kToolWidth - 8, y + 20, 6, 6);
    }
    PaintPage(canvas, {kToolWidth + kMargin, kBarHeight + kMargin / 2, area.right - kMargin,
                       area.bottom - kBarHeight - kMargin / 2});
    PaintSwatches(canvas, kToolWidth, area.bottom - kBarHeight + 9,
                  static_cast<int>(std::size(kSwatches)));
    TextOutW(canvas.dc(), 12, 9, title.c_str(), static_cast<int>(title.size()));
}

void PaintSplash(Canvas& canvas, const std::wstring& title) {
    constexpr int kMargin = 28;
    const RECT& area = canvas.area();
    canvas.fill(area, kDesk);
    PaintPage(canvas, {kMargin, kMargin, area.right - kMargin, area.bottom - 2 * kMargin});
    TextOutW(canvas.dc(), kMargin, area.bottom - kMargin - 8, title.c_str(),
             static_cast<int>(title.size()));
}

void PaintPalette(Canvas& canvas) {
    canvas.fill(canvas.area(), kChrome);
    PaintSwatches(canvas, 12, 12, 7);
}

std::wstring TitleOf(HWND window) {
    wchar_t title[128] = {};
    GetWindowTextW(window, title, static_cast<int>(std::size(title)));
    return title;
}

}  // namespace

void PaintFace(HWND window) {
    Canvas canvas(window);
    const bool owned = GetWindow(window, GW_OWNER) != nullptr;
    const bool captioned = (GetWindowLongPtrW(window, GWL_STYLE) & WS_CAPTION) == WS_CAPTION;
    if (!owned) {
        PaintMainWindow(canvas, TitleOf(window));
    } else if (captioned) {
        PaintPalette(canvas);
    } else {
        PaintSplash(canvas, TitleOf(window));
    }
}
