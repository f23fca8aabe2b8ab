// Capture Now: probe, capture, blame, explain.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "base/action_host.h"
#include "cdr/cdr_instance.h"
#include "diagnosis/classify.h"
#include "diagnosis/gather_evidence.h"
#include "diagnosis/rules.h"
#include "diagnosis/stack_frame.h"

/// The last successful capture, kept for an anonymous submission.
struct LastCapture {
    /// Empty before the first capture.
    std::vector<StackFrame> frames;
    FrameCategory category = FrameCategory::unknown;
    /// The captured instance's version; may be empty.
    std::wstring version;
    /// Never submitted: what the next capture of the same thread is compared with.
    HangPlace place{};
};

/// How the action senses the target; the first three are always set.
struct CaptureSensors {
    std::function<bool(WindowHandle window, unsigned timeoutMs)> isResponsive;
    std::function<CaptureResult(std::uint32_t pid, std::uint32_t threadId)> captureStack;
    SystemFiles systemFiles;
    EvidenceSensors evidence{};
};

/// Captures and explains a hang of `selected` (null: none selected) and writes the report. `last`
/// is replaced by a successful capture only. Blocks for the probe's 800 ms, the capture, and at
/// most 2 s for the evidence behind it, or 3 s when a file server does not answer.
void OnCaptureNow(const ActionHost& host, const CdrInstance* selected,
                  const SignatureRuleBase& rules, const CaptureSensors& sensors, LastCapture& last);
