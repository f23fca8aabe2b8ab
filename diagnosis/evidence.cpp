#include "diagnosis/evidence.h"

#include <algorithm>
#include <iterator>
#include <map>

#include "base/text.h"

namespace {

std::uint64_t SecondsOf(std::uint64_t us) {
    constexpr std::uint64_t kSecondUs = 1'000'000;
    return std::max<std::uint64_t>(1, (us + kSecondUs / 2) / kSecondUs);
}

std::wstring StuckOrWorking(unsigned percent) {
    constexpr unsigned kWaitingBelow = 10;
    constexpr unsigned kComputingFrom = 30;
    const std::wstring figure = decimalUnsigned(percent);
    if (percent < kWaitingBelow) return L"waiting, " + figure + L" % of a core during the capture";
    return (percent < kComputingFrom ? L"computing part of the time (" : L"computing (") + figure +
           L" % of one core) during the capture";
}

std::wstring StayedOrMoved(const HangPlace& place, const HangPlace& earlier) {
    const bool isKnown =
        !earlier.frames.empty() && place.pid == earlier.pid && place.threadId == earlier.threadId;
    if (!isKnown) return {};
    if (IsSamePlace(place, earlier)) {
        return L"at the same place as " + decimalUnsigned(SecondsOf(place.seenUs - place.sinceUs)) +
               L" s ago";
    }
    return L"moving: at another place than " +
           decimalUnsigned(SecondsOf(place.seenUs - earlier.seenUs)) + L" s ago";
}

std::wstring MainThreadLine(const HangEvidence& evidence) {
    const std::wstring work =
        evidence.processorPercent ? StuckOrWorking(*evidence.processorPercent) : std::wstring();
    const std::wstring stay = StayedOrMoved(evidence.place, evidence.earlier);
    if (work.empty() && stay.empty()) return {};
    return L"Main thread: " + work + (work.empty() || stay.empty() ? L"" : L"; ") + stay + L".";
}

// A version resource may say anything at any length.
std::wstring Tidy(const std::wstring& text) {
    constexpr std::size_t kLongest = 100;
    const std::size_t from = text.find_first_not_of(L' ');
    if (from == std::wstring::npos) return {};
    const std::wstring bare = text.substr(from, text.find_last_not_of(L' ') + 1 - from);
    return bare.size() > kLongest ? bare.substr(0, kLongest) + L"..." : bare;
}

// "Holder Tools 2.1 (Example Ltd), C:\...\holder.cpg"
std::wstring DescribeFile(const FileFacts& facts, const std::wstring& path) {
    std::wstring text = Tidy(facts.description);
    const std::wstring version = Tidy(facts.productVersion);
    const std::wstring company = Tidy(facts.company);
    if (!version.empty()) text += (text.empty() ? L"version " : L" ") + version;
    if (text.empty()) text = L"a file without a description";
    if (!company.empty()) text += L" (" + company + L")";
    return text + L", " + path;
}

std::wstring FileNameOf(const StackFrame& frame) {
    if (!frame.imagePath.empty()) {
        return frame.imagePath.substr(frame.imagePath.find_last_of(L"\\/") + 1);
    }
    return frame.moduleName.empty() ? L"?" : frame.moduleName;
}

std::wstring FunctionOf(const StackFrame& frame) {
    return FileNameOf(frame) + L"!" +
           (frame.function.empty() ? L"(no symbol)" : frame.function.c_str());
}

bool IsOfNoFile(const StackFrame& frame) {
    return frame.moduleName.empty() && frame.imagePath.empty();
}

// Asks about each file once: many threads stand in the same few.
class Files {
  public:
    explicit Files(const EvidenceFiles& files) : files_(files) {}

    [[nodiscard]] SuspectFrame suspectOf(const std::vector<StackFrame>& frames) {
        return FindSuspect(frames,
                           {files_.system.isInSystemDirectory,
                            [this](const std::wstring& path) { return isMicrosoft(path); }});
    }

    // ": " and what is known of the frame's file; empty for a part of Windows.
    [[nodiscard]] std::wstring behind(const StackFrame& frame) {
        const std::wstring& path = frame.imagePath;
        if (path.empty() || (files_.system.isInSystemDirectory(path) && isMicrosoft(path)))
            return {};
        return L": " + DescribeFile(files_.facts(path), path);
    }

  private:
    bool isMicrosoft(const std::wstring& path) {
        const auto [known, isNew] = microsoft_.try_emplace(path);
        if (isNew) known->second = files_.system.isMicrosoftFile(path);
        return known->second;
    }

    const EvidenceFiles& files_;
    std::map<std::wstring, bool> microsoft_;
};

std::size_t IndexOf(const std::vector<StackFrame>& frames, const StackFrame& suspect) {
    const auto found = std::find_if(frames.begin(), frames.end(), [&](const StackFrame& frame) {
        return frame.address == suspect.address && frame.moduleName == suspect.moduleName &&
               frame.function == suspect.function;
    });
    return static_cast<std::size_t>(found - frames.begin());
}

std::wstring SuspectLine(const HangEvidence& evidence, Files& files) {
    const StackFrame& frame = evidence.suspect.frame;
    if (evidence.suspect.category >= FrameCategory::systemOnly || IsOfNoFile(frame)) return {};
    const std::size_t index = IndexOf(evidence.frames, frame);
    const std::wstring file = files.behind(frame);
    if (file.empty() && index < kShownFrames) return {};
    return L"Suspect: " + FileNameOf(frame) + L", frame " + decimalUnsigned(index + 1) +
           (file.empty() ? L"." : file);
}

std::wstring GeneratedCodeLine(const HangEvidence& evidence) {
    if (!evidence.generatedFrame) return {};
    const auto behind =
        evidence.frames.begin() + static_cast<std::ptrdiff_t>(*evidence.generatedFrame);
    if (!std::all_of(behind, evidence.frames.end(), IsOfNoFile)) return {};
    const std::size_t above = *evidence.generatedFrame;
    const std::wstring place =
        above == 0 ? L"at its top" : L"behind frame " + decimalUnsigned(above);
    return L"The stack ends " + place +
           L", in generated code (a macro, a script or .NET): what called it cannot be seen.";
}

// The lower the sooner shown; what is not worth a line is negative.
int RankOf(const SuspectFrame& suspect, bool isNamed) {
    if (isNamed) return 0;
    if (IsOfNoFile(suspect.frame)) return -1;
    switch (suspect.category) {
        case FrameCategory::plugin:
            return 1;
        case FrameCategory::print:
            return 2;
        case FrameCategory::font:
            return 3;
        case FrameCategory::thirdParty:
            return 4;
        default:
            return -1;
    }
}

std::vector<std::wstring> ThreadLines(const HangEvidence& evidence, Files& files) {
    const std::vector<std::uint32_t> named = ThreadsNamed(evidence.waits, evidence.pid);
    struct Shown {
        int rank;
        std::uint32_t threadId;
        StackFrame frame;
    };
    std::vector<Shown> shown;
    for (const ThreadStack& thread : evidence.otherThreads) {
        if (thread.frames.empty()) continue;
        const SuspectFrame suspect = files.suspectOf(thread.frames);
        const bool isNamed = std::find(named.begin(), named.end(), thread.threadId) != named.end();
        const int rank = RankOf(suspect, isNamed);
        // One of a pool of threads in the same function stands for all of them.
        const bool isRepeated = std::any_of(shown.begin(), shown.end(), [&](const Shown& other) {
            return FunctionOf(other.frame) == FunctionOf(suspect.frame);
        });
        if (rank < 0 || (isRepeated && !isNamed)) continue;
        shown.push_back({rank, thread.threadId, suspect.frame});
    }
    std::stable_sort(shown.begin(), shown.end(),
                     [](const Shown& left, const Shown& right) { return left.rank < right.rank; });
    shown.resize(std::min(shown.size(), kMostThreadLines));

    std::vector<std::wstring> lines;
    for (const Shown& thread : shown) {
        const std::wstring file = files.behind(thread.frame);
        lines.push_back(L"Thread " + decimalUnsigned(thread.threadId) + L" is in " +
                        FunctionOf(thread.frame) + (file.empty() ? L"." : file));
    }
    return lines;
}

}  // namespace

std::optional<unsigned> ProcessorPercent(const std::vector<ThreadSpan>& spans) {
    std::uint64_t usedUs = 0;
    std::uint64_t elapsedUs = 0;
    for (const ThreadSpan& span : spans) {
        if (!span.from.usedUs || !span.to.usedUs) return std::nullopt;
        // Both clocks tick on their own, and neither is promised to run forward.
        usedUs += *span.to.usedUs - std::min(*span.from.usedUs, *span.to.usedUs);
        elapsedUs += span.to.atUs - std::min(span.from.atUs, span.to.atUs);
    }
    if (elapsedUs == 0) return std::nullopt;
    return static_cast<unsigned>(
        std::min<std::uint64_t>(100, (usedUs * 100 + elapsedUs / 2) / elapsedUs));
}

std::vector<StackFrame> FramesToSuspect(const std::vector<StackFrame>& frames,
                                        const SuspectFrame& suspect) {
    if (suspect.category >= FrameCategory::systemOnly) return frames;
    const std::size_t count = std::min(frames.size(), IndexOf(frames, suspect.frame) + 1);
    return {frames.begin(), frames.begin() + static_cast<std::ptrdiff_t>(count)};
}

bool IsSamePlace(const HangPlace& left, const HangPlace& right) {
    if (left.pid != right.pid || left.threadId != right.threadId) return false;
    return std::equal(left.frames.begin(), left.frames.end(), right.frames.begin(),
                      right.frames.end(), [](const StackFrame& one, const StackFrame& other) {
                          if (one.moduleName != other.moduleName) return false;
                          if (one.function != other.function) return false;
                          return !one.function.empty() || one.address == other.address;
                      });
}

std::vector<std::wstring> EvidenceLines(const HangEvidence& evidence, const EvidenceFiles& files) {
    Files known(files);
    std::vector<std::wstring> facts = {MainThreadLine(evidence), GeneratedCodeLine(evidence),
                                       SuspectLine(evidence, known)};
    for (std::wstring& wait : DescribeWaits(evidence.waits, evidence.pid))
        facts.push_back(std::move(wait));
    for (std::wstring& thread : ThreadLines(evidence, known))
        facts.push_back(std::move(thread));

    std::vector<std::wstring> lines;
    for (const std::wstring& fact : facts) {
        if (!fact.empty()) lines.push_back(L"[Evidence] " + fact);
    }
    return lines;
}
