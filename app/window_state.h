// What the window shows, without the window itself.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "app/layout.h"
#include "app/report_log.h"

struct WindowState {
    std::int32_t currentTab = 0;
    /// Index of the hit target under the mouse, -1 for none.
    std::int32_t hoverTarget = -1;
    /// The last message about the report itself.
    std::wstring statusText;
    ReportLog log;
    /// As last painted: what the user sees is what a click means.
    std::vector<HitTarget> hitTargets;
    /// Where the keyboard is. It may name an element that the page does not have now.
    std::optional<ElementId> focus;
    /// Only who uses the keyboard sees where it is.
    bool focusShown = false;
};

/// What a click may set off beyond the state.
struct ClickEffects {
    std::function<void(std::int32_t index)> selectInstance;
    std::function<void(std::int32_t position)> chooseLanguage;
    std::function<void(std::uint32_t id)> runAction;
};

/// Does what the element is there for: the one path of clicks, keys and screen readers.
void actOn(WindowState& state, ElementId element, const ClickEffects& effects);

/// Acts on a click at a point. True when the window must be painted anew.
bool dispatchClick(WindowState& state, PointDip point, const MeasureText& measure,
                   const ClickEffects& effects);

/// Makes a layout the one that clicks refer to. The hover stays on its element, wherever it stands
/// now.
void takeLayout(WindowState& state, const Layout& layout);

/// Notes which element is under the point. True when that changed.
bool moveHover(WindowState& state, PointDip point);

/// Hands the selected lines, or the whole report, to `toClipboard` and says so in the status text.
void copyReport(WindowState& state, const std::function<void(const std::wstring&)>& toClipboard);

void clearReport(WindowState& state);
