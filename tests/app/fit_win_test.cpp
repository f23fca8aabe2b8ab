// Every displayed text of every language in its element, measured with the program's own text
// formats.
#include <gtest/gtest.h>

#include "app/actions.h"
#include "app/language.h"
#include "app/layout.h"
#include "app/render_win.h"
#include "app/strings.h"
#include "base/text.h"

namespace {

struct ClientSize {
    float width;
    float height;
};

// What Windows leaves of 1040 x 880 and of 880 x 640.
constexpr ClientSize kSizes[] = {{1024, 841}, {864, 601}};

// Air that a text keeps on each side of its element.
float sideAir(HitKind kind) {
    if (kind == HitKind::tab) return 8;
    return kind >= HitKind::button && kind != HitKind::instanceRow ? 4 : 0;
}

class Fit : public testing::TestWithParam<int> {
  protected:
    Fit() {
        renderer_.createFormats();
        setLanguage(GetParam());
    }
    ~Fit() override { setLanguage(kEnglish); }

    void expectFit(const Layout& layout, ClientSize size) {
        for (const HitTarget& target : layout.hitTargets) {
            SCOPED_TRACE(utf8FromWide(target.label));
            const bool wraps = target.kind == HitKind::hint;
            const TextSize text =
                renderer_.measure(target.label, target.style, wraps ? target.width : kUnbounded);
            EXPECT_GT(text.widthDip, 0);
            EXPECT_LE(text.widthDip, target.width - 2 * sideAir(target.kind));
            EXPECT_LE(text.heightDip, target.height + 1);
            EXPECT_LE(target.rect().right(), size.width - 20 + 0.01F);
            EXPECT_TRUE(target.rect().bottom() <= size.height || !target.isClickable());
        }
        for (const Card& card : layout.cards) {
            const bool besideButtons = layout.currentTab == kDiagnoseTab && card.rect.y < 130;
            const float room = card.titleRect.width - (besideButtons ? 108 + 6 + 88 : 0);
            EXPECT_LE(renderer_.measure(card.title, TextStyle::cardTitle, kUnbounded).widthDip,
                      room)
                << utf8FromWide(card.title);
        }
        // Six lines as this font draws them, at the default size.
        EXPECT_TRUE(layout.logPanel.height >= 6 * 20 + 14 || size.height < 800);
    }

    static constexpr float kUnbounded = 10000;
    Renderer renderer_;
};

}  // namespace

TEST_P(Fit, EveryTextFitsItsElement) {
    const MeasureText measure = [this](const std::wstring& text, TextStyle style, float width) {
        return renderer_.measure(text, style, width);
    };
    LayoutInput input;
    input.instanceRows = {L"PID 4294967295    v25.0.0.230"};
    for (const ClientSize size : kSizes) {
        input.clientWidthDip = size.width;
        input.clientHeightDip = size.height;
        for (input.currentTab = 0; input.currentTab < kTabCount; ++input.currentTab) {
            for (const bool networkEnabled : {true, false}) {
                SCOPED_TRACE(input.currentTab);
                input.networkEnabled = networkEnabled;
                expectFit(buildLayout(input, measure), size);
            }
        }
    }
    EXPECT_LE(std::wstring(tr("app_title")).size(), 110U);
}

INSTANTIATE_TEST_SUITE_P(Languages, Fit, testing::Range(0, kLanguageCount));
