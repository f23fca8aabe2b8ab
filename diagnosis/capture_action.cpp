#include "diagnosis/capture_action.h"

#include <algorithm>

#include "base/text.h"
#include "diagnosis/match.h"

namespace {

constexpr unsigned kProbeTimeoutMs = 800;
constexpr std::size_t kShownFrames = 8;

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
    if (sensors.isResponsive(selected->mainWindow, kProbeTimeoutMs)) {
        host.appendLog(
            L"[Capture] CDR main thread is responsive right now. Click 'Capture Now' again while "
            L"it hangs.");
        return;
    }
    CaptureResult capture = sensors.captureStack(selected->pid, selected->mainThreadId);
    if (!capture.ok) {
        host.appendLog(L"[Capture] Failed: " + capture.error);
        return;
    }
    const SuspectFrame suspect = FindSuspect(capture.frames, sensors.systemFiles);
    const Diagnosis diagnosis = MatchRules(rules, suspect, capture.frames);
    last = {std::move(capture.frames), suspect.category, selected->version};

    host.appendLog(L"===== Diagnosis =====");
    LogDiagnosis(host, diagnosis, suspect);
    LogTopFrames(host, last.frames);
}
