#include "diagnosis/capture_action.h"

#include <algorithm>

#include "base/text.h"
#include "diagnosis/match.h"

namespace {

constexpr unsigned kProbeTimeoutMs = 800;
constexpr std::size_t kShownFrames = 8;

void LogDiagnosis(const Shell& shell, const Diagnosis& diagnosis, const SuspectFrame& suspect) {
    if (diagnosis.matched) {
        shell.appendLog(L"[" + diagnosis.rule->title + L"] (severity: " + diagnosis.rule->severity +
                        L")");
        shell.appendLog(diagnosis.rule->advice);
        return;
    }
    std::wstring title = L"[" + diagnosis.title + L"]";
    if (!suspect.module.empty()) title += L"  Suspect module: " + suspect.module;
    shell.appendLog(std::move(title));
    shell.appendLog(diagnosis.advice);
    shell.appendLog(
        L"  (No signature matched - you may click 'Submit Unknown' to feed the community database "
        L"anonymously.)");
}

void LogTopFrames(const Shell& shell, const std::vector<StackFrame>& frames) {
    shell.appendLog(L"--- Top 8 frames ---");
    const std::size_t shown = std::min(frames.size(), kShownFrames);
    for (std::size_t i = 0; i < shown; ++i) {
        const StackFrame& frame = frames[i];
        const std::wstring module = frame.moduleName.empty() ? L"?" : frame.moduleName;
        const std::wstring function = frame.function.empty() ? L"(no symbol)" : frame.function;
        shell.appendLog(L"  " + module + L"!" + function);
    }
    shell.appendLog(L"");
}

}  // namespace

void OnCaptureNow(const Shell& shell, const CdrInstance* selected, const SignatureRuleBase& rules,
                  const CaptureSensors& sensors, LastCapture& last) {
    if (selected == nullptr) {
        shell.appendLog(L"[Capture] Please select a CDR instance first.");
        return;
    }
    shell.appendLog(L"[Capture] Target: PID " + decimalUnsigned(selected->pid) + L"  Version " +
                    ShownVersion(*selected));
    if (sensors.isResponsive(selected->mainWindow, kProbeTimeoutMs)) {
        shell.appendLog(
            L"[Capture] CDR main thread is responsive right now. Click 'Capture Now' again while "
            L"it hangs.");
        return;
    }
    CaptureResult capture = sensors.captureStack(selected->pid, selected->mainThreadId);
    if (!capture.ok) {
        shell.appendLog(L"[Capture] Failed: " + capture.error);
        return;
    }
    const SuspectFrame suspect = FindSuspect(capture.frames, sensors.systemFiles);
    const Diagnosis diagnosis = MatchRules(rules, suspect, capture.frames);
    last = {std::move(capture.frames), suspect.category, selected->version};

    shell.appendLog(L"===== Diagnosis =====");
    LogDiagnosis(shell, diagnosis, suspect);
    LogTopFrames(shell, last.frames);
}
