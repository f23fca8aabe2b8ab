#include "fixes/settings/settings_win.h"

#include "fixes/cleanup/cleanup_win.h"
#include "fixes/settings/registry_win.h"
#include "fixes/settings/settings_change.h"

void OnOptimizeSettings(const ActionHost& host) {
    const BackupsLock lock;
    if (!lock.isHeld(host, L"[Settings]")) return;
    UserFolders user;
    WindowsRegistry registry;
    OptimizeSettings(host, {registry, user.context()});
}
