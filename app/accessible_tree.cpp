#include "app/accessible_tree.h"

#include <algorithm>
#include <utility>

namespace {

constexpr wchar_t kReportName[] = L"Report";
// More than this nobody listens to.
constexpr std::uint64_t kAnnouncedLines = 20;

class TreeBuilder {
  public:
    TreeBuilder(AccessibleTree& tree, const AccessibleSource& source)
        : tree_(tree), source_(source) {}

    void build();
    void status(const AccessibleTree* previous);

  private:
    int add(Role role, std::uint32_t number, int parent, std::wstring name) {
        tree_.nodes.push_back({role, number, parent, std::move(name), {}, std::nullopt, false});
        return static_cast<int>(tree_.nodes.size()) - 1;
    }
    AccessibleNode& node(int index) { return tree_.nodes[static_cast<std::size_t>(index)]; }

    void element(const HitTarget& target, int parent);
    void outside(bool aboveThePage);
    void card(const Card& card);
    void report();

    AccessibleTree& tree_;
    const AccessibleSource& source_;
};

Role roleOf(HitKind kind) {
    switch (kind) {
        case HitKind::button:
        case HitKind::primaryButton:
            return Role::button;
        case HitKind::tab:
            return Role::tab;
        case HitKind::instanceRow:
        case HitKind::languageChoice:
            return Role::choice;
        default:
            return Role::text;
    }
}

bool holds(const RectDip& outer, const RectDip& inner) {
    return outer.contains({inner.x, inner.y}) && outer.contains({inner.right(), inner.bottom()});
}

void TreeBuilder::element(const HitTarget& target, int parent) {
    const bool acts = target.isClickable();
    // What cannot be clicked has no identifier: its place in the tree is as good.
    const auto number = acts ? target.id : static_cast<std::uint32_t>(tree_.nodes.size());
    AccessibleNode& added = node(add(roleOf(target.kind), number, parent, target.label));
    added.rect = target.rect();
    added.selected = target.selected;
    if (acts) added.element = target.identity();
}

// What stands in no card: the brand and the tabs above the page, the report's buttons below it.
void TreeBuilder::outside(bool aboveThePage) {
    int tabs = -1;
    for (const HitTarget& target : source_.layout.hitTargets) {
        const auto& cards = source_.layout.cards;
        const bool inCard = std::any_of(cards.begin(), cards.end(), [&](const Card& card) {
            return holds(card.rect, target.rect());
        });
        if (inCard || (target.y < cards.front().rect.y) != aboveThePage) continue;
        if (target.kind != HitKind::tab) {
            element(target, 0);
            continue;
        }
        if (tabs < 0) tabs = add(Role::tabs, 0, 0, L"");
        element(target, tabs);
    }
}

void TreeBuilder::card(const Card& card) {
    const auto number = static_cast<std::uint32_t>(tree_.nodes.size());
    const int group = add(Role::group, number, 0, card.title);
    node(group).rect = card.rect;
    int list = -1;
    for (const HitTarget& target : source_.layout.hitTargets) {
        if (!holds(card.rect, target.rect())) continue;
        const bool isChoice = roleOf(target.kind) == Role::choice;
        if (isChoice && list < 0) {
            list = add(Role::list, number, group, card.title);
            node(list).rect = target.rect();
        }
        if (isChoice) node(list).rect = around(node(list).rect, target.rect());
        element(target, isChoice ? list : group);
    }
}

void TreeBuilder::report() {
    const ReportLog& log = source_.state.log;
    const int report = add(Role::report, 0, 0, kReportName);
    node(report).rect = log.panel;
    if (log.panel.width > 0) node(report).element = kReportId;
    const int first = static_cast<int>(tree_.nodes.size());
    std::uint32_t number = 0;
    for (const std::wstring& line : log.lines)
        add(Role::line, number++, report, line);
    for (const VisibleLine& line : source_.visibleLines) {
        node(first + line.index).rect = {log.panel.x, line.y, log.panel.width, line.height};
    }
}

void TreeBuilder::build() {
    add(Role::window, 0, -1, source_.title);
    outside(true);
    for (const Card& each : source_.layout.cards)
        card(each);
    outside(false);
    report();
}

void TreeBuilder::status(const AccessibleTree* previous) {
    const ReportLog& log = source_.state.log;
    tree_.written = log.written;
    tree_.statusText = source_.state.statusText;
    const std::uint64_t before = previous != nullptr ? previous->written : 0;
    const auto news = std::min<std::uint64_t>(
        {log.written - before, kAnnouncedLines, static_cast<std::uint64_t>(log.lines.size())});
    std::wstring text;
    for (std::size_t i = log.lines.size() - static_cast<std::size_t>(news); i < log.lines.size();
         ++i) {
        if (!log.lines[i].empty()) text += (text.empty() ? L"" : L"\n") + log.lines[i];
    }
    const bool sameStatus = previous != nullptr && previous->statusText == tree_.statusText;
    if (text.empty()) text = sameStatus ? previous->nodes.back().name : tree_.statusText;
    const int status = add(Role::status, 0, 0, std::move(text));
    const Layout& layout = source_.layout;
    node(status).rect = layout.status.width > 0 ? layout.status : layout.newestLine;
}

}  // namespace

AccessibleTree buildAccessibleTree(const AccessibleSource& source, const AccessibleTree* previous) {
    AccessibleTree tree;
    tree.focus = source.state.focus;
    TreeBuilder builder(tree, source);
    builder.build();
    builder.status(previous);
    return tree;
}

int findNode(const AccessibleTree& tree, Role role, std::uint32_t number) {
    const auto found = std::find_if(
        tree.nodes.begin(), tree.nodes.end(),
        [&](const AccessibleNode& node) { return node.role == role && node.number == number; });
    return found != tree.nodes.end() ? static_cast<int>(found - tree.nodes.begin()) : -1;
}

int focusedNode(const AccessibleTree& tree) {
    if (!tree.focus) return -1;
    const auto found =
        std::find_if(tree.nodes.begin(), tree.nodes.end(),
                     [&](const AccessibleNode& node) { return node.element == tree.focus; });
    return found != tree.nodes.end() ? static_cast<int>(found - tree.nodes.begin()) : -1;
}

int childOf(const AccessibleTree& tree, int parent, bool first) {
    int child = -1;
    for (int i = parent + 1; i < static_cast<int>(tree.nodes.size()); ++i) {
        if (tree.at(i).parent != parent) continue;
        child = i;
        if (first) break;
    }
    return child;
}

int siblingOf(const AccessibleTree& tree, int node, bool next) {
    const int step = next ? 1 : -1;
    for (int i = node + step; i > 0 && i < static_cast<int>(tree.nodes.size()); i += step) {
        if (tree.at(i).parent == tree.at(node).parent) return i;
    }
    return -1;
}

int nodeAt(const AccessibleTree& tree, PointDip point) {
    // Children come after their parents: the last one that holds the point is the innermost.
    for (int i = static_cast<int>(tree.nodes.size()) - 1; i > 0; --i) {
        const RectDip& rect = tree.at(i).rect;
        if (rect.width > 0 && rect.contains(point)) return i;
    }
    return 0;
}
