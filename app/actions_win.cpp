// The one table of actions, and the short steps from the window to each handler.
#include "app/actions_win.h"

#include <windows.h>

#include <shellapi.h>

#include <algorithm>

#include "app/actions.h"
#include "app/clipboard_win.h"
#include "app/main_window_win.h"
#include "build_settings.h"
#include "cdr/dashboard.h"
#include "cdr/instances_win.h"
#include "cdr/metrics_win.h"
#include "cdr/responsiveness_win.h"
#include "cloud/signatures.h"
#include "cloud/submission.h"
#include "diagnosis/stack_capture_win.h"
#include "diagnosis/system_files_win.h"
#include "fixes/cleanup/cleanup_win.h"
#include "fixes/health/environment.h"
#include "fixes/health/environment_scan_win.h"
#include "fixes/health/printer_win.h"
#include "fixes/settings/settings_win.h"
#include "slim/slim_action_win.h"

namespace {

const CdrInstance* selected(const MainWindow& window) {
    return SelectedInstance(window.state.instances, window.state.selectedInstance);
}

void checkEnvironment(MainWindow& window) {
    OnEnvironmentCheck(window.host, RunEnvironmentCheck);
}

void captureNow(MainWindow& window) {
    const CaptureSensors sensors{IsWindowResponsive, CaptureMainThreadStack, kSystemFiles};
    OnCaptureNow(window.host, selected(window), window.rules, sensors, window.lastCapture);
}

void showDashboard(MainWindow& window) {
    OnDashboard(window.host, selected(window), ReadMetrics);
}

void switchPrinter(MainWindow& window) {
    OnTempPrinter(window.host, window.printerSwitch, SystemPrinters());
}

void cleanUp(MainWindow& window) {
    OnCleanup(window.host);
}

void restoreBackup(MainWindow& window) {
    OnRestore(window.host);
}

void optimizeSettings(MainWindow& window) {
    OnOptimizeSettings(window.host);
}

void slimFiles(MainWindow& window) {
    onSlimFiles(window.hwnd, window.host);
}

void updateSignatures(MainWindow& window) {
    OnUpdateSignatures(window.host, window.rules, window.cloud);
}

void submitCapture(MainWindow& window) {
    OnSubmit(window.host, window.lastCapture, window.cloud);
}

void toggleNetwork(MainWindow& window) {
    OnToggleNetwork(window.host, window.cloud);
}

void copy(MainWindow& window) {
    copyReport(window.state, [&](const std::wstring& text) { copyToClipboard(window.hwnd, text); });
}

void clear(MainWindow& window) {
    clearReport(window.state);
}

void openWebsite(MainWindow&) {
    ShellExecuteW(nullptr, L"open", MIRELO_WEBSITE, nullptr, nullptr, SW_SHOWNORMAL);
}

// Marks that an action runs, for as long as it lives.
class RunningAction {
  public:
    explicit RunningAction(bool& flag) : flag_(flag) { flag_ = true; }
    RunningAction(const RunningAction&) = delete;
    RunningAction& operator=(const RunningAction&) = delete;
    ~RunningAction() { flag_ = false; }

  private:
    bool& flag_;
};

struct Action {
    std::uint32_t id;
    void (*run)(MainWindow& window);
};

constexpr Action kActions[] = {
    {kRefreshAction, refreshInstances},
    {kScanAction, checkEnvironment},
    {kCaptureAction, captureNow},
    {kDashboardAction, showDashboard},
    {kPrinterAction, switchPrinter},
    {kCleanupAction, cleanUp},
    {kRestoreAction, restoreBackup},
    {kSettingsAction, optimizeSettings},
    {kSlimAction, slimFiles},
    {kUpdateAction, updateSignatures},
    {kSubmitAction, submitCapture},
    {kNetworkAction, toggleNetwork},
    {kCopyAction, copy},
    {kClearAction, clear},
    {kWebsiteAction, openWebsite},
};

}  // namespace

void runAction(MainWindow& window, std::uint32_t id) {
    if (window.actionRunning) return;
    const auto* action = std::find_if(std::begin(kActions), std::end(kActions),
                                      [&](const Action& row) { return row.id == id; });
    if (action == std::end(kActions)) return;
    const RunningAction running(window.actionRunning);
    action->run(window);
}

void refreshInstances(MainWindow& window) {
    replaceInstances(window.state, EnumerateCdrInstances());
}
