// The sensor of the environment check.
#pragma once

#include "fixes/environment.h"

/// Reads the facts; nothing but reading, and never a failure.
EnvironmentFacts GatherEnvironmentFacts();

/// The whole scan: the facts of this machine, rated.
EnvCheckResult RunEnvironmentCheck();
