// One stretch of hanging: between the program that wants it over and the code, in a library or in
// the program, that keeps the thread busy. Both are built together with the same compiler.
#pragma once

#include <windows.h>

#include <atomic>

#include "base/handle_win.h"

struct Hang {
    /// Set by the hanging code once it is on the stack: who captures afterwards finds it there.
    KernelHandle inPlace{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    /// Set when the hang is over. Hanging code that waits, waits for this.
    KernelHandle over{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    /// The same for hanging code that looks instead of waiting.
    std::atomic<bool> isOver = false;

    void end() {
        isOver = true;
        SetEvent(over.get());
    }
};

/// What the libraries export: returns when the hang is over, at once if it already is.
using HangFunction = void (*)(Hang& hang);

/// In front of a library's hanging function: exported under its plain name.
#define HANG_EXPORT extern "C" __declspec(dllexport)
