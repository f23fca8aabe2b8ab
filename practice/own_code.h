// Hanging in the program itself, without a library.
#pragma once

#include "practice/handshake.h"

/// Waits in its own function.
void RebuildDrawing(Handshake& handshake);

/// Computes in its own function.
void SortObjects(Handshake& handshake);

/// Waits in code that was made at run time and that no unwind data describes.
void RunMacro(Handshake& handshake);

/// Waits below more calls than any capture keeps.
void OpenNestedGroups(Handshake& handshake);

/// Sends a message to a window whose thread does not look at it, and answers nobody meanwhile.
void AskSilentWindow(Handshake& handshake);

/// In the file mapping "Local\mirelo-practice-gap-PID".
struct ClockWatch {
    /// The longest time between two looks, in ticks of the performance counter; whoever measures
    /// sets it back to 0.
    LONG64 longestGapTicks;
    LONG64 looks;
};

/// Does nothing but look at the clock, so that it knows for how long it was not let.
void WatchTheClock(Handshake& handshake);
