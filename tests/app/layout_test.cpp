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
constexpr float kDefaultWidth = 1024;
constexpr float kDefaultHeight = 841;
constexpr float kSmallWidth = 864;
constexpr float kSmallHeight = 601;

LayoutInput inputFor(int tab, int instances, float width = kDefaultWidth,
                     float height = kDefaultHeight) {
    LayoutInput input;
    input.clientWidthDip = width;
    input.clientHeightDip = height;
    input.currentTab = tab;
    for (int i = 0; i < instances; ++i)
        input.instanceRows.push_back(L"PID " + decimal(i));
    input.selectedInstance = instances > 0 ? 0 : -1;
    return input;
}

const HitTarget* find(const Layout& layout, std::uint32_t id) {
    const auto found = std::find_if(layout.hitTargets.begin(), layout.hitTargets.end(),
                                    [&](const HitTarget& target) { return target.id == id; });
    return found != layout.hitTargets.end() ? &*found : nullptr;
}

void expectRect(const Layout& layout, std::uint32_t id, RectDip rect) {
    const HitTarget* target = find(layout, id);
    ASSERT_NE(target, nullptr) << id;
    EXPECT_EQ(target->x, rect.x) << id;
    EXPECT_EQ(target->y, rect.y) << id;
    EXPECT_EQ(target->width, rect.width) << id;
    EXPECT_EQ(target->height, rect.height) << id;
}

bool overlap(const RectDip& a, const RectDip& b) {
    return a.x < b.right() && b.x < a.right() && a.y < b.bottom() && b.y < a.bottom();
}

bool inside(const RectDip& inner, const RectDip& outer) {
    return inner.x >= outer.x && inner.y >= outer.y && inner.right() <= outer.right() &&
           inner.bottom() <= outer.bottom();
}

void expectNothingOverlaps(const Layout& layout) {
    const auto& targets = layout.hitTargets;
    for (std::size_t i = 0; i < targets.size(); ++i) {
        EXPECT_FALSE(overlap(targets[i].rect(), layout.logPanel)) << i;
        for (std::size_t k = i + 1; k < targets.size(); ++k) {
            EXPECT_FALSE(overlap(targets[i].rect(), targets[k].rect())) << i << " over " << k;
        }
    }
    for (std::size_t i = 0; i < layout.cards.size(); ++i) {
        EXPECT_FALSE(overlap(layout.cards[i].rect, layout.logPanel)) << i;
        for (std::size_t k = i + 1; k < layout.cards.size(); ++k) {
            EXPECT_FALSE(overlap(layout.cards[i].rect, layout.cards[k].rect)) << i << " over " << k;
        }
    }
    for (const HitTarget& target : targets) {
        for (const Card& card : layout.cards) {
            if (overlap(target.rect(), card.rect)) {
                EXPECT_TRUE(inside(target.rect(), card.rect));
            }
        }
    }
}

}  // namespace

TEST(Layout, PlacesTheDiagnosePage) {
    for (const int instances : {0, 1, 3}) {
        const Layout layout = buildLayout(inputFor(kDiagnoseTab, instances), fakeMeasure);
        const float w = kDefaultWidth - 40;
        const float cardHeight = static_cast<float>(std::max(instances, 1)) * 38 + 60;
        ASSERT_EQ(layout.cards.size(), 2U);
        EXPECT_EQ(layout.cards[0].rect.y, 124);
        EXPECT_EQ(layout.cards[0].rect.height, cardHeight);
        EXPECT_EQ(layout.cards[1].rect.y, 124 + cardHeight + 12);
        EXPECT_EQ(layout.cards[1].rect.height, 122);
        expectRect(layout, kRefreshAction, {20 + w - 218, 134, 88, 30});
        expectRect(layout, kDashboardAction, {20 + w - 124, 134, 108, 30});
        expectRect(layout, kCaptureAction, {36, 124 + cardHeight + 60, w - 32, 56});
        for (int i = 0; i < instances; ++i) {
            const auto id = kFirstInstanceId + static_cast<std::uint32_t>(i);
            ASSERT_NE(find(layout, id), nullptr);
            EXPECT_EQ(find(layout, id)->y, 170 + 38 * static_cast<float>(i));
            EXPECT_EQ(find(layout, id)->selected, i == 0);
        }
        EXPECT_EQ(find(layout, kFirstInstanceId + static_cast<std::uint32_t>(instances)), nullptr);
    }
}

TEST(Layout, PlacesTheFixPage) {
    const Layout layout = buildLayout(inputFor(kFixTab, 1), fakeMeasure);
    const float column = (kDefaultWidth - 40 - 12) / 2;
    const float right = 20 + column + 12;
    EXPECT_EQ(find(layout, kSlimAction)->y, 124 + 48);
    EXPECT_EQ(find(layout, kScanAction)->y, 124 + 190 + 12 + 40);
    EXPECT_EQ(find(layout, kScanAction)->width, column - 28);
    EXPECT_EQ(find(layout, kPrinterAction)->x, right + 14);
    const HitTarget& clean = *find(layout, kCleanupAction);
    const HitTarget& restore = *find(layout, kRestoreAction);
    EXPECT_EQ(clean.width, (column - 28 - 8) / 2);
    EXPECT_EQ(restore.x, clean.x + clean.width + 8);
    EXPECT_EQ(find(layout, kSettingsAction)->y, clean.y);
}

TEST(Layout, ShowsEveryPageWholeAtTheDefaultSize) {
    for (int tab = 0; tab < kTabCount; ++tab) {
        for (const int instances : {0, 1, 3, 8}) {
            for (const float grown : {0.0F, 700.0F}) {
                const Layout layout = buildLayout(
                    inputFor(tab, instances, kDefaultWidth + grown, kDefaultHeight + grown),
                    fakeMeasure);
                SCOPED_TRACE(testing::Message() << "tab " << tab << ", instances " << instances);
                expectNothingOverlaps(layout);
                // Six lines of the smallest height and the panel's margins.
                EXPECT_GE(layout.logPanel.height, 6 * 21 + 14);
                for (const HitTarget& target : layout.hitTargets) {
                    EXPECT_TRUE(inside(target.rect(),
                                       {0, 0, kDefaultWidth + grown, kDefaultHeight + grown}));
                }
            }
        }
    }
}

TEST(Layout, LeavesOutThePanelRatherThanDrawItOverThePage) {
    for (int tab = 0; tab < kTabCount; ++tab) {
        for (const int instances : {0, 1, 3, 20}) {
            const Layout layout =
                buildLayout(inputFor(tab, instances, kSmallWidth, kSmallHeight), fakeMeasure);
            SCOPED_TRACE(testing::Message() << "tab " << tab << ", instances " << instances);
            expectNothingOverlaps(layout);
            const bool shown = layout.logPanel.width > 0;
            EXPECT_EQ(find(layout, kCopyAction) != nullptr, shown);
            if (shown) {
                EXPECT_LE(layout.logPanel.bottom(), kSmallHeight);
            }
            if (instances > 3) continue;
            for (const HitTarget& target : layout.hitTargets) {
                if (target.isClickable()) {
                    EXPECT_LE(target.rect().bottom(), kSmallHeight);
                }
            }
        }
    }
}

TEST(Layout, GivesLongHintsTheirRoom) {
    const MeasureText tall = [](const std::wstring& text, TextStyle style, float width) {
        TextSize size = fakeMeasure(text, style, width);
        if (style == TextStyle::hint) size.heightDip = 120;
        return size;
    };
    const Layout layout = buildLayout(inputFor(kFixTab, 1), tall);
    expectNothingOverlaps(layout);
    for (const HitTarget& target : layout.hitTargets) {
        if (target.kind == HitKind::hint && target.x != 36) {
            EXPECT_GE(target.height, 120);
        }
    }
}

TEST(Layout, MarksTheCurrentTabAndFallsBackToTheFirst) {
    for (const int tab : {-1, 0, 1, 2, 3, 4, 1000}) {
        const Layout layout = buildLayout(inputFor(tab, 0), fakeMeasure);
        const int expected = tab >= 0 && tab < kTabCount ? tab : 0;
        EXPECT_EQ(layout.currentTab, expected);
        for (int i = 0; i < kTabCount; ++i) {
            const HitTarget* header = find(layout, kFirstTabId + static_cast<std::uint32_t>(i));
            ASSERT_NE(header, nullptr);
            EXPECT_EQ(header->selected, i == expected);
        }
        EXPECT_EQ(find(layout, kFirstTabId)->x, 20);
        EXPECT_EQ(find(layout, kFirstTabId + kTabCount), nullptr);
    }
}

TEST(Layout, ShowsTheStateInItsLabels) {
    LayoutInput input = inputFor(kCloudTab, 0);
    const auto labels = [&] {
        std::vector<std::wstring> texts;
        for (const HitTarget& target : buildLayout(input, fakeMeasure).hitTargets) {
            texts.push_back(target.label);
        }
        return texts;
    };
    const auto shows = [&](const std::wstring& text) {
        const auto texts = labels();
        return std::find(texts.begin(), texts.end(), text) != texts.end();
    };
    EXPECT_TRUE(shows(L"Loading"));
    EXPECT_TRUE(shows(L"Network: ON (click to disable)"));
    input.signatureStatus = L"Using built-in base signature database";
    input.networkEnabled = false;
    EXPECT_FALSE(shows(L"Loading"));
    EXPECT_TRUE(shows(L"Using built-in base signature database"));
    EXPECT_TRUE(shows(L"Network: OFF (click to enable)"));

    setLanguage(kGerman);
    input.currentTab = kAboutTab;
    const Layout about = buildLayout(input, fakeMeasure);
    for (int i = 0; i < kLanguageCount; ++i) {
        const HitTarget* choice = find(about, kFirstLanguageId + static_cast<std::uint32_t>(i));
        ASSERT_NE(choice, nullptr);
        EXPECT_EQ(choice->selected, i == kGerman);
    }
    EXPECT_STREQ(find(about, kFirstTabId + kAboutTab)->label.c_str(), tr("tab_about"));
    setLanguage(kEnglish);
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
