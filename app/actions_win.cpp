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
#include "diagnosis/stack_capture_win.h"
#include "diagnosis/system_files_win.h"
#include "fixes/environment.h"
#include "fixes/environment_scan_win.h"
#include "fixes/printer_win.h"

namespace {

const CdrInstance* selected(const MainWindow& window) {
    return SelectedInstance(window.state.instances, window.state.selectedInstance);
}

void checkEnvironment(MainWindow& window) {
    OnEnvironmentCheck(window.shell, RunEnvironmentCheck);
}

void captureNow(MainWindow& window) {
    const CaptureSensors sensors{IsWindowResponsive, CaptureMainThreadStack, kSystemFiles};
    OnCaptureNow(window.shell, selected(window), window.rules, sensors, window.lastCapture);
}

void showDashboard(MainWindow& window) {
    OnDashboard(window.shell, selected(window), ReadMetrics);
}

void switchPrinter(MainWindow& window) {
    OnTempPrinter(window.shell, window.printerSwitch, SystemPrinters());
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
    window.actionRunning = true;
    action->run(window);
    window.actionRunning = false;
}

void refreshInstances(MainWindow& window) {
    replaceInstances(window.state, EnumerateCdrInstances());
}
