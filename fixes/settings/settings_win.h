// The button of the settings card, on this user's registry.
#pragma once

#include "base/action_host.h"

/// Sets CorelDRAW's undo levels to 30 and its welcome screen off. Works alone, like the cleanup.
void OnOptimizeSettings(const ActionHost& host);
