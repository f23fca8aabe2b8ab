// The window's content as lists of rectangles and texts: pure geometry, rebuilt at every paint.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "app/geometry.h"
#include "app/text_style.h"

/// What an element is, by a fixed number. From `button` on it can be clicked.
enum class HitKind : std::uint32_t {
    title = 0,
    subtitle = 1,
    label = 3,
    hint = 4,
    button = 5,
    primaryButton = 6,
    tab = 7,
    instanceRow = 8,
    languageChoice = 9,
    /// The report's panel as a whole: it takes the keyboard's focus and is never hit.
    report = 10,
};

/// What makes an element the same wherever a new layout puts it.
struct ElementId {
    HitKind kind = HitKind::label;
    std::uint32_t id = 0;
    bool operator==(const ElementId&) const = default;
};
inline constexpr ElementId kReportId{HitKind::report, 0};

/// The tabs, in their order.
enum Tab : std::int32_t { kDiagnoseTab = 0, kFixTab = 1, kCloudTab = 2, kAboutTab = 3 };
inline constexpr int kTabCount = 4;

/// The first identifiers of the numbered elements; the buttons carry action identifiers.
inline constexpr std::uint32_t kFirstTabId = 300;
inline constexpr std::uint32_t kFirstInstanceId = 4000;
inline constexpr std::uint32_t kFirstLanguageId = 4100;

/// One drawn element. `selected` marks the current tab, instance and language.
struct HitTarget {
    HitKind kind = HitKind::label;
    std::uint32_t id = 0;
    float x = 0;
    float y = 0;
    float width = 0;
    float height = 0;
    std::wstring label;
    TextStyle style = TextStyle::label;
    bool selected = false;

    [[nodiscard]] RectDip rect() const { return {x, y, width, height}; }
    [[nodiscard]] ElementId identity() const { return {kind, id}; }
    [[nodiscard]] bool isClickable() const {
        return kind >= HitKind::button && kind <= HitKind::languageChoice;
    }
};

/// A surface behind elements; only drawn. The title may be empty.
struct Card {
    RectDip rect;
    RectDip titleRect;
    std::wstring title;
};

struct Layout {
    /// The tab the page belongs to: the one asked for, or the first when there is no such tab.
    std::int32_t currentTab = 0;
    std::vector<Card> cards;
    /// In drawing order.
    std::vector<HitTarget> hitTargets;
    /// Where the status text stands, left of the report's buttons.
    RectDip status;
    /// The report's panel; of no width where the page leaves it no room.
    RectDip logPanel;
    /// Where the newest line stands while the panel has no room for two: right of the tabs, with
    /// the status while there is no panel at all. Else of no width.
    RectDip newestLine;
};

/// What the layout depends on, besides the current language.
struct LayoutInput {
    float clientWidthDip = 0;
    float clientHeightDip = 0;
    std::int32_t currentTab = 0;
    /// The texts of the instance rows, and the selected one's index (-1: none).
    std::vector<std::wstring> instanceRows;
    std::int32_t selectedInstance = -1;
    /// Shown on the Cloud page; empty while it is not known.
    std::wstring signatureStatus;
    bool networkEnabled = true;
};

Layout buildLayout(const LayoutInput& input, const MeasureText& measure);

/// Index of the clickable element under a point, edges included; the one drawn last wins. -1: none.
int hitTest(const std::vector<HitTarget>& targets, PointDip point);
