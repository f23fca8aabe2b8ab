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
float sideAir(const HitTarget& target) {
    switch (target.kind) {
        case HitKind::button:
        case HitKind::primaryButton:
        case HitKind::languageChoice:
            return 4;
        case HitKind::tab:
            return 8;
        default:
            return 0;
    }
}

class Fit : public testing::TestWithParam<int> {
  protected:
    Fit() {
        renderer_.createFormats();
        setLanguage(GetParam());
    }
    ~Fit() override { setLanguage(kEnglish); }

    [[nodiscard]] TextSize measure(const std::wstring& text, TextStyle style, float width) const {
        return renderer_.measure(text, style, width);
    }

    Renderer renderer_;
};

}  // namespace

TEST_P(Fit, EveryTextFitsItsElement) {
    const MeasureText measureText = [this](const std::wstring& text, TextStyle style, float width) {
        return measure(text, style, width);
    };
    for (const ClientSize size : kSizes) {
        for (int tab = 0; tab < kTabCount; ++tab) {
            for (const bool networkEnabled : {true, false}) {
                LayoutInput input;
                input.clientWidthDip = size.width;
                input.clientHeightDip = size.height;
                input.currentTab = tab;
                input.instanceRows = {L"PID 4294967295    v25.0.0.230"};
                input.networkEnabled = networkEnabled;
                const Layout layout = buildLayout(input, measureText);
                for (const HitTarget& target : layout.hitTargets) {
                    const bool wraps = target.kind == HitKind::hint;
                    const TextSize text =
                        measure(target.label, target.style, wraps ? target.width : 10000);
                    SCOPED_TRACE(utf8FromWide(target.label));
                    EXPECT_GT(text.widthDip, 0);
                    EXPECT_LE(text.widthDip, target.width - 2 * sideAir(target));
                    EXPECT_LE(text.heightDip, target.height + 1);
                    EXPECT_LE(target.rect().right(), size.width - 20 + 0.01F);
                    if (target.isClickable()) {
                        EXPECT_LE(target.rect().bottom(), size.height);
                    }
                }
                for (const Card& card : layout.cards) {
                    SCOPED_TRACE(utf8FromWide(card.title));
                    const float room = tab == kDiagnoseTab && card.rect.y < 130
                                           ? card.titleRect.width - 108 - 6 - 88
                                           : card.titleRect.width;
                    EXPECT_LE(measure(card.title, TextStyle::cardTitle, 10000).widthDip, room);
                }
                if (size.height > 800) {
                    EXPECT_GE(layout.logPanel.height, 6 * 20 + 14) << "tab " << tab;
                }
            }
        }
    }
    EXPECT_LE(std::wstring(tr("app_title")).size(), 110U);
}

INSTANTIATE_TEST_SUITE_P(Languages, Fit, testing::Range(0, kLanguageCount));
