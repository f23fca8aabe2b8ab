#include "app/layout.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "app/actions.h"
#include "app/strings.h"
#include "app/strings/tables.h"
#include "base/text.h"
#include "tests/app/fake_measure.h"

namespace {

// The client area that Windows leaves of a window of 1040 x 880 and of 880 x 640.
constexpr RectDip kDefaultClient{0, 0, 1024, 841};
constexpr RectDip kSmallestClient{0, 0, 864, 601};

LayoutInput inputFor(int tab, int instances, RectDip client = kDefaultClient) {
    LayoutInput input;
    input.clientWidthDip = client.width;
    input.clientHeightDip = client.height;
    input.currentTab = tab;
    for (int i = 0; i < instances; ++i)
        input.instanceRows.push_back(L"PID " + decimal(i));
    input.selectedInstance = instances - 1;
    return input;
}

const HitTarget* find(const Layout& layout, std::uint32_t id) {
    const auto found = std::find_if(layout.hitTargets.begin(), layout.hitTargets.end(),
                                    [&](const HitTarget& target) { return target.id == id; });
    return found != layout.hitTargets.end() ? &*found : nullptr;
}

bool shows(const Layout& layout, const std::wstring& text) {
    return std::any_of(layout.hitTargets.begin(), layout.hitTargets.end(),
                       [&](const HitTarget& target) { return target.label == text; });
}

bool equal(const RectDip& a, const RectDip& b) {
    return a.x == b.x && a.y == b.y && a.width == b.width && a.height == b.height;
}

bool overlap(const RectDip& a, const RectDip& b) {
    return a.x < b.right() && b.x < a.right() && a.y < b.bottom() && b.y < a.bottom();
}

bool inside(const RectDip& inner, const RectDip& outer) {
    return inner.x >= outer.x && inner.y >= outer.y && inner.right() <= outer.right() &&
           inner.bottom() <= outer.bottom();
}

// Elements stand apart from each other, and each whole in its card or outside of all.
void expectNothingOverlaps(const Layout& layout) {
    std::vector<RectDip> cards = {layout.logPanel};
    for (const Card& card : layout.cards)
        cards.push_back(card.rect);
    std::vector<RectDip> elements;
    for (const HitTarget& target : layout.hitTargets)
        elements.push_back(target.rect());
    for (const auto& rects : {cards, elements}) {
        for (std::size_t i = 0; i < rects.size(); ++i) {
            for (std::size_t k = 0; k < i; ++k)
                EXPECT_FALSE(overlap(rects[i], rects[k])) << i << " over " << k;
        }
    }
    for (const RectDip& element : elements) {
        EXPECT_FALSE(overlap(element, layout.logPanel));
        for (const RectDip& card : cards)
            EXPECT_TRUE(!overlap(element, card) || inside(element, card));
    }
}

}  // namespace

TEST(Layout, PlacesTheDiagnosePage) {
    for (const int instances : {0, 1, 3}) {
        const Layout layout = buildLayout(inputFor(kDiagnoseTab, instances), fakeMeasure);
        const float cardHeight = static_cast<float>(std::max(instances, 1)) * 38 + 60;
        ASSERT_EQ(layout.cards.size(), 2U);
        EXPECT_TRUE(equal(layout.cards[0].rect, {20, 124, 984, cardHeight}));
        EXPECT_TRUE(equal(layout.cards[1].rect, {20, 136 + cardHeight, 984, 122}));
        EXPECT_TRUE(equal(find(layout, kRefreshAction)->rect(), {786, 134, 88, 30}));
        EXPECT_TRUE(equal(find(layout, kDashboardAction)->rect(), {880, 134, 108, 30}));
        EXPECT_TRUE(equal(find(layout, kCaptureAction)->rect(), {36, 184 + cardHeight, 952, 56}));
        for (int i = 0; i <= instances; ++i) {
            const auto* row = find(layout, kFirstInstanceId + static_cast<std::uint32_t>(i));
            ASSERT_EQ(row != nullptr, i < instances);
            if (row == nullptr) break;
            EXPECT_TRUE(equal(row->rect(), {34, 170 + 38 * static_cast<float>(i), 956, 34}));
            EXPECT_EQ(row->selected, i == instances - 1);
        }
    }
}

TEST(Layout, PlacesTheFixPage) {
    const Layout layout = buildLayout(inputFor(kFixTab, 1), fakeMeasure);
    const float secondRow = find(layout, kCleanupAction)->y;
    const struct {
        std::uint32_t id;
        float x, y, width;
    } buttons[] = {{kSlimAction, 36, 172, 952},           {kScanAction, 34, 366, 458},
                   {kPrinterAction, 532, 366, 458},       {kCleanupAction, 34, secondRow, 225},
                   {kRestoreAction, 267, secondRow, 225}, {kSettingsAction, 532, secondRow, 458}};
    for (const auto& [id, x, y, width] : buttons) {
        const HitTarget& button = *find(layout, id);
        EXPECT_TRUE(equal(button.rect(), {x, y, width, button.height})) << id;
    }
    // A row is as high as its hints need.
    const MeasureText tall = [](const std::wstring& text, TextStyle style, float width) {
        return style == TextStyle::hint ? TextSize{width, 120} : fakeMeasure(text, style, width);
    };
    const Layout taller = buildLayout(inputFor(kFixTab, 1), tall);
    expectNothingOverlaps(taller);
    for (const HitTarget& target : taller.hitTargets)
        EXPECT_TRUE(target.kind != HitKind::hint || target.x == 36 || target.height >= 120);
}

TEST(Layout, KeepsEveryPageWholeAndThePanelOffThePage) {
    for (const RectDip client : {kDefaultClient, RectDip{0, 0, 1724, 1541}, kSmallestClient}) {
        const bool small = client.height < kDefaultClient.height;
        for (const int tab : {kDiagnoseTab, kFixTab, kCloudTab, kAboutTab}) {
            for (const int instances : {0, 1, 3, 8, 20}) {
                if (!small && instances == 20) continue;
                const Layout layout = buildLayout(inputFor(tab, instances, client), fakeMeasure);
                SCOPED_TRACE(testing::Message() << "width " << client.width << ", tab " << tab
                                                << ", instances " << instances);
                expectNothingOverlaps(layout);
                EXPECT_TRUE(inside(layout.logPanel, client));
                EXPECT_EQ(find(layout, kCopyAction) != nullptr, layout.logPanel.width > 0);
                // Six lines of the smallest height and the panel's margins.
                EXPECT_TRUE(small || layout.logPanel.height >= 6 * 21 + 14);
                if (small && instances > 3) continue;
                for (const HitTarget& target : layout.hitTargets) {
                    EXPECT_TRUE(inside(target.rect(), client) || (small && !target.isClickable()));
                }
            }
        }
    }
}

TEST(Layout, MarksTheCurrentTabAndFallsBackToTheFirst) {
    for (const int tab : {-1, 0, 1, 2, 3, 4, 1000}) {
        const Layout layout = buildLayout(inputFor(tab, 0), fakeMeasure);
        EXPECT_EQ(layout.currentTab, tab >= 0 && tab < kTabCount ? tab : 0);
        for (int i = 0; i < kTabCount; ++i) {
            const HitTarget& header = *find(layout, kFirstTabId + static_cast<std::uint32_t>(i));
            EXPECT_EQ(header.selected, i == layout.currentTab);
            EXPECT_TRUE(i > 0 || header.x == 20);
        }
        EXPECT_EQ(find(layout, kFirstTabId + kTabCount), nullptr);
    }
}

TEST(Layout, ShowsTheStateInItsLabels) {
    LayoutInput input = inputFor(kCloudTab, 0);
    EXPECT_TRUE(shows(buildLayout(input, fakeMeasure), L"Loading"));
    EXPECT_TRUE(shows(buildLayout(input, fakeMeasure), L"Network: ON (click to disable)"));
    input.signatureStatus = L"a status";
    input.networkEnabled = false;
    EXPECT_TRUE(shows(buildLayout(input, fakeMeasure), L"a status"));
    EXPECT_TRUE(shows(buildLayout(input, fakeMeasure), L"Network: OFF (click to enable)"));

    setLanguage(kGerman);
    const Layout about = buildLayout(inputFor(kAboutTab, 0), fakeMeasure);
    EXPECT_TRUE(shows(about, tr("tab_about")));
    setLanguage(kEnglish);
    for (int i = 0; i < kLanguageCount; ++i) {
        EXPECT_EQ(find(about, kFirstLanguageId + static_cast<std::uint32_t>(i))->selected,
                  i == kGerman);
    }
}

TEST(Layout, HitsTheClickableElementDrawnLastEdgesIncluded) {
    std::vector<HitTarget> targets(3);
    targets[0] = {HitKind::button, 1, 10, 10, 100, 20, L"", TextStyle::button, false};
    targets[1] = {HitKind::languageChoice, 2, 50, 10, 100, 20, L"", TextStyle::choice, false};
    targets[2] = {HitKind::hint, 3, 0, 0, 500, 500, L"", TextStyle::hint, false};
    const struct {
        float x, y;
        int hit;
    } cases[] = {
        {10, 10, 0},  {9.9F, 10, -1}, {49, 30, 0},   {50, 20, 1},
        {110, 30, 1}, {150, 30, 1},   {151, 30, -1}, {20, 30.1F, -1},
    };
    for (const auto& c : cases)
        EXPECT_EQ(hitTest(targets, {c.x, c.y}), c.hit) << c.x << "," << c.y;
}
