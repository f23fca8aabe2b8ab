// The probe that tells a hung window from a living one.
#pragma once

#include "base/action_host.h"

/// True when the window's thread answered a null message within `timeoutMs`. False for a null or
/// vanished window. Blocks the caller for at most the time-out (`SendMessageTimeoutW`).
bool IsWindowResponsive(WindowHandle window, unsigned timeoutMs);
