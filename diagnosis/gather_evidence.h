// The order in which the evidence around a capture is sensed.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "diagnosis/evidence.h"

/// How the evidence is sensed; a sensor that nobody set knows nothing. None of them may fail the
/// capture: what they cannot tell is left out.
struct EvidenceSensors {
    std::function<ThreadMoment(std::uint32_t threadId)> moment = [](std::uint32_t) {
        return ThreadMoment();
    };
    /// Lets the target run on.
    std::function<void(unsigned ms)> pause = [](unsigned) {};
    /// Whether the address in the process belongs to code that was loaded from no file.
    std::function<bool(std::uint32_t pid, std::uint64_t address)> isGeneratedCode =
        [](std::uint32_t, std::uint64_t) { return false; };
    std::function<WaitChain(std::uint32_t threadId)> waitChain = [](std::uint32_t) {
        return WaitChain();
    };
    std::function<std::vector<std::uint32_t>(std::uint32_t pid)> threadsOf = [](std::uint32_t) {
        return std::vector<std::uint32_t>();
    };
    /// The stacks of these threads, as many as there is time for, in this order.
    std::function<std::vector<ThreadStack>(std::uint32_t pid,
                                           const std::vector<std::uint32_t>& threadIds)>
        captureThreads = [](std::uint32_t, const std::vector<std::uint32_t>&) {
            return std::vector<ThreadStack>();
        };
    std::function<FileFacts(const std::wstring& path)> fileFacts = [](const std::wstring&) {
        return FileFacts();
    };
};

/// One successful capture of a hanging main thread.
struct CapturedHang {
    HangPlace place;
    CaptureResult stack;
    SuspectFrame suspect;
    /// While it was probed.
    ThreadSpan probe;
};

/// The most threads, beside the main one, whose stacks are looked at.
inline constexpr std::size_t kMostThreads = 64;

/// Senses what stands behind the capture. `earlier` is where the last capture found a main thread.
HangEvidence GatherEvidence(const EvidenceSensors& sensors, const CapturedHang& hang,
                            const HangPlace& earlier);
