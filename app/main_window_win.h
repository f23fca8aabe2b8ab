// The one window: its state, its messages, and what its actions share.
#pragma once

#include <windows.h>

#include <memory>

#include "app/render_win.h"
#include "app/window_state.h"
#include "base/action_host.h"
#include "base/handle_win.h"
#include "cloud/services.h"
#include "diagnosis/capture_action.h"
#include "diagnosis/rules.h"
#include "fixes/health/printer_switch.h"

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
    /// Shown on the Cloud page; empty until the signatures are loaded.
    std::wstring signatureStatus;
    SignatureRuleBase rules;
    LastCapture lastCapture;
    PrinterSwitch printerSwitch;
    CloudServices cloud;
    /// Set once the window has been painted; null when nothing waits for that.
    std::shared_ptr<KernelHandle> painted;
    /// What the handlers see of this window.
    ActionHost host;
    Renderer renderer;
    /// An action runs; its message boxes have no owner, so clicks still arrive meanwhile.
    bool actionRunning = false;
};

/// Registers the window class and creates the window. `window` must outlive the message loop. Null
/// when Windows refuses.
HWND createMainWindow(HINSTANCE module, MainWindow& window);

/// Asks for a paint of the whole window.
void invalidate(const MainWindow& window);
