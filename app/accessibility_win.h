// The window for screen readers: UI Automation, where Windows has it.
#pragma once

#include <windows.h>

#include <memory>

#include "app/accessible_tree.h"

/// Posted when a screen reader acts on an element or wants the focus there: the element's kind and
/// identifier.
inline constexpr UINT kActOnElement = WM_APP + 2;
inline constexpr UINT kFocusElement = WM_APP + 3;

/// What WM_GETOBJECT asks for in the name of UI Automation.
inline constexpr LONG kAutomationRootId = -25;

struct AutomationShared;
struct IRawElementProviderSimple;

/// One per window, on its thread. Costs nothing until somebody asks.
class Accessibility {
  public:
    Accessibility();
    ~Accessibility();
    Accessibility(const Accessibility&) = delete;
    Accessibility& operator=(const Accessibility&) = delete;

    /// The answer to WM_GETOBJECT; 0 when it is not for us to give, or Windows has no UI
    /// Automation.
    LRESULT answer(HWND window, WPARAM wParam, LPARAM lParam);

    /// The window as an element, the caller's to release; null before somebody has asked.
    [[nodiscard]] IRawElementProviderSimple* root() const;

    /// True once somebody has asked: only then it pays to publish.
    [[nodiscard]] bool isAsked() const;

    /// The tree of the last paint; null before the first.
    [[nodiscard]] std::shared_ptr<const AccessibleTree> current() const;

    /// Makes a tree the one that is read from now on, and tells of a new focus and a new status.
    void publish(const std::shared_ptr<const AccessibleTree>& tree, float dpi);

    /// To be called when the window is destroyed: whoever still holds an element is told that it
    /// has gone.
    void close(HWND window);

  private:
    std::shared_ptr<AutomationShared> shared_;
};
