#include "diagnosis/capture_action.h"

#include <algorithm>
#include <exception>

#include "base/text.h"
#include "diagnosis/match.h"

namespace {

constexpr unsigned kProbeTimeoutMs = 800;

void LogDiagnosis(const ActionHost& host, const Diagnosis& diagnosis, const SuspectFrame& suspect) {
    if (diagnosis.matched) {
        host.appendLog(L"[" + diagnosis.rule->title + L"] (severity: " + diagnosis.rule->severity +
                       L")");
        host.appendLog(diagnosis.rule->advice);
        return;
    }
    std::wstring title = L"[" + diagnosis.title + L"]";
    if (!suspect.module.empty()) title += L"  Suspect module: " + suspect.module;
    host.appendLog(std::move(title));
    host.appendLog(diagnosis.advice);
    host.appendLog(
        L"  (No signature matched - you may click 'Submit Unknown' to feed the community database "
        L"anonymously.)");
}

void LogTopFrames(const ActionHost& host, const std::vector<StackFrame>& frames) {
    host.appendLog(L"--- Top 8 frames ---");
    const std::size_t shown = std::min(frames.size(), kShownFrames);
    for (std::size_t i = 0; i < shown; ++i) {
        const StackFrame& frame = frames[i];
        const std::wstring module = frame.moduleName.empty() ? L"?" : frame.moduleName;
        const std::wstring function = frame.function.empty() ? L"(no symbol)" : frame.function;
        host.appendLog(L"  " + module + L"!" + function);
    }
    host.appendLog(L"");
}

// Whatever becomes of the evidence, the diagnosis has been told.
std::vector<std::wstring> FindEvidence(const CaptureSensors& sensors, const CapturedHang& hang,
                                       const HangPlace& earlier) noexcept try {
    return EvidenceLines(GatherEvidence(sensors.evidence, hang, earlier),
                         {sensors.systemFiles, sensors.evidence.fileFacts});
} catch (const std::exception&) {
    return {};
}

void LogEvidence(const ActionHost& host, const std::vector<std::wstring>& lines) {
    if (lines.empty()) return;
    host.appendLog(L"===== Evidence =====");
    for (const std::wstring& line : lines)
        host.appendLog(line);
    host.appendLog(L"");
}

// The probe and, unless the target answered it, the capture.
struct Attempt {
    ThreadSpan probe;
    bool isResponsive = false;
    CaptureResult capture;
};

Attempt ProbeAndCapture(const CdrInstance& target, const CaptureSensors& sensors) {
    Attempt attempt;
    attempt.probe.from = sensors.evidence.moment(target.mainThreadId);
    attempt.isResponsive = sensors.isResponsive(target.mainWindow, kProbeTimeoutMs);
    attempt.probe.to = sensors.evidence.moment(target.mainThreadId);
    if (attempt.isResponsive) return attempt;
    attempt.capture = sensors.captureStack(target.pid, target.mainThreadId);
    return attempt;
}

HangPlace PlaceOf(const CdrInstance& target, const Attempt& attempt, const SuspectFrame& suspect,
                  const HangPlace& earlier) {
    const std::uint64_t nowUs = attempt.probe.to.atUs;
    HangPlace place{target.pid, target.mainThreadId,
                    FramesToSuspect(attempt.capture.frames, suspect), nowUs, nowUs};
    if (IsSamePlace(place, earlier)) place.sinceUs = earlier.sinceUs;
    return place;
}

}  // namespace

void OnCaptureNow(const ActionHost& host, const CdrInstance* selected,
                  const SignatureRuleBase& rules, const CaptureSensors& sensors,
                  LastCapture& last) {
    if (selected == nullptr) {
        host.appendLog(L"[Capture] Please select a CDR instance first.");
        return;
    }
    host.appendLog(L"[Capture] Target: PID " + decimalUnsigned(selected->pid) + L"  Version " +
                   ShownVersion(*selected));
    const Attempt attempt = ProbeAndCapture(*selected, sensors);
    if (attempt.isResponsive) {
        host.appendLog(
            L"[Capture] CDR main thread is responsive right now. Click 'Capture Now' again while "
            L"it hangs.");
        return;
    }
    if (!attempt.capture.ok) {
        host.appendLog(L"[Capture] Failed: " + attempt.capture.error);
        return;
    }
    const std::vector<StackFrame>& frames = attempt.capture.frames;
    const SuspectFrame suspect = FindSuspect(frames, sensors.systemFiles);
    const Diagnosis diagnosis = MatchRules(rules, suspect, frames);
    const HangPlace earlier = last.place;
    last = {frames, suspect.category, selected->version,
            PlaceOf(*selected, attempt, suspect, earlier)};

    host.appendLog(L"===== Diagnosis =====");
    LogDiagnosis(host, diagnosis, suspect);
    LogTopFrames(host, frames);
    LogEvidence(host, FindEvidence(sensors, {last.place, attempt.capture, suspect, attempt.probe},
                                   earlier));
}
