// The window's content as a screen reader walks through it: pure data, made from the last layout.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "app/layout.h"
#include "app/window_state.h"

enum class Role { window, tabs, tab, group, list, choice, button, text, report, line, status };

struct AccessibleNode {
    Role role = Role::text;
    /// With the role, what makes the node the same in another tree.
    std::uint32_t number = 0;
    int parent = -1;
    /// The text on the screen.
    std::wstring name;
    /// Of no size when it is not on the screen.
    RectDip rect;
    /// What acts and takes the focus, if it does.
    std::optional<ElementId> element;
    bool selected = false;
};

/// Never changed once it is made: other threads may read it.
struct AccessibleTree {
    /// Parents before their children, siblings in reading order. The first is the window.
    std::vector<AccessibleNode> nodes;
    std::optional<ElementId> focus;
    /// What the status was made of.
    std::wstring statusText;
    std::uint64_t written = 0;

    [[nodiscard]] const AccessibleNode& at(int index) const {
        return nodes[static_cast<std::size_t>(index)];
    }
};

struct AccessibleSource {
    const Layout& layout;
    const WindowState& state;
    const std::vector<VisibleLine>& visibleLines;
    std::wstring title;
};

/// The tree of what is shown, the whole report included. The status names the report's lines that
/// came since `previous` (null: all), else the status text.
AccessibleTree buildAccessibleTree(const AccessibleSource& source, const AccessibleTree* previous);

/// Index of a node, -1 when the tree has none such.
int findNode(const AccessibleTree& tree, Role role, std::uint32_t number);

/// Index of the node that has the focus, -1 for none.
int focusedNode(const AccessibleTree& tree);

/// The first or last child of a node, and a node's next or previous sibling; -1 for none.
int childOf(const AccessibleTree& tree, int parent, bool first);
int siblingOf(const AccessibleTree& tree, int node, bool next);

/// The innermost node under a point; the window where there is no other.
int nodeAt(const AccessibleTree& tree, PointDip point);
