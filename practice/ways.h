// The ways in which the practice program hangs, or does not.
#pragma once

#include <string_view>

#include "practice/handshake.h"
#include "practice/windows_shown.h"

/// Called in the window procedure; returns when the handshake's hangs are over.
using HangingWork = void (*)(Handshake& handshake);

struct Way {
    const wchar_t* name;
    Face face;
    bool
        onSystemThread;  // the window's thread waits outside our code: nothing of ours on its stack
    HangingWork hang;    // null: the message loop runs on
};

/// Null when there is no such way.
const Way* FindWay(std::wstring_view name);
