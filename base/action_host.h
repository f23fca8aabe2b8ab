// What an action's handler may ask of the program around it.
#pragma once

#include <functional>
#include <string>

/// A window of any process: a handle value, never owned, valid or not.
using WindowHandle = void*;

/// The Yes/No boxes in use; the values are `MessageBoxW` styles.
enum class ConfirmStyle : unsigned {
    question = 0x24,  // MB_YESNO | MB_ICONQUESTION
    warning = 0x34,   // MB_YESNO | MB_ICONWARNING
};

/// Handed to every handler. All three are always set and run on the calling thread.
struct ActionHost {
    /// Adds one line to the report log. The only way a handler reports.
    std::function<void(std::wstring text)> appendLog;
    /// Asks in a modal box without an owner; true only for Yes.
    std::function<bool(const std::wstring& text, const std::wstring& caption, ConfirmStyle style)>
        confirm;
    /// Replaces the one-line status text.
    std::function<void(std::wstring text)> setStatus;
};
