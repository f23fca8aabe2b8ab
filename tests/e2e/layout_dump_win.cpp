// Prints where the real program puts on each page what can be clicked, and the report's panel as
// number 0, measured with its own text formats: "tab id x y width height" in each line. The
// end-to-end tests click by it.
//
//   mirelo_layout WIDTH_DIP HEIGHT_DIP INSTANCES LANGUAGE
#include <cstdio>
#include <cstdlib>

#include "app/layout.h"
#include "app/render_win.h"
#include "app/strings.h"

int main(int argc, char** argv) {
    if (argc != 5) return 2;
    Renderer renderer;
    renderer.createFormats();
    const MeasureText measure = std::bind_front(&Renderer::measure, &renderer);
    LayoutInput input;
    input.clientWidthDip = std::strtof(argv[1], nullptr);
    input.clientHeightDip = std::strtof(argv[2], nullptr);
    input.instanceRows.assign(static_cast<std::size_t>(std::atoi(argv[3])), L"PID 0");
    setLanguage(std::atoi(argv[4]));
    for (input.currentTab = 0; input.currentTab < kTabCount; ++input.currentTab) {
        const auto print = [&](std::uint32_t id, const RectDip& rect) {
            std::printf("%d %u %.2f %.2f %.2f %.2f\n", static_cast<int>(input.currentTab), id,
                        rect.x, rect.y, rect.width, rect.height);
        };
        const Layout layout = buildLayout(input, measure);
        print(0, layout.logPanel);
        for (const HitTarget& target : layout.hitTargets)
            if (target.isClickable()) print(target.id, target.rect());
    }
    return 0;
}
