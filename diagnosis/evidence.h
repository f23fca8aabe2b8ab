// What stands behind a diagnosis: is the main thread stuck or working, who holds what it waits for,
// and which file to look at. Records of what was sensed, and the lines that are judged from them.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "diagnosis/classify.h"
#include "diagnosis/stack_frame.h"
#include "diagnosis/wait_chain.h"

/// A reading of one thread's processor time.
struct ThreadMoment {
    /// Counted on any clock that all readings share.
    std::uint64_t atUs = 0;
    /// Spent by the thread so far, in the system and outside; nothing when it could not be read.
    std::optional<std::uint64_t> usedUs;
};

/// Two readings of the same thread.
struct ThreadSpan {
    ThreadMoment from;
    ThreadMoment to;
};

/// The share of one core that the thread took in all spans together, 0 to 100; nothing when a
/// reading failed or no time passed.
std::optional<unsigned> ProcessorPercent(const std::vector<ThreadSpan>& spans);

/// Where a main thread was found, to be compared by the next capture of the same thread.
struct HangPlace {
    std::uint32_t pid = 0;
    std::uint32_t threadId = 0;
    /// From the top of the stack to the suspect.
    std::vector<StackFrame> frames;
    /// When it was first found here, and when it was found last.
    std::uint64_t sinceUs = 0;
    std::uint64_t seenUs = 0;
};

/// The frames that tell one place from another: down to the suspect, or all of them when only
/// system code was found.
std::vector<StackFrame> FramesToSuspect(const std::vector<StackFrame>& frames,
                                        const SuspectFrame& suspect);

/// True when both places belong to the same thread and are made of the same functions; of a frame
/// without a known function, the address counts.
bool IsSamePlace(const HangPlace& left, const HangPlace& right);

/// What a file's version resource says of it; texts are empty where it says nothing.
struct FileFacts {
    std::wstring description;
    std::wstring productVersion;
    std::wstring company;
};

/// What the judgement asks about files on disk; all functions are always set.
struct EvidenceFiles {
    SystemFiles system;
    std::function<FileFacts(const std::wstring& path)> facts;
};

/// All that is known around one capture.
struct HangEvidence {
    std::uint32_t pid = 0;
    /// The captured stack of the main thread, and its suspect.
    std::vector<StackFrame> frames;
    SuspectFrame suspect;
    std::optional<unsigned> processorPercent;
    HangPlace place;
    /// Where the capture before this one found the main thread; of any process.
    HangPlace earlier;
    /// The index of the frame in code that belongs to no file, if there is one; the number of
    /// frames when that code is what the last of them was called from.
    std::optional<std::size_t> generatedFrame;
    WaitChain waits;
    std::vector<ThreadStack> otherThreads;
};

/// The most lines about other threads.
inline constexpr std::size_t kMostThreadLines = 8;

/// The evidence, one fact a line and each beginning with "[Evidence] "; empty when there is nothing
/// to say.
std::vector<std::wstring> EvidenceLines(const HangEvidence& evidence, const EvidenceFiles& files);
