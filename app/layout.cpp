#include "app/layout.h"

#include <algorithm>
#include <utility>

#include "app/actions.h"
#include "app/language.h"
#include "app/strings.h"

namespace {

constexpr float kMargin = 20;
constexpr float kGap = 12;
constexpr float kPadding = 16;
constexpr float kPageTop = 124;

// The header: the brand, and the tabs under it.
constexpr float kBrandTop = 18;
constexpr float kBrandHeight = 28;
constexpr float kTabTop = 62;
constexpr float kTabHeight = 40;
constexpr float kTabGap = 8;
constexpr float kTabPadding = 22;
constexpr float kNarrowestTab = 112;

constexpr float kButtonHeight = 36;
constexpr float kGridButtonTop = 40;
constexpr float kGridHintTop = 82;
constexpr float kGridInset = 14;
constexpr float kBigButtonTop = 48;

constexpr float kLogHeaderHeight = 22;
constexpr float kLogHeaderGap = 6;
constexpr float kLogButtonWidth = 96;
constexpr float kLogBottomMargin = 16;
// One line of text with the panel's margins: with less there is nothing to read.
constexpr float kLowestLogPanel = 40;

struct PageArea {
    float x;
    float y;
    float width;
};

// The page builders write into the layout and return where their page ends.
class PageBuilder {
  public:
    PageBuilder(Layout& layout, const LayoutInput& input, const MeasureText& measure)
        : layout_(layout), input_(input), measure_(measure) {}

    void header();
    float page();
    void logPanel(float pageBottom);

  private:
    float diagnosePage(PageArea area);
    float fixPage(PageArea area);
    float cloudPage(PageArea area);
    float aboutPage(PageArea area);
    float gridCard(RectDip rect, const char* titleKey, const char* hintKey);
    float hintedHeight(float cardWidth, const char* hintKey) const;
    float languageCard(PageArea area);

    void card(RectDip rect, const char* titleKey, float inset = kPadding) {
        const RectDip title{rect.x + inset, rect.y + 10, rect.width - 2 * inset, 28};
        layout_.cards.push_back({rect, title, titleKey != nullptr ? tr(titleKey) : L""});
    }

    HitTarget& add(HitKind kind, TextStyle style, RectDip rect, std::wstring label) {
        layout_.hitTargets.push_back(
            {kind, 0, rect.x, rect.y, rect.width, rect.height, std::move(label), style, false});
        return layout_.hitTargets.back();
    }

    void button(std::uint32_t id, RectDip rect, const char* key,
                TextStyle style = TextStyle::button) {
        add(HitKind::button, style, rect, tr(key)).id = id;
    }

    void primaryButton(std::uint32_t id, RectDip rect, const char* key,
                       TextStyle style = TextStyle::primaryButton) {
        add(HitKind::primaryButton, style, rect, tr(key)).id = id;
    }

    void label(RectDip rect, std::wstring text) {
        add(HitKind::label, TextStyle::label, rect, std::move(text));
    }

    void hint(RectDip rect, const char* key) { add(HitKind::hint, TextStyle::hint, rect, tr(key)); }

    Layout& layout_;
    const LayoutInput& input_;
    const MeasureText& measure_;
    /// Where the page's elements begin in the list.
    std::ptrdiff_t pageStart_ = 0;
};

void PageBuilder::header() {
    constexpr const char* kTabKeys[kTabCount] = {"tab_diag", "tab_fix", "tab_cloud", "tab_about"};
    const std::wstring brand = tr("brand_title");
    const float brandWidth = measure_(brand, TextStyle::brand, input_.clientWidthDip).widthDip + 1;
    const float subtitleLeft = kMargin + brandWidth + kGap;
    add(HitKind::title, TextStyle::brand, {kMargin, kBrandTop, brandWidth, kBrandHeight}, brand);
    add(HitKind::subtitle, TextStyle::subtitle,
        {subtitleLeft, kBrandTop, input_.clientWidthDip - kMargin - subtitleLeft, kBrandHeight},
        tr("brand_subtitle"));

    float x = kMargin;
    for (int i = 0; i < kTabCount; ++i) {
        const std::wstring text = tr(kTabKeys[i]);
        const float textWidth = measure_(text, TextStyle::tab, input_.clientWidthDip).widthDip;
        const float width = std::max(kNarrowestTab, textWidth + 2 * kTabPadding);
        HitTarget& tab = add(HitKind::tab, TextStyle::tab, {x, kTabTop, width, kTabHeight}, text);
        tab.id = kFirstTabId + static_cast<std::uint32_t>(i);
        tab.selected = i == layout_.currentTab;
        x += width + kTabGap;
    }
    pageStart_ = static_cast<std::ptrdiff_t>(layout_.hitTargets.size());
}

float PageBuilder::page() {
    const PageArea area{kMargin, kPageTop, input_.clientWidthDip - 2 * kMargin};
    switch (layout_.currentTab) {
        case kFixTab:
            return fixPage(area);
        case kCloudTab:
            return cloudPage(area);
        case kAboutTab:
            return aboutPage(area);
        default:
            return diagnosePage(area);
    }
}

float PageBuilder::diagnosePage(PageArea area) {
    constexpr float kRowPitch = 38;
    constexpr float kRowHeight = 34;
    constexpr float kRowsTop = 46;
    const auto [x, y, w] = area;

    const std::size_t rowCount = std::max<std::size_t>(input_.instanceRows.size(), 1);
    const float instanceHeight = static_cast<float>(rowCount) * kRowPitch + kRowsTop + 14;
    card({x, y, w, instanceHeight}, "card_cdr_instance");
    button(kRefreshAction, {x + w - 16 - 108 - 6 - 88, y + 10, 88, 30}, "btn_refresh");
    button(kDashboardAction, {x + w - 16 - 108, y + 10, 108, 30}, "btn_metrics");
    for (std::size_t i = 0; i < input_.instanceRows.size(); ++i) {
        const float rowTop = y + kRowsTop + static_cast<float>(i) * kRowPitch;
        HitTarget& row = add(HitKind::instanceRow, TextStyle::row,
                             {x + 14, rowTop, w - 28, kRowHeight}, input_.instanceRows[i]);
        row.id = kFirstInstanceId + static_cast<std::uint32_t>(i);
        row.selected = std::cmp_equal(i, input_.selectedInstance);
    }

    constexpr float kDiagnoseHeight = 122;
    const float top = y + instanceHeight + kGap;
    card({x, top, w, kDiagnoseHeight}, "card_diagnose");
    primaryButton(kCaptureAction, {x + kPadding, top + kBigButtonTop, w - 2 * kPadding, 56},
                  "btn_capture");
    add(HitKind::label, TextStyle::caption, {x + kPadding, top + 104, w - 2 * kPadding, 16},
        tr("diag_hint"));
    return top + kDiagnoseHeight;
}

float PageBuilder::hintedHeight(float cardWidth, const char* hintKey) const {
    return measure_(tr(hintKey), TextStyle::hint, cardWidth - 2 * kGridInset).heightDip;
}

float PageBuilder::gridCard(RectDip rect, const char* titleKey, const char* hintKey) {
    card(rect, titleKey, kGridInset);
    hint({rect.x + kGridInset, rect.y + kGridHintTop, rect.width - 2 * kGridInset,
          rect.height - kGridHintTop - kGridInset},
         hintKey);
    return rect.y + kGridButtonTop;
}

float PageBuilder::fixPage(PageArea area) {
    constexpr float kSlimHeight = 190;
    constexpr float kSlimHintTop = 112;
    constexpr float kLowestGridCard = 140;
    const auto [x, y, w] = area;

    card({x, y, w, kSlimHeight}, "card_fileslim");
    primaryButton(kSlimAction, {x + kPadding, y + kBigButtonTop, w - 2 * kPadding, 52}, "btn_slim");
    hint({x + kPadding, y + kSlimHintTop, w - 2 * kPadding, kSlimHeight - kSlimHintTop - kPadding},
         "hint_slim");

    const float column = (w - kGap) / 2;
    const float inner = column - 2 * kGridInset;
    const float right = x + column + kGap;
    // A row is as high as the longer of its two hints needs.
    const auto rowHeight = [&](const char* leftHint, const char* rightHint) {
        const float hintHeight =
            std::max(hintedHeight(column, leftHint), hintedHeight(column, rightHint));
        return std::max(kLowestGridCard, kGridHintTop + hintHeight + kGridInset);
    };

    const float firstTop = y + kSlimHeight + kGap;
    const float firstHeight = rowHeight("hint_scan", "hint_printer");
    float top = gridCard({x, firstTop, column, firstHeight}, "card_scan", "hint_scan");
    button(kScanAction, {x + kGridInset, top, inner, kButtonHeight}, "btn_scan");
    gridCard({right, firstTop, column, firstHeight}, "card_printer", "hint_printer");
    button(kPrinterAction, {right + kGridInset, top, inner, kButtonHeight}, "btn_printer");

    const float secondTop = firstTop + firstHeight + kGap;
    const float secondHeight = rowHeight("hint_clean", "hint_settings");
    const float half = (inner - 8) / 2;
    top = gridCard({x, secondTop, column, secondHeight}, "card_cleanup", "hint_clean");
    button(kCleanupAction, {x + kGridInset, top, half, kButtonHeight}, "btn_clean");
    button(kRestoreAction, {x + kGridInset + half + 8, top, half, kButtonHeight}, "btn_restore");
    gridCard({right, secondTop, column, secondHeight}, "card_cdrsettings", "hint_settings");
    button(kSettingsAction, {right + kGridInset, top, inner, kButtonHeight}, "btn_optimize");
    return secondTop + secondHeight;
}

float PageBuilder::cloudPage(PageArea area) {
    constexpr float kStatusHeight = 86;
    constexpr float kButtonsHeight = 102;
    const auto [x, y, w] = area;
    const float inner = w - 2 * kPadding;

    card({x, y, w, kStatusHeight}, "card_sigs");
    label({x + 18, y + 46, w - 36, 22},
          input_.signatureStatus.empty() ? tr("cloud_loading") : input_.signatureStatus);

    const float operationsTop = y + kStatusHeight + kGap;
    const float half = (inner - kGap) / 2;
    card({x, operationsTop, w, kButtonsHeight}, "card_cloudop");
    button(kUpdateAction, {x + kPadding, operationsTop + kBigButtonTop, half, kButtonHeight},
           "btn_update");
    primaryButton(kSubmitAction,
                  {x + kPadding + half + kGap, operationsTop + kBigButtonTop, half, kButtonHeight},
                  "btn_submit", TextStyle::button);

    const float networkTop = operationsTop + kButtonsHeight + kGap;
    card({x, networkTop, w, kButtonsHeight}, "card_network");
    button(kNetworkAction, {x + kPadding, networkTop + kBigButtonTop, inner, kButtonHeight},
           input_.networkEnabled ? "net_on" : "net_off");
    return networkTop + kButtonsHeight;
}

float PageBuilder::languageCard(PageArea area) {
    constexpr int kColumns = 5;
    constexpr float kChoiceHeight = 34;
    constexpr float kChoiceGap = 8;
    constexpr int kRows = (kLanguageCount + kColumns - 1) / kColumns;
    const auto [x, y, w] = area;
    const float inner = w - 2 * kPadding;
    const float choiceWidth = (inner - (kColumns - 1) * kChoiceGap) / kColumns;
    const float height = 46 + kRows * (kChoiceHeight + kChoiceGap) - kChoiceGap + kPadding;

    card({x, y, w, height}, "lbl_language");
    for (int i = 0; i < kLanguageCount; ++i) {
        const auto column = static_cast<float>(i % kColumns);
        const int rowIndex = i / kColumns;
        const auto row = static_cast<float>(rowIndex);
        HitTarget& choice =
            add(HitKind::languageChoice, TextStyle::choice,
                {x + kPadding + column * (choiceWidth + kChoiceGap),
                 y + 46 + row * (kChoiceHeight + kChoiceGap), choiceWidth, kChoiceHeight},
                kLanguages[i].displayName);
        choice.id = kFirstLanguageId + static_cast<std::uint32_t>(i);
        choice.selected = kLanguages[i].index == currentLanguage();
    }
    return y + height;
}

float PageBuilder::aboutPage(PageArea area) {
    constexpr const char* kPromises[] = {"safety_1", "safety_2", "safety_3", "safety_4"};
    constexpr float kTopHeight = 98;
    constexpr float kPromisePitch = 24;
    const auto [x, y, w] = area;
    const float column = (w - kGap) / 2;
    const float right = x + column + kGap;

    card({x, y, column, kTopHeight}, nullptr);
    add(HitKind::title, TextStyle::brand, {x + kPadding, y + 20, column - 2 * kPadding, 32},
        tr("brand_title"));
    add(HitKind::subtitle, TextStyle::subtitle, {x + kPadding, y + 54, column - 2 * kPadding, 24},
        tr("brand_subtitle"));
    card({right, y, column, kTopHeight}, "card_site");
    button(kWebsiteAction,
           {right + kPadding, y + kBigButtonTop - 2, column - 2 * kPadding, kButtonHeight},
           "btn_site");

    const float safetyTop = languageCard({x, y + kTopHeight + kGap, w}) + kGap;
    const float safetyHeight = 46 + std::size(kPromises) * kPromisePitch + kGap;
    card({x, safetyTop, w, safetyHeight}, "card_safety");
    float promiseTop = safetyTop + 44;
    for (const char* key : kPromises) {
        label({x + kPadding, promiseTop, w - 2 * kPadding, kPromisePitch}, tr(key));
        promiseTop += kPromisePitch;
    }
    return safetyTop + safetyHeight;
}

void PageBuilder::logPanel(float pageBottom) {
    const float headerTop = pageBottom + kGap;
    const float panelTop = headerTop + kLogHeaderHeight + kLogHeaderGap;
    const float height = input_.clientHeightDip - kLogBottomMargin - panelTop;
    if (height < kLowestLogPanel) return;

    const float right = input_.clientWidthDip - kMargin;
    const float clearLeft = right - kLogButtonWidth;
    const float copyLeft = clearLeft - 8 - kLogButtonWidth;
    button(kClearAction, {clearLeft, headerTop, kLogButtonWidth, kLogHeaderHeight}, "log_clear",
           TextStyle::smallButton);
    button(kCopyAction, {copyLeft, headerTop, kLogButtonWidth, kLogHeaderHeight}, "log_copy",
           TextStyle::smallButton);
    // In drawing order the report's buttons come before the page.
    const auto end = layout_.hitTargets.end();
    std::rotate(layout_.hitTargets.begin() + pageStart_, end - 2, end);
    layout_.status = {kMargin, headerTop, copyLeft - kGap - kMargin, kLogHeaderHeight};
    layout_.logPanel = {kMargin, panelTop, right - kMargin, height};
}

}  // namespace

Layout buildLayout(const LayoutInput& input, const MeasureText& measure) {
    Layout layout;
    const bool known = input.currentTab >= 0 && input.currentTab < kTabCount;
    layout.currentTab = known ? input.currentTab : std::int32_t{kDiagnoseTab};
    PageBuilder builder(layout, input, measure);
    builder.header();
    builder.logPanel(builder.page());
    return layout;
}

int hitTest(const std::vector<HitTarget>& targets, PointDip point) {
    for (std::size_t i = targets.size(); i-- > 0;) {
        if (targets[i].isClickable() && targets[i].rect().contains(point)) {
            return static_cast<int>(i);
        }
    }
    return -1;
}
