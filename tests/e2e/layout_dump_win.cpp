// Prints where the real program puts its elements, measured with its own text formats: one line per
// element, "kind id x y width height textWidth textHeight selected label", in UTF-8. The end-to-end
// tests click by it.
//
//   mirelo_layout WIDTH_DIP HEIGHT_DIP TAB INSTANCES LANGUAGE
#include <cstdio>
#include <cstdlib>

#include "app/layout.h"
#include "app/render_win.h"
#include "app/strings.h"
#include "base/text.h"

namespace {

void print(const char* kind, std::uint32_t id, const RectDip& rect, TextSize text, bool selected,
           const std::wstring& label) {
    std::printf("%s %u %.2f %.2f %.2f %.2f %.2f %.2f %d %s\n", kind, id, rect.x, rect.y, rect.width,
                rect.height, text.widthDip, text.heightDip, selected ? 1 : 0,
                utf8FromWide(label).c_str());
}

const char* kindName(HitKind kind) {
    constexpr const char* kNames[] = {"title",  "subtitle",      "heading", "label",    "hint",
                                      "button", "primaryButton", "tab",     "instance", "language"};
    return kNames[static_cast<std::size_t>(kind)];
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 6) return 2;
    Renderer renderer;
    renderer.createFormats();
    const MeasureText measure = [&](const std::wstring& text, TextStyle style, float width) {
        return renderer.measure(text, style, width);
    };
    LayoutInput input;
    input.clientWidthDip = std::strtof(argv[1], nullptr);
    input.clientHeightDip = std::strtof(argv[2], nullptr);
    input.currentTab = std::atoi(argv[3]);
    input.instanceRows.assign(static_cast<std::size_t>(std::atoi(argv[4])), L"PID 0");
    setLanguage(std::atoi(argv[5]));

    const Layout layout = buildLayout(input, measure);
    for (const Card& card : layout.cards) {
        print("card", 0, card.rect, measure(card.title, TextStyle::cardTitle, input.clientWidthDip),
              false, card.title);
    }
    for (const HitTarget& target : layout.hitTargets) {
        const float room = target.kind == HitKind::hint ? target.width : input.clientWidthDip;
        print(kindName(target.kind), target.id, target.rect(),
              measure(target.label, target.style, room), target.selected, target.label);
    }
    print("panel", 0, layout.logPanel, {}, false, L"");
    print("status", 0, layout.status, {}, false, L"");
    print("newest", 0, layout.newestLine, {}, false, L"");
    return 0;
}
