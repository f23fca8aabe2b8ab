// Processes come from a Tool Help snapshot, windows from EnumWindows. What cannot be read stays
// empty.
#include "cdr/instances_win.h"

#include <windows.h>

#include "base/handle_win.h"
#include "base/process_win.h"
#include "cdr/version_string_win.h"

namespace {

struct MainWindowSearch {
    DWORD pid;
    HWND window;
    DWORD threadId;
};

// The system shows its own copy of a window that hangs, and may hide the window itself. The
// function that tells is not in every header, nor promised for ever.
bool IsShownAsGhost(HWND window) {
    using GhostOf = HWND(WINAPI*)(HWND hungWindow);
    const auto ghostOf = reinterpret_cast<GhostOf>(reinterpret_cast<void (*)()>(
        GetProcAddress(GetModuleHandleW(L"user32.dll"), "GhostWindowFromHungWindow")));
    return ghostOf != nullptr && ghostOf(window) != nullptr;
}

BOOL CALLBACK TakeMainWindow(HWND window, LPARAM parameter) {
    auto& search = *reinterpret_cast<MainWindowSearch*>(parameter);
    DWORD pid = 0;
    const DWORD threadId = GetWindowThreadProcessId(window, &pid);
    if (pid != search.pid || threadId == 0) return TRUE;
    if (GetWindow(window, GW_OWNER) != nullptr) return TRUE;
    if (!IsWindowVisible(window) && !IsShownAsGhost(window)) return TRUE;
    search.window = window;
    search.threadId = threadId;
    return FALSE;
}

void ReadExecutable(CdrInstance& instance) {
    const KernelHandle process(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, instance.pid));
    if (!process) return;
    wchar_t path[MAX_PATH] = {};
    DWORD length = MAX_PATH;
    if (!QueryFullProcessImageNameW(process.get(), 0, path, &length)) return;
    instance.exePath.assign(path, length);
    instance.version = ReadVersionString(instance.exePath, L"ProductVersion");
}

}  // namespace

std::vector<CdrInstance> EnumerateCdrInstances() {
    std::vector<CdrInstance> instances;
    for (const DWORD pid : processesNamed(L"CorelDRW.exe")) {
        CdrInstance instance;
        instance.pid = pid;
        ReadExecutable(instance);

        MainWindowSearch search{instance.pid, nullptr, 0};
        EnumWindows(TakeMainWindow, reinterpret_cast<LPARAM>(&search));
        if (search.threadId == 0) continue;
        instance.mainWindow = search.window;
        instance.mainThreadId = search.threadId;
        instances.push_back(std::move(instance));
    }
    return instances;
}
