#include "app/layout.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "app/accessible_tree.h"
#include "app/actions.h"
#include "app/window_place.h"
#include "tests/app/fake_measure.h"

namespace {

bool overlap(const RectDip& a, const RectDip& b) {
    return a.x < b.right() && b.x < a.right() && a.y < b.bottom() && b.y < a.bottom();
}

bool inside(const RectDip& inner, const RectDip& outer) {
    return outer.contains({inner.x, inner.y}) && outer.contains({inner.right(), inner.bottom()});
}

// Everything stands apart from each other, but for the elements that are whole in their card.
void expectNothingOverlaps(const Layout& layout) {
    std::vector<RectDip> rects = {layout.logPanel, layout.newestLine};
    for (const HitTarget& target : layout.hitTargets)
        rects.push_back(target.rect());
    const std::size_t elements = rects.size();
    for (const Card& card : layout.cards)
        rects.push_back(card.rect);
    for (std::size_t i = 0; i < rects.size(); ++i) {
        for (std::size_t k = 0; k < i; ++k) {
            const bool isElementInCard =
                k >= 2 && k < elements && i >= elements && inside(rects[k], rects[i]);
            EXPECT_TRUE(isElementInCard || !overlap(rects[i], rects[k])) << i << " over " << k;
        }
    }
}

}  // namespace

TEST(Layout, KeepsEveryPageWholeAndTheReportInSight) {
    // What Windows leaves of 1040 x 880 at first and of 880 x 640 at last.
    for (const RectDip client :
         {RectDip{0, 0, 1024, 841}, RectDip{0, 0, 1724, 1541}, RectDip{0, 0, 1280, 680},
          RectDip{0, 0, 1024, 641}, RectDip{0, 0, 864, 601}}) {
        for (const int tab : {kDiagnoseTab, kFixTab, kCloudTab, kAboutTab}) {
            for (const int instances : {0, 1, 3, 8}) {
                const Layout layout = layoutOf(tab, instances, client);
                SCOPED_TRACE(testing::Message() << client.height << " high, tab " << tab
                                                << ", instances " << instances);
                expectNothingOverlaps(layout);
                EXPECT_TRUE(inside(layout.logPanel, client) && inside(layout.newestLine, client));
                EXPECT_GE(layout.logPanel.height + layout.newestLine.height, 40);
                const bool hasTwoLines = layout.logPanel.height >= 14 + 2 * 21;
                EXPECT_TRUE(hasTwoLines || instances >= 8 || client.width < 1280);
                for (const HitTarget& target : layout.hitTargets) {
                    EXPECT_TRUE(inside(target.rect(), client) || instances >= 8 ||
                                (tab == kFixTab && client.height <= 641));
                }
            }
        }
    }
    EXPECT_EQ(layoutOf(1000, 0).currentTab, kDiagnoseTab);
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
    for (const HitTarget& target : layout.hitTargets) {
        EXPECT_EQ(std::ranges::count(tree.nodes, target.identity(), &AccessibleNode::element),
                  target.isClickable());
    }
    for (int i = 1; i < static_cast<int>(tree.nodes.size()); ++i) {
        const AccessibleNode& node = tree.at(i);
        if (!node.element || node.rect.width <= 0) continue;
        const PointDip middle{node.rect.x + node.rect.width / 2, node.rect.y + 1};
        EXPECT_EQ(nodeAt(tree, middle), i) << "something lies over " << i;
    }
    const AccessibleNode& row = tree.at(focusedNode(tree));
    EXPECT_TRUE(row.name == L"PID 1" && row.selected && row.element == state.focus);
    EXPECT_TRUE(tree.at(row.parent).role == Role::list);
    EXPECT_EQ(siblingOf(tree, focusedNode(tree), true), -1);
    EXPECT_EQ(childOf(tree, row.parent, true), focusedNode(tree) - 1);
    EXPECT_EQ(tree.nodes.back().name, L"[OK] one");
    appendLine(state.log, L"two");
    EXPECT_EQ(buildAccessibleTree(source, &tree).nodes.back().name, L"two") << "only the news";
}

TEST(WindowPlace, LiesInTheWorkAreaAtEverySize) {
    const auto expectPlace = [](const RectPx& place, const RectPx& expected) {
        EXPECT_TRUE(place.left == expected.left && place.top == expected.top &&
                    place.right == expected.right && place.bottom == expected.bottom)
            << place.left << "," << place.top << "," << place.right << "," << place.bottom;
    };
    expectPlace(firstPlace(96, {0, 0, 1920, 1040}), {440, 80, 1480, 960});
    expectPlace(firstPlace(144, {0, 50, 1920, 1020}), {180, 50, 1740, 1020});
    expectPlace(firstPlace(96, {0, 0, 800, 600}), {0, 0, 880, 640});
    // The centre stays, unless the title bar would leave the screen.
    expectPlace(placeAround({100, 100, 1140, 980}, 144, {0, 0, 3840, 2100}), {0, 0, 1560, 1320});
    expectPlace(placeAround({1000, 800, 2040, 1680}, 144, {0, 0, 3840, 2100}),
                {740, 580, 2300, 1900});
}
