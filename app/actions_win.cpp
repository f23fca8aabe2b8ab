// The one table of actions, and the short steps from the window to each handler.
#include "app/actions_win.h"

#include <windows.h>

#include <shellapi.h>

#include <algorithm>

#include "app/actions.h"
#include "app/clipboard_win.h"
#include "build_settings.h"
#include "cdr/dashboard.h"
#include "cdr/instances_win.h"
#include "cdr/metrics_win.h"
#include "cdr/responsiveness_win.h"
#include "cloud/signatures.h"
#include "cloud/submission.h"
#include "diagnosis/evidence_sensors_win.h"
#include "diagnosis/stack_capture_win.h"
#include "diagnosis/system_files_win.h"
#include "fixes/cleanup/cleanup_win.h"
#include "fixes/health/environment.h"
#include "fixes/health/environment_scan_win.h"
#include "fixes/health/printer_win.h"
#include "fixes/settings/settings_win.h"
#include "slim/slim_action_win.h"

namespace {

const CdrInstance* selected(const Session& session) {
    return SelectedInstance(session.instances, session.selectedInstance);
}

void refresh(const ActionSite& site) {
    replaceInstances(site.session, EnumerateCdrInstances());
}

void checkEnvironment(const ActionSite& site) {
    OnEnvironmentCheck(site.host, RunEnvironmentCheck);
}

void captureNow(const ActionSite& site) {
    const CaptureSensors sensors{IsWindowResponsive, CaptureMainThreadStack, kSystemFiles,
                                 SystemEvidence()};
    OnCaptureNow(site.host, selected(site.session), site.session.rules, sensors,
                 site.session.lastCapture);
}

void showDashboard(const ActionSite& site) {
    OnDashboard(site.host, selected(site.session), ReadMetrics);
}

void switchPrinter(const ActionSite& site) {
    OnTempPrinter(site.host, site.session.printerSwitch, SystemPrinters());
}

void cleanUp(const ActionSite& site) {
    OnCleanup(site.host);
}

void restoreBackup(const ActionSite& site) {
    OnRestore(site.host);
}

void optimizeSettings(const ActionSite& site) {
    OnOptimizeSettings(site.host);
}

void slimFiles(const ActionSite& site) {
    onSlimFiles(site.window, site.host);
}

void updateSignatures(const ActionSite& site) {
    OnUpdateSignatures(site.host, site.session.rules, site.session.cloud);
}

void submitCapture(const ActionSite& site) {
    OnSubmit(site.host, site.session.lastCapture, site.session.cloud);
}

void toggleNetwork(const ActionSite& site) {
    OnToggleNetwork(site.host, site.session.cloud);
}

void copy(const ActionSite& site) {
    copyReport(site.view, [&](const std::wstring& text) { copyToClipboard(site.window, text); });
}

void clear(const ActionSite& site) {
    clearReport(site.view);
}

void openWebsite(const ActionSite&) {
    ShellExecuteW(nullptr, L"open", MIRELO_WEBSITE, nullptr, nullptr, SW_SHOWNORMAL);
}

struct Action {
    std::uint32_t id;
    void (*run)(const ActionSite& site);
};

constexpr Action kActions[] = {
    {kRefreshAction, refresh},
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

void runAction(std::uint32_t id, const ActionSite& site) {
    const auto* action = std::find_if(std::begin(kActions), std::end(kActions),
                                      [&](const Action& row) { return row.id == id; });
    if (action != std::end(kActions)) action->run(site);
}
