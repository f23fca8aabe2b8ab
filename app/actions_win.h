// What the buttons do.
#pragma once

#include <cstdint>

struct MainWindow;

/// Runs the action of an identifier and returns when it is done; an unknown identifier does
/// nothing, and so does every identifier while an action runs.
void runAction(MainWindow& window, std::uint32_t id);

/// Replaces the list of instances by those that run now.
void refreshInstances(MainWindow& window);
