#include "app/layout.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "app/accessible_tree.h"
#include "app/actions.h"
#include "app/strings.h"
#include "app/strings/tables.h"
#include "app/window_place.h"
#include "base/text.h"
#include "tests/app/fake_measure.h"

namespace {

// The client area that Windows leaves of a window of 1040 x 880 and of 880 x 640.
constexpr RectDip kDefaultClient{0, 0, 1024, 841};
constexpr RectDip kSmallestClient{0, 0, 864, 601};

Layout layoutOf(int tab, int instances, RectDip client = kDefaultClient) {
    LayoutInput input{client.width, client.height, tab, {}, instances - 1, L"", true};
    for (int i = 0; i < instances; ++i)
        input.instanceRows.push_back(L"PID " + decimal(i));
    return buildLayout(input, fakeMeasure);
}

RectDip rectOf(const Layout& layout, std::uint32_t id) {
    const auto found = std::find_if(layout.hitTargets.begin(), layout.hitTargets.end(),
                                    [&](const HitTarget& target) { return target.id == id; });
    return found != layout.hitTargets.end() ? found->rect() : RectDip{};
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
    std::vector<RectDip> cards = {layout.logPanel, layout.newestLine};
    for (const Card& card : layout.cards)
        cards.push_back(card.rect);
    for (std::size_t i = 0; i < layout.hitTargets.size(); ++i) {
        const RectDip element = layout.hitTargets[i].rect();
        for (std::size_t k = 0; k < i; ++k)
            EXPECT_FALSE(overlap(element, layout.hitTargets[k].rect())) << i << " over " << k;
        EXPECT_FALSE(overlap(element, layout.logPanel) || overlap(element, layout.newestLine));
        for (const RectDip& card : cards)
            EXPECT_TRUE(!overlap(element, card) || inside(element, card));
    }
    for (std::size_t i = 0; i < cards.size(); ++i) {
        for (std::size_t k = 0; k < i; ++k)
            EXPECT_FALSE(overlap(cards[i], cards[k])) << i << " over " << k;
    }
}

}  // namespace

TEST(Layout, PutsWhatIsPrescribedInItsPlace) {
    const Layout three = layoutOf(kDiagnoseTab, 3);
    EXPECT_EQ(three.cards[0].rect.height, 174);
    EXPECT_EQ(layoutOf(kDiagnoseTab, 0).cards[0].rect.height, 98);
    const struct {
        int tab;
        std::uint32_t id;
        RectDip rect;
    } cases[] = {
        {kDiagnoseTab, kFirstTabId, {20, 62, 112, 40}},
        {kDiagnoseTab, kRefreshAction, {786, 134, 88, 30}},
        {kDiagnoseTab, kDashboardAction, {880, 134, 108, 30}},
        {kDiagnoseTab, kFirstInstanceId + 2, {34, 246, 956, 34}},
        {kDiagnoseTab, kFirstInstanceId + 3, {}},
        {kDiagnoseTab, kCaptureAction, {36, 358, 952, 56}},
        {kFixTab, kSlimAction, {36, 172, 952, 52}},
        {kFixTab, kScanAction, {34, 366, 458, 36}},
        {kFixTab, kPrinterAction, {532, 366, 458, 36}},
        {kFixTab, kFirstTabId + kTabCount, {}},
    };
    for (const auto& [tab, id, expected] : cases) {
        const RectDip rect = rectOf(layoutOf(tab, 3), id);
        EXPECT_TRUE(rect.x == expected.x && rect.y == expected.y && rect.width == expected.width &&
                    rect.height == expected.height)
            << id << " at " << rect.x << "," << rect.y;
    }
    EXPECT_EQ(layoutOf(1000, 0).currentTab, kDiagnoseTab);
}

TEST(Layout, KeepsEveryPageWholeAndTheReportInSight) {
    for (const RectDip client :
         {kDefaultClient, RectDip{0, 0, 1724, 1541}, RectDip{0, 0, 1280, 680},
          RectDip{0, 0, 1024, 641}, kSmallestClient}) {
        for (const int tab : {kDiagnoseTab, kFixTab, kCloudTab, kAboutTab}) {
            for (const int instances : {0, 1, 3, 8, 20}) {
                if (instances > 8 && client.height < kDefaultClient.height) continue;
                const Layout layout = layoutOf(tab, instances, client);
                SCOPED_TRACE(testing::Message() << client.height << " high, tab " << tab
                                                << ", instances " << instances);
                expectNothingOverlaps(layout);
                EXPECT_TRUE(inside(layout.logPanel, client) && inside(layout.newestLine, client));
                EXPECT_GE(layout.logPanel.height + layout.newestLine.height, 40);
                EXPECT_EQ(rectOf(layout, kCopyAction).width > 0, layout.logPanel.width > 0);
                const bool hasTwoLines = layout.logPanel.height >= 14 + 2 * 21;
                EXPECT_TRUE(hasTwoLines || instances >= 8 || client.width < 1280);
                for (const HitTarget& target : layout.hitTargets) {
                    EXPECT_TRUE(inside(target.rect(), client) || instances >= 8 ||
                                (tab == kFixTab && client.height <= 641));
                }
            }
        }
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

TEST(Layout, IsATreeForScreenReaders) {
    const Layout layout = layoutOf(kDiagnoseTab, 2);
    WindowState state;
    takeLayout(state, layout);
    state.focus = ElementId{HitKind::instanceRow, kFirstInstanceId + 1};
    appendLine(state.log, L"[OK] one");
    appendLine(state.log, L"");
    const AccessibleSource source{layout, state, visibleLines(state.log, fakeMeasure), L"Mirelo"};
    const AccessibleTree tree = buildAccessibleTree(source, nullptr);
    std::wstring walked;  // every node by its role and its parent's
    for (std::size_t i = 1; i < tree.nodes.size(); ++i) {
        const AccessibleNode& node = tree.nodes[i];
        ASSERT_LT(node.parent, static_cast<int>(i));
        walked += decimal(static_cast<int>(node.role)) + L"<" +
                  decimal(static_cast<int>(tree.at(node.parent).role)) + L" ";
    }
    EXPECT_EQ(walked,
              L"7<0 7<0 1<0 2<1 2<1 2<1 2<1 3<0 6<3 6<3 4<3 5<4 5<4 3<0 6<3 7<3 6<0 6<0 "
              L"8<0 9<8 9<8 10<0 ");
    const AccessibleNode& row = tree.at(focusedNode(tree));
    EXPECT_TRUE(row.name == L"PID 1" && row.selected && row.element == state.focus);
    EXPECT_EQ(nodeAt(tree, {row.rect.x + 1, row.rect.y + 1}), focusedNode(tree));
    EXPECT_EQ(siblingOf(tree, focusedNode(tree), true), -1);
    EXPECT_EQ(childOf(tree, row.parent, true), focusedNode(tree) - 1);
    EXPECT_EQ(tree.nodes.back().name, L"[OK] one");
    appendLine(state.log, L"two");
    EXPECT_EQ(buildAccessibleTree(source, &tree).nodes.back().name, L"two") << "only the news";
}

TEST(WindowPlace, LiesInTheWorkAreaAtEverySize) {
    const struct {
        unsigned dpi;
        RectPx work, place;
    } cases[] = {
        {96, {0, 0, 1920, 1040}, {440, 80, 1480, 960}},
        {144, {0, 0, 3840, 2100}, {1140, 390, 2700, 1710}},
        {96, {0, 0, 1366, 728}, {163, 0, 1203, 728}},
        {120, {0, 50, 1920, 1080}, {310, 50, 1610, 1080}},
        {144, {0, 0, 1920, 1020}, {180, 0, 1740, 1020}},
        {96, {0, 0, 800, 600}, {0, 0, 880, 640}},
        {96, {1367, 41, 2733, 768}, {1530, 41, 2570, 768}},
    };
    const auto expectPlace = [](const RectPx& place, const RectPx& expected) {
        EXPECT_TRUE(place.left == expected.left && place.top == expected.top &&
                    place.right == expected.right && place.bottom == expected.bottom)
            << place.left << "," << place.top << "," << place.right << "," << place.bottom;
    };
    for (const auto& [dpi, work, place] : cases)
        expectPlace(firstPlace(dpi, work), place);
    // The centre stays, unless the title bar would leave the screen.
    expectPlace(placeAround({100, 100, 1140, 980}, 144, {0, 0, 3840, 2100}), {0, 0, 1560, 1320});
    expectPlace(placeAround({1000, 800, 2040, 1680}, 144, {0, 0, 3840, 2100}),
                {740, 580, 2300, 1900});
}
