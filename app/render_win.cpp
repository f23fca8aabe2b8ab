// The look of every element. Geometry comes from the layout, colours from the palette; nothing is
// kept between paints but the target, its brushes and the text formats.
#include "app/render_win.h"

#include <algorithm>
#include <utility>

namespace {

// The face that Windows has for Chinese and Latin alike. Where it is missing, DirectWrite falls
// back to the system's choice by itself.
constexpr const wchar_t* kFontFamily = L"Microsoft YaHei UI";
constexpr const wchar_t* kLocale = L"zh-CN";

struct FormatRow {
    TextStyle style;
    float sizeDip;
    DWRITE_FONT_WEIGHT weight;
    DWRITE_TEXT_ALIGNMENT alignment;
    DWRITE_PARAGRAPH_ALIGNMENT paragraph;
    bool wraps;
};

constexpr FormatRow kFormats[] = {
    {TextStyle::brand, 20, DWRITE_FONT_WEIGHT_BOLD, DWRITE_TEXT_ALIGNMENT_LEADING,
     DWRITE_PARAGRAPH_ALIGNMENT_CENTER, false},
    {TextStyle::largeBrand, 30, DWRITE_FONT_WEIGHT_BOLD, DWRITE_TEXT_ALIGNMENT_LEADING,
     DWRITE_PARAGRAPH_ALIGNMENT_CENTER, false},
    {TextStyle::subtitle, 13, DWRITE_FONT_WEIGHT_NORMAL, DWRITE_TEXT_ALIGNMENT_LEADING,
     DWRITE_PARAGRAPH_ALIGNMENT_CENTER, false},
    {TextStyle::cardTitle, 15, DWRITE_FONT_WEIGHT_SEMI_BOLD, DWRITE_TEXT_ALIGNMENT_LEADING,
     DWRITE_PARAGRAPH_ALIGNMENT_CENTER, false},
    {TextStyle::tab, 15, DWRITE_FONT_WEIGHT_SEMI_BOLD, DWRITE_TEXT_ALIGNMENT_CENTER,
     DWRITE_PARAGRAPH_ALIGNMENT_CENTER, false},
    {TextStyle::button, 14, DWRITE_FONT_WEIGHT_NORMAL, DWRITE_TEXT_ALIGNMENT_CENTER,
     DWRITE_PARAGRAPH_ALIGNMENT_CENTER, false},
    {TextStyle::primaryButton, 17, DWRITE_FONT_WEIGHT_SEMI_BOLD, DWRITE_TEXT_ALIGNMENT_CENTER,
     DWRITE_PARAGRAPH_ALIGNMENT_CENTER, false},
    {TextStyle::smallButton, 13, DWRITE_FONT_WEIGHT_NORMAL, DWRITE_TEXT_ALIGNMENT_CENTER,
     DWRITE_PARAGRAPH_ALIGNMENT_CENTER, false},
    {TextStyle::row, 14, DWRITE_FONT_WEIGHT_NORMAL, DWRITE_TEXT_ALIGNMENT_LEADING,
     DWRITE_PARAGRAPH_ALIGNMENT_CENTER, false},
    {TextStyle::choice, 14, DWRITE_FONT_WEIGHT_NORMAL, DWRITE_TEXT_ALIGNMENT_CENTER,
     DWRITE_PARAGRAPH_ALIGNMENT_CENTER, false},
    {TextStyle::label, 14, DWRITE_FONT_WEIGHT_NORMAL, DWRITE_TEXT_ALIGNMENT_LEADING,
     DWRITE_PARAGRAPH_ALIGNMENT_CENTER, false},
    {TextStyle::caption, 12, DWRITE_FONT_WEIGHT_NORMAL, DWRITE_TEXT_ALIGNMENT_LEADING,
     DWRITE_PARAGRAPH_ALIGNMENT_CENTER, false},
    {TextStyle::hint, 13, DWRITE_FONT_WEIGHT_NORMAL, DWRITE_TEXT_ALIGNMENT_LEADING,
     DWRITE_PARAGRAPH_ALIGNMENT_NEAR, true},
    {TextStyle::log, 13, DWRITE_FONT_WEIGHT_NORMAL, DWRITE_TEXT_ALIGNMENT_LEADING,
     DWRITE_PARAGRAPH_ALIGNMENT_NEAR, true},
};
static_assert(std::size(kFormats) == kTextStyleCount);

constexpr float kCardRadius = 10;
constexpr float kButtonRadius = 7;
constexpr float kSmallRadius = 5;
constexpr float kOutline = 1;
constexpr float kMeasureHeight = 1000;

constexpr float kRowTextInset = 12;
constexpr float kSelectionInset = 2;

D2D1_RECT_F toD2d(const RectDip& rect) {
    return {rect.x, rect.y, rect.right(), rect.bottom()};
}

D2D1_COLOR_F toD2d(std::uint32_t rgb) {
    const auto channel = [&](unsigned shift) {
        return static_cast<float>((rgb >> shift) & 0xFFU) / 255.0F;
    };
    return {channel(16), channel(8), channel(0), 1.0F};
}

RectDip inset(const RectDip& rect, float by) {
    return {rect.x + by, rect.y + by, rect.width - 2 * by, rect.height - 2 * by};
}

// Texts come from outside as well. What lies beyond this length no panel could show, but laying it
// out would stall every paint.
UINT32 lengthOf(const std::wstring& text) {
    constexpr std::size_t kLongestShown = 8000;
    if (text.size() <= kLongestShown) return static_cast<UINT32>(text.size());
    const bool splitsPair = IS_HIGH_SURROGATE(text[kLongestShown - 1]);
    return kLongestShown - (splitsPair ? 1 : 0);
}

// Clips drawing to a rectangle for as long as it lives.
class Clip {
  public:
    Clip(ID2D1RenderTarget& target, const RectDip& rect) : target_(target) {
        target_.PushAxisAlignedClip(toD2d(rect), D2D1_ANTIALIAS_MODE_PER_PRIMITIVE);
    }
    Clip(const Clip&) = delete;
    Clip& operator=(const Clip&) = delete;
    ~Clip() { target_.PopAxisAlignedClip(); }

  private:
    ID2D1RenderTarget& target_;
};

}  // namespace

void Renderer::createFormats() {
    D2D1CreateFactory(D2D1_FACTORY_TYPE_SINGLE_THREADED, __uuidof(ID2D1Factory), nullptr,
                      reinterpret_cast<void**>(factory_.ReleaseAndGetAddressOf()));
    DWriteCreateFactory(DWRITE_FACTORY_TYPE_SHARED, __uuidof(IDWriteFactory),
                        reinterpret_cast<IUnknown**>(textFactory_.ReleaseAndGetAddressOf()));
    if (!textFactory_) return;
    for (const FormatRow& row : kFormats) {
        auto& format = formats_[static_cast<std::size_t>(row.style)];
        if (FAILED(textFactory_->CreateTextFormat(kFontFamily, nullptr, row.weight,
                                                  DWRITE_FONT_STYLE_NORMAL,
                                                  DWRITE_FONT_STRETCH_NORMAL, row.sizeDip, kLocale,
                                                  format.ReleaseAndGetAddressOf()))) {
            continue;
        }
        format->SetTextAlignment(row.alignment);
        format->SetParagraphAlignment(row.paragraph);
        format->SetWordWrapping(row.wraps ? DWRITE_WORD_WRAPPING_WRAP
                                          : DWRITE_WORD_WRAPPING_NO_WRAP);
    }
}

void Renderer::createTarget(HWND window, UINT dpi) {
    releaseTarget();
    if (!factory_) return;
    RECT client{};
    GetClientRect(window, &client);
    const auto dotsPerInch = static_cast<float>(dpi);
    const D2D1_RENDER_TARGET_PROPERTIES properties{D2D1_RENDER_TARGET_TYPE_DEFAULT,
                                                   {DXGI_FORMAT_UNKNOWN, D2D1_ALPHA_MODE_UNKNOWN},
                                                   dotsPerInch,
                                                   dotsPerInch,
                                                   D2D1_RENDER_TARGET_USAGE_NONE,
                                                   D2D1_FEATURE_LEVEL_DEFAULT};
    const D2D1_HWND_RENDER_TARGET_PROPERTIES windowProperties{
        window,
        {static_cast<UINT32>(std::max<LONG>(client.right, 1)),
         static_cast<UINT32>(std::max<LONG>(client.bottom, 1))},
        D2D1_PRESENT_OPTIONS_NONE};
    if (FAILED(factory_->CreateHwndRenderTarget(properties, windowProperties, &target_))) return;

    for (std::size_t i = 0; i < kPalette.size(); ++i) {
        const D2D1_COLOR_F colour = toD2d(kPalette[i]);
        if (FAILED(target_->CreateSolidColorBrush(&colour, nullptr,
                                                  brushes_[i].ReleaseAndGetAddressOf()))) {
            releaseTarget();
            return;
        }
    }
}

void Renderer::resizeTarget(UINT widthPx, UINT heightPx) {
    if (!target_) return;
    const D2D1_SIZE_U size{std::max(widthPx, 1U), std::max(heightPx, 1U)};
    if (FAILED(target_->Resize(&size))) releaseTarget();
}

bool Renderer::paint(const Scene& scene) {
    if (!target_) return true;
    target_->BeginDraw();
    const D2D1_COLOR_F background = toD2d(kPalette[static_cast<std::size_t>(Colour::background)]);
    target_->Clear(&background);

    for (const Card& card : scene.layout.cards)
        drawCard(card);
    for (std::size_t i = 0; i < scene.layout.hitTargets.size(); ++i) {
        const HitTarget& target = scene.layout.hitTargets[i];
        if (target.isClickable() && target.identity() == scene.focus) drawFocus(target.rect());
        drawTarget(target, std::cmp_equal(i, scene.hoverTarget));
    }
    if (scene.focus == kReportId) drawFocus(scene.log.panel);
    drawLog(scene.log);
    drawNewestLine(scene);
    drawText(scene.statusText, TextStyle::subtitle, scene.layout.status, Colour::secondaryText);

    const HRESULT result = target_->EndDraw();
    if (FAILED(result)) releaseTarget();
    return result != static_cast<HRESULT>(D2DERR_RECREATE_TARGET);
}

TextSize Renderer::measure(const std::wstring& text, TextStyle style, float maxWidthDip) const {
    const auto& format = formats_[static_cast<std::size_t>(style)];
    if (!textFactory_ || !format) return {};
    Microsoft::WRL::ComPtr<IDWriteTextLayout> layout;
    if (FAILED(textFactory_->CreateTextLayout(text.c_str(), lengthOf(text), format.Get(),
                                              std::max(maxWidthDip, 0.0F), kMeasureHeight,
                                              &layout))) {
        return {};
    }
    DWRITE_TEXT_METRICS metrics{};
    if (FAILED(layout->GetMetrics(&metrics))) return {};
    return {metrics.width, metrics.height};
}

void Renderer::release() {
    releaseTarget();
    for (auto& format : formats_)
        format.Reset();
    textFactory_.Reset();
    factory_.Reset();
}

void Renderer::releaseTarget() {
    for (auto& brush : brushes_)
        brush.Reset();
    target_.Reset();
}

ID2D1SolidColorBrush* Renderer::brush(Colour colour) const {
    return brushes_[static_cast<std::size_t>(colour)].Get();
}

void Renderer::fillBox(const RectDip& rect, float radius, Colour colour) {
    if (rect.width <= 0 || rect.height <= 0) return;
    const D2D1_ROUNDED_RECT box{toD2d(rect), radius, radius};
    target_->FillRoundedRectangle(&box, brush(colour));
}

void Renderer::outlinedBox(const RectDip& rect, float radius, Colour outline, Colour fill) {
    fillBox(rect, radius, outline);
    fillBox(inset(rect, kOutline), radius - kOutline, fill);
}

void Renderer::drawText(const std::wstring& text, TextStyle style, const RectDip& rect,
                        Colour colour) {
    const auto& format = formats_[static_cast<std::size_t>(style)];
    if (text.empty() || !format || rect.width <= 0 || rect.height <= 0) return;
    const D2D1_RECT_F box = toD2d(rect);
    target_->DrawText(text.c_str(), lengthOf(text), format.Get(), &box, brush(colour),
                      D2D1_DRAW_TEXT_OPTIONS_CLIP, DWRITE_MEASURING_MODE_NATURAL);
}

void Renderer::drawCard(const Card& card) {
    outlinedBox(card.rect, kCardRadius, Colour::outline, Colour::surface);
    drawText(card.title, TextStyle::cardTitle, card.titleRect, Colour::mainText);
}

void Renderer::drawTarget(const HitTarget& target, bool hovered) {
    switch (target.kind) {
        case HitKind::title:
            drawText(target.label, target.style, target.rect(), Colour::mainText);
            return;
        case HitKind::subtitle:
        case HitKind::label:
        case HitKind::hint:
            drawText(target.label, target.style, target.rect(), Colour::secondaryText);
            return;
        case HitKind::button:
            drawButton(target, hovered);
            return;
        case HitKind::primaryButton:
            fillBox(target.rect(), kButtonRadius, hovered ? Colour::accentHovered : Colour::accent);
            drawText(target.label, target.style, target.rect(), Colour::textOnAccent);
            return;
        case HitKind::tab:
        case HitKind::languageChoice:
            drawChoice(target, hovered);
            return;
        case HitKind::instanceRow:
            drawInstanceRow(target, hovered);
            return;
        case HitKind::report:
            return;
    }
}

// A frame around the element, with a breath of white between; the element is drawn over it.
void Renderer::drawFocus(const RectDip& rect) {
    fillBox(inset(rect, -4), kButtonRadius + 4, Colour::mainText);
    fillBox(inset(rect, -2), kButtonRadius + 2, Colour::surface);
}

// Where the page leaves the report no room, what an action says is still to be seen.
void Renderer::drawNewestLine(const Scene& scene) {
    constexpr float kStatusHeight = 18;
    RectDip rect = scene.layout.newestLine;
    fillBox(rect, kButtonRadius, Colour::panel);
    rect = inset(rect, 4);
    if (!scene.statusText.empty() && scene.layout.logPanel.width <= 0) {
        const float top = scene.layout.newestLine.bottom() - kStatusHeight - 2;
        drawText(scene.statusText, TextStyle::subtitle, {rect.x, top, rect.width, kStatusHeight},
                 Colour::secondaryText);
        rect.height = top - rect.y;
    }
    const std::wstring* text = newestText(scene.log);
    if (text != nullptr) drawText(*text, TextStyle::log, rect, logLineColour(*text));
}

void Renderer::drawButton(const HitTarget& target, bool hovered) {
    const float radius = target.style == TextStyle::smallButton ? kSmallRadius : kButtonRadius;
    if (hovered) {
        outlinedBox(target.rect(), radius, Colour::accent, Colour::accentLight);
    } else {
        outlinedBox(target.rect(), radius, Colour::outline, Colour::surface);
    }
    drawText(target.label, target.style, target.rect(), Colour::accent);
}

void Renderer::drawChoice(const HitTarget& target, bool hovered) {
    if (target.selected) {
        fillBox(target.rect(), kButtonRadius, Colour::accent);
    } else {
        outlinedBox(target.rect(), kButtonRadius, hovered ? Colour::accent : Colour::outline,
                    Colour::surface);
    }
    drawText(target.label, target.style, target.rect(),
             target.selected ? Colour::textOnAccent : Colour::accent);
}

void Renderer::drawInstanceRow(const HitTarget& target, bool hovered) {
    constexpr float kMarkerWidth = 4;
    constexpr float kMarkerInset = 7;
    const RectDip rect = target.rect();
    if (target.selected) {
        fillBox(rect, kButtonRadius, Colour::accentLight);
        fillBox({rect.x, rect.y + kMarkerInset, kMarkerWidth, rect.height - 2 * kMarkerInset},
                kMarkerWidth / 2, Colour::accent);
    } else if (hovered) {
        outlinedBox(rect, kButtonRadius, Colour::outline, Colour::surface);
    }
    const float textLeft = rect.x + kMarkerWidth + kRowTextInset;
    drawText(target.label, target.style,
             {textLeft, rect.y, rect.right() - kRowTextInset - textLeft, rect.height},
             Colour::accent);
}

void Renderer::drawLog(const ReportLog& log) {
    if (log.panel.width <= 0) return;
    fillBox(log.panel, kCardRadius, Colour::panel);
    const Clip clip(*target_.Get(), log.panel);
    const MeasureText measureLine = [this](const std::wstring& text, TextStyle style, float width) {
        return measure(text, style, width);
    };
    const LineRange selection = selectedLines(log);
    for (const auto& [index, y, height] : visibleLines(log, measureLine)) {
        const std::wstring& line = log.lines[static_cast<std::size_t>(index)];
        if (index >= selection.first && index <= selection.last) {
            const D2D1_RECT_F box{log.panel.x + kSelectionInset, y,
                                  log.panel.right() - kSelectionInset, y + height};
            target_->FillRectangle(&box, brush(Colour::accentLight));
        }
        drawText(line, TextStyle::log,
                 {log.panel.x + kLogTextInset, y, log.panel.width - 2 * kLogTextInset, height},
                 logLineColour(line));
    }
}
