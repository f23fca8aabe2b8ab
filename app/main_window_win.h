// The one window: its state and its messages.
#pragma once

#include <windows.h>

#include <cstdint>
#include <memory>

#include "app/accessibility_win.h"
#include "app/render_win.h"
#include "app/session.h"
#include "app/window_state.h"
#include "base/action_host.h"
#include "base/handle_win.h"

/// Posted by the start-up download when it has stored newer signatures.
inline constexpr UINT kSignaturesUpdated = WM_APP + 1;

/// Everything lives on the user-interface thread.
struct MainWindow {
    HWND hwnd = nullptr;
    UINT dpi = 96;
    float dpiScale = 96;
    float clientWidthDip = 0;
    float clientHeightDip = 0;
    WindowState state;
    Session session;
    /// Set once the window has been painted; null when nothing waits for that.
    std::shared_ptr<KernelHandle> painted;
    /// What the handlers see of this window.
    ActionHost host;
    Renderer renderer;
    Accessibility accessibility;
    /// An action runs; its message boxes have no owner, so clicks still arrive meanwhile.
    bool actionRunning = false;
    /// The last paint lost its target.
    bool targetLost = false;
    /// What the mouse pressed last, and the message's time.
    ElementId lastPressed;
    LONG lastPressTime = 0;
};

/// Registers the window class and creates the window. `window` must outlive the message loop. Null
/// when Windows refuses.
HWND createMainWindow(HINSTANCE module, MainWindow& window);

/// Runs the action of an identifier as a click on its button does; nothing while another one runs.
void pressButton(MainWindow& window, std::uint32_t id);
