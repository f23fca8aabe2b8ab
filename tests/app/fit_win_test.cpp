// Every displayed text of every language in its element, measured with the program's own text
// formats, on the screens of the trade.
#include <gtest/gtest.h>

#include "app/language.h"
#include "app/layout.h"
#include "app/render_win.h"
#include "app/report_log.h"
#include "app/strings.h"
#include "base/text.h"

namespace {

// What Windows leaves of 1040 x 880 and 880 x 640, of a laptop's 1366 x 768, and of Full HD at
// 150 %, as it opens and maximised; and from where on two lines are promised.
constexpr struct {
    float width, height;
    int lines;
} kSizes[] = {{1024, 841, 6}, {1024, 689, 1}, {1280, 680, 2},
              {1280, 641, 0}, {1024, 641, 0}, {864, 601, 0}};

// Air that a text keeps on each side of its element.
float sideAir(HitKind kind) {
    if (kind == HitKind::tab) return 8;
    return kind >= HitKind::button && kind != HitKind::instanceRow ? 4 : 0;
}

}  // namespace

TEST(Fit, EveryTextFitsItsElementInEveryLanguage) {
    constexpr float kUnbounded = 10000;
    Renderer renderer;
    renderer.createFormats();
    const MeasureText measure = std::bind_front(&Renderer::measure, &renderer);
    for (int i = 0; i < kLanguageCount * kTabCount * 2; ++i) {
        setLanguage(i / (kTabCount * 2));
        EXPECT_LE(std::wstring(tr("app_title")).size(), 110U);
        for (const auto& [width, height, lines] : kSizes) {
            LayoutInput input{width, height, i / 2 % kTabCount, {}, 0, L"", i % 2 == 0};
            input.instanceRows = {L"PID 4294967295    v25.0.0.230"};
            const Layout layout = buildLayout(input, measure);
            SCOPED_TRACE(testing::Message() << "language " << currentLanguage() << ", tab "
                                            << layout.currentTab << ", " << width << "x" << height);
            for (const HitTarget& target : layout.hitTargets) {
                SCOPED_TRACE(utf8FromWide(target.label));
                const bool wraps = target.kind == HitKind::hint;
                const TextSize text =
                    measure(target.label, target.style, wraps ? target.width : kUnbounded);
                EXPECT_GT(text.widthDip, 0);
                EXPECT_LE(text.widthDip, target.width - 2 * sideAir(target.kind));
                EXPECT_LE(text.heightDip, target.height + 1);
                EXPECT_LE(target.rect().right(), width - 20 + 0.01F);
                EXPECT_LE(target.rect().bottom(), height);
            }
            for (const Card& card : layout.cards) {
                const bool besideButtons = layout.currentTab == kDiagnoseTab && card.rect.y < 130;
                const float room = card.titleRect.width - (besideButtons ? 108 + 6 + 88 : 0);
                EXPECT_LE(measure(card.title, TextStyle::cardTitle, kUnbounded).widthDip, room)
                    << utf8FromWide(card.title);
            }
            const float line = smallestLineHeight(measure);
            EXPECT_GE(layout.logPanel.height,
                      lines > 0 ? 14 + static_cast<float>(lines) * line : 0);
            EXPECT_TRUE(layout.logPanel.height >= 14 + 2 * line || layout.newestLine.width >= 200);
        }
    }
    setLanguage(kEnglish);
}
