// What keeps the program going when an action cannot.
#pragma once

#include <functional>

#include "base/action_host.h"

/// Runs an action. Memory that it does not get ends the action with one line in the report.
void runGuarded(const ActionHost& host, const std::function<void()>& action) noexcept;
