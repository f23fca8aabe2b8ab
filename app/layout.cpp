#include "app/layout.h"

#include <algorithm>
#include <utility>

#include "app/actions.h"
#include "app/language.h"
#include "app/report_log.h"
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

constexpr float kTitleBottom = 44;
constexpr float kChoiceGap = 8;

constexpr float kLogHeaderHeight = 22;
constexpr float kLogButtonWidth = 96;

// The air that a page may choose. Where it leaves the report few lines, the report gets it.
struct Air {
    float betweenCards;
    float belowContents;
    float aboveReport;
    float abovePanel;
    float belowPanel;
};
constexpr Air kRoomy{12, 14, 12, 6, 16};
constexpr Air kTight{6, 6, 6, 4, 8};
constexpr float kEnoughLines = 6;

struct PageArea {
    float x;
    float y;
    float width;
};

// The page builders write into the layout and return where their page ends.
class PageBuilder {
  public:
    PageBuilder(Layout& layout, const LayoutInput& input, const MeasureText& measure,
                const Air& air)
        : layout_(layout), input_(input), measure_(measure), air_(air) {}

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
    float buttonWidth(const char* key, float widest) const;
    float languageCard(PageArea area);
    int languageColumns(float width) const;

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
    const Air& air_;
    /// Where the last tab ends.
    float tabsRight_ = 0;
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
        tabsRight_ = x + width;
        x = tabsRight_ + kTabGap;
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
          rect.height - kGridHintTop - air_.belowContents},
         hintKey);
    return rect.y + kGridButtonTop;
}

float PageBuilder::fixPage(PageArea area) {
    constexpr float kSlimHeight = 190;
    constexpr float kSlimHintTop = 112;
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
        return kGridHintTop + hintHeight + air_.belowContents;
    };

    const float firstTop = y + kSlimHeight + kGap;
    const float firstHeight = rowHeight("hint_scan", "hint_printer");
    float top = gridCard({x, firstTop, column, firstHeight}, "card_scan", "hint_scan");
    button(kScanAction, {x + kGridInset, top, inner, kButtonHeight}, "btn_scan");
    gridCard({right, firstTop, column, firstHeight}, "card_printer", "hint_printer");
    button(kPrinterAction, {right + kGridInset, top, inner, kButtonHeight}, "btn_printer");

    const float secondTop = firstTop + firstHeight + air_.betweenCards;
    const float secondHeight = rowHeight("hint_clean", "hint_settings");
    const float half = (inner - 8) / 2;
    top = gridCard({x, secondTop, column, secondHeight}, "card_cleanup", "hint_clean");
    button(kCleanupAction, {x + kGridInset, top, half, kButtonHeight}, "btn_clean");
    button(kRestoreAction, {x + kGridInset + half + 8, top, half, kButtonHeight}, "btn_restore");
    gridCard({right, secondTop, column, secondHeight}, "card_cdrsettings", "hint_settings");
    button(kSettingsAction, {right + kGridInset, top, inner, kButtonHeight}, "btn_optimize");
    return secondTop + secondHeight;
}

// As wide as its text asks, and no wider than a hand finds at a glance.
float PageBuilder::buttonWidth(const char* key, float widest) const {
    constexpr float kUsualWidth = 280;
    constexpr float kTextAir = 20;
    const float text = measure_(tr(key), TextStyle::button, input_.clientWidthDip).widthDip;
    return std::min(std::max(kUsualWidth, text + 2 * kTextAir), widest);
}

float PageBuilder::cloudPage(PageArea area) {
    constexpr float kStatusTop = 46;
    constexpr float kStatusHeight = 22;
    const auto [x, y, w] = area;
    const float inner = w - 2 * kPadding;
    const float half = (inner - kGap) / 2;
    const float buttonsHeight = kTitleBottom + kButtonHeight + air_.belowContents;

    const float statusHeight = kStatusTop + kStatusHeight + air_.belowContents;
    card({x, y, w, statusHeight}, "card_sigs");
    label({x + 18, y + kStatusTop, w - 36, kStatusHeight},
          input_.signatureStatus.empty() ? tr("cloud_loading") : input_.signatureStatus);

    const float operationsTop = y + statusHeight + air_.betweenCards;
    const float buttonTop = operationsTop + kTitleBottom;
    const float updateWidth = buttonWidth("btn_update", half);
    card({x, operationsTop, w, buttonsHeight}, "card_cloudop");
    button(kUpdateAction, {x + kPadding, buttonTop, updateWidth, kButtonHeight}, "btn_update");
    primaryButton(kSubmitAction,
                  {x + kPadding + updateWidth + kGap, buttonTop, buttonWidth("btn_submit", half),
                   kButtonHeight},
                  "btn_submit", TextStyle::button);

    const float networkTop = operationsTop + buttonsHeight + air_.betweenCards;
    const char* const network = input_.networkEnabled ? "net_on" : "net_off";
    card({x, networkTop, w, buttonsHeight}, "card_network");
    button(kNetworkAction,
           {x + kPadding, networkTop + kTitleBottom, buttonWidth(network, inner), kButtonHeight},
           network);
    return networkTop + buttonsHeight;
}

// As many in a row as the longest name allows, within the rows that five columns need.
int PageBuilder::languageColumns(float width) const {
    constexpr float kTextAir = 8;
    float widest = 0;
    for (int i = 0; i < kLanguageCount; ++i) {
        widest = std::max(
            widest,
            measure_(kLanguages[i].displayName, TextStyle::choice, input_.clientWidthDip).widthDip);
    }
    return width >= 7 * (widest + 2 * kTextAir) + 6 * kChoiceGap ? 7 : 5;
}

float PageBuilder::languageCard(PageArea area) {
    constexpr float kChoiceHeight = 34;
    const auto [x, y, w] = area;
    const float inner = w - 2 * kPadding;
    const int columns = languageColumns(inner);
    const int rowCount = (kLanguageCount + columns - 1) / columns;
    const auto rows = static_cast<float>(rowCount);
    const float choiceWidth =
        (inner - static_cast<float>(columns - 1) * kChoiceGap) / static_cast<float>(columns);
    const float height =
        kTitleBottom + rows * (kChoiceHeight + kChoiceGap) - kChoiceGap + air_.belowContents;

    card({x, y, w, height}, "lbl_language");
    for (int i = 0; i < kLanguageCount; ++i) {
        const auto column = static_cast<float>(i % columns);
        const int rowIndex = i / columns;
        const auto row = static_cast<float>(rowIndex);
        HitTarget& choice =
            add(HitKind::languageChoice, TextStyle::choice,
                {x + kPadding + column * (choiceWidth + kChoiceGap),
                 y + kTitleBottom + row * (kChoiceHeight + kChoiceGap), choiceWidth, kChoiceHeight},
                kLanguages[i].displayName);
        choice.id = kFirstLanguageId + static_cast<std::uint32_t>(i);
        choice.selected = kLanguages[i].index == currentLanguage();
    }
    return y + height;
}

float PageBuilder::aboutPage(PageArea area) {
    constexpr const char* kPromises[] = {"safety_1", "safety_2", "safety_3", "safety_4"};
    constexpr float kPromisePitch = 24;
    constexpr float kBrandCardTop = 8;
    const float topHeight = kTitleBottom + kButtonHeight + air_.belowContents;
    const auto [x, y, w] = area;
    const float column = (w - kGap) / 2;
    const float right = x + column + kGap;

    card({x, y, column, topHeight}, nullptr);
    add(HitKind::title, TextStyle::largeBrand,
        {x + kPadding, y + kBrandCardTop, column - 2 * kPadding, 44}, tr("brand_title"));
    add(HitKind::subtitle, TextStyle::subtitle,
        {x + kPadding, y + kBrandCardTop + 44, column - 2 * kPadding, 24}, tr("brand_subtitle"));
    card({right, y, column, topHeight}, "card_site");
    button(kWebsiteAction,
           {right + kPadding, y + kTitleBottom, buttonWidth("btn_site", column - 2 * kPadding),
            kButtonHeight},
           "btn_site");

    const float safetyTop =
        languageCard({x, y + topHeight + air_.betweenCards, w}) + air_.betweenCards;
    const float safetyHeight =
        kTitleBottom + std::size(kPromises) * kPromisePitch + air_.belowContents;
    card({x, safetyTop, w, safetyHeight}, "card_safety");
    float promiseTop = safetyTop + kTitleBottom;
    for (const char* key : kPromises) {
        label({x + kPadding, promiseTop, w - 2 * kPadding, kPromisePitch}, tr(key));
        promiseTop += kPromisePitch;
    }
    return safetyTop + safetyHeight;
}

void PageBuilder::logPanel(float pageBottom) {
    const float headerTop = pageBottom + air_.aboveReport;
    const float panelTop = headerTop + kLogHeaderHeight + air_.abovePanel;
    const float height = input_.clientHeightDip - air_.belowPanel - panelTop;
    const float right = input_.clientWidthDip - kMargin;
    const float line = smallestLineHeight(measure_);
    // The last line of many a report is empty: one alone may say nothing.
    if (height < kLogVerticalMargins + 2 * line) {
        const float left = tabsRight_ + kGap;
        layout_.newestLine = {left, kTabTop, right - left, kTabHeight};
    }
    if (height < kLogVerticalMargins + line) return;
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

Layout layoutWith(const Air& air, const LayoutInput& input, const MeasureText& measure) {
    Layout layout;
    const bool known = input.currentTab >= 0 && input.currentTab < kTabCount;
    layout.currentTab = known ? input.currentTab : std::int32_t{kDiagnoseTab};
    PageBuilder builder(layout, input, measure, air);
    builder.header();
    builder.logPanel(builder.page());
    return layout;
}

}  // namespace

Layout buildLayout(const LayoutInput& input, const MeasureText& measure) {
    Layout layout = layoutWith(kRoomy, input, measure);
    const float enough = kLogVerticalMargins + kEnoughLines * smallestLineHeight(measure);
    return layout.logPanel.height >= enough ? layout : layoutWith(kTight, input, measure);
}

int hitTest(const std::vector<HitTarget>& targets, PointDip point) {
    for (std::size_t i = targets.size(); i-- > 0;) {
        if (targets[i].isClickable() && targets[i].rect().contains(point)) {
            return static_cast<int>(i);
        }
    }
    return -1;
}
