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

/// Never rests, and keeps the longest time during which it was not running, in ticks of the
/// performance counter, as a LONG64 in the file mapping "Local\mirelo-practice-gap-PID"; whoever
/// measures sets it back to 0.
void WatchTheClock(Handshake& handshake);
