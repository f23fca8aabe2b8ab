// What stands around a capture, sensed by Windows' own means.
#pragma once

#include "diagnosis/gather_evidence.h"

/// The sensors of one capture, each with its limit: 1.5 s for the other threads, less for what may
/// wait for somebody else. A file server that has not answered once is not asked again.
EvidenceSensors SystemEvidence();
