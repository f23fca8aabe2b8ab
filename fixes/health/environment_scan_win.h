// The sensor of the environment check.
#pragma once

#include "fixes/health/environment.h"

/// The facts of this machine, rated. Nothing but reading, and never a failure.
EnvCheckResult RunEnvironmentCheck();
