// The keyboard and the mouse as Windows tells of them.
#pragma once

#include <windows.h>

#include <optional>

#include "app/keyboard.h"

/// What a virtual key means to the focus; nothing for other keys.
std::optional<Key> keyOf(WPARAM key);

/// True for the keys that set an action off.
bool acts(WPARAM key);

/// Brings the message box that this thread shows to the front. It has no owner, so it may lie
/// behind the window that asks, which then looks dead. False when there is none.
bool bringQuestionToFront();

/// Takes the clicks and the acting keys out of the window's queue that came since `start`, in
/// ticks: all that was done in impatience would act now, one after the other.
void dropInputSince(HWND hwnd, DWORD start);
