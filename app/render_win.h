// Drawing with Direct2D and DirectWrite.
#pragma once

#include <windows.h>

#include <d2d1.h>
#include <dwrite.h>
#include <wrl/client.h>

#include <array>
#include <optional>
#include <string>

#include "app/layout.h"
#include "app/palette.h"
#include "app/report_log.h"
#include "app/text_style.h"

/// What one paint shows. Only borrowed for the paint.
struct Scene {
    const Layout& layout;
    const ReportLog& log;
    const std::wstring& statusText;
    /// Index of the hovered hit target, -1 for none.
    int hoverTarget;
    /// The element that bears the focus mark.
    std::optional<ElementId> focus;
};

/// Owns the drawing resources of one window. Every failure to draw is silent: the target and its
/// brushes are given up and made again by the next paint.
class Renderer {
  public:
    /// The factories and text formats, which need no window. Once, before anything else.
    void createFormats();

    /// A fresh target and brushes for the window's client area; releases what was there.
    void createTarget(HWND window, UINT dpi);
    [[nodiscard]] bool hasTarget() const { return target_ != nullptr; }
    void resizeTarget(UINT widthPx, UINT heightPx);

    /// Paints the scene. False when the device was lost and the window should be painted again.
    bool paint(const Scene& scene);

    /// The size of a laid-out text; zero when there is nothing to lay out with.
    [[nodiscard]] TextSize measure(const std::wstring& text, TextStyle style,
                                   float maxWidthDip) const;

    void release();

  private:
    void releaseTarget();
    [[nodiscard]] ID2D1SolidColorBrush* brush(Colour colour) const;
    void fillBox(const RectDip& rect, float radius, Colour colour);
    void outlinedBox(const RectDip& rect, float radius, Colour outline, Colour fill);
    void drawText(const std::wstring& text, TextStyle style, const RectDip& rect, Colour colour);
    void drawCard(const Card& card);
    void drawTarget(const HitTarget& target, bool hovered);
    void drawFocus(const RectDip& rect);
    void drawNewestLine(const Scene& scene);
    void drawButton(const HitTarget& target, bool hovered);
    void drawChoice(const HitTarget& target, bool hovered);
    void drawInstanceRow(const HitTarget& target, bool hovered);
    void drawLog(const ReportLog& log);

    Microsoft::WRL::ComPtr<ID2D1Factory> factory_;
    Microsoft::WRL::ComPtr<IDWriteFactory> textFactory_;
    std::array<Microsoft::WRL::ComPtr<IDWriteTextFormat>, kTextStyleCount> formats_;
    Microsoft::WRL::ComPtr<ID2D1HwndRenderTarget> target_;
    std::array<Microsoft::WRL::ComPtr<ID2D1SolidColorBrush>, kPalette.size()> brushes_;
};
