// What the keyboard does in a window without controls: a focus that walks, acts and scrolls.
#pragma once

#include "app/window_state.h"

enum class Key {
    next,
    previous,
    left,
    right,
    up,
    down,
    pageUp,
    pageDown,
    home,
    end,
    /// As a click on the focused element.
    act,
};

/// Handles a key. True when the window must be painted anew. The focus goes through everything
/// that can be clicked in reading order, and through the report's panel last; arrows, Home and End
/// stay among the tabs, the instances or the languages, and scroll the report.
bool dispatchKey(WindowState& state, Key key, const MeasureText& measure,
                 const ClickEffects& effects);
