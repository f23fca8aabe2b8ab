// What the buttons do.
#pragma once

#include <cstdint>

#include "app/session.h"
#include "app/window_state.h"
#include "base/action_host.h"

/// What an action works on, and the little of the window that some need.
struct ActionSite {
    Session& session;
    const ActionHost& host;
    /// Whose report is copied and cleared.
    WindowState& view;
    /// Owns the clipboard and the file dialog.
    WindowHandle window;
};

/// Runs the action of an identifier and returns when it is done; an unknown identifier does
/// nothing.
void runAction(std::uint32_t id, const ActionSite& site);
