// The sensor of wait chains.
#pragma once

#include <cstdint>

#include "diagnosis/wait_chain.h"

/// Who the thread waits for, across processes, as far as Windows tells it. Empty where it does not
/// offer wait chains, refuses this one, or takes longer than `limitMs`. Suspends nothing.
WaitChain ReadWaitChain(std::uint32_t threadId, unsigned limitMs);
