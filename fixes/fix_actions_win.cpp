#include "fixes/fix_actions_win.h"

#include <windows.h>

#include <shlobj.h>

#include "base/files/file_system_win.h"
#include "base/files/tool_folder_win.h"
#include "base/handle_win.h"
#include "base/process_win.h"
#include "base/text.h"
#include "fixes/cleanup/restore.h"
#include "fixes/settings/registry_win.h"
#include "fixes/settings/settings_change.h"

namespace {

// The long form without a backslash at the end: names in a backup are spelled as the folders
// themselves spell them, and the folder for temporary files often comes in its short form.
std::wstring tidied(std::wstring path) {
    const DWORD needed = GetLongPathNameW(path.c_str(), nullptr, 0);
    std::wstring full(needed, L'\0');
    const DWORD length = needed == 0 ? 0 : GetLongPathNameW(path.c_str(), full.data(), needed);
    if (length > 0 && length < needed) path = full.substr(0, length);
    while (!path.empty() && path.back() == L'\\')
        path.pop_back();
    return path;
}

std::wstring knownFolder(int id) {
    wchar_t path[MAX_PATH] = L"";
    if (SHGetFolderPathW(nullptr, id, nullptr, SHGFP_TYPE_CURRENT, path) != S_OK) return L"";
    return tidied(path);
}

std::wstring tempFolder() {
    wchar_t path[MAX_PATH + 1] = L"";
    const DWORD length = GetTempPathW(static_cast<DWORD>(std::size(path)), path);
    return length == 0 || length >= std::size(path) ? L"" : tidied(path);
}

FileTicks joined(const FILETIME& time) {
    return (static_cast<FileTicks>(time.dwHighDateTime) << 32) | time.dwLowDateTime;
}

BackupContext::Now readClock() {
    FILETIME utc{};
    GetSystemTimeAsFileTime(&utc);
    SYSTEMTIME utcTime{}, localTime{};
    FILETIME local = utc;
    if (FileTimeToSystemTime(&utc, &utcTime) &&
        SystemTimeToTzSpecificLocalTime(nullptr, &utcTime, &localTime)) {
        SystemTimeToFileTime(&localTime, &local);
    }
    return {joined(utc), joined(local)};
}

struct UserFolders {
    CleanupRoots roots = {knownFolder(CSIDL_APPDATA), knownFolder(CSIDL_LOCAL_APPDATA),
                          tempFolder()};
    WindowsFileSystem files{{roots.begin(), roots.end()}};

    BackupContext context() {
        return {files, roots, tidied(toolFolder()), IsCorelRunning, readClock};
    }
};

// Held by one program at a time: another one must not put back what this one is still moving. When
// the holder dies, Windows passes it on.
class BackupsLock {
  public:
    BackupsLock() : mutex_(CreateMutexW(nullptr, FALSE, kBackupsMutex)) {
        const DWORD waited = mutex_ ? WaitForSingleObject(mutex_.get(), 0) : WAIT_FAILED;
        isHeld_ = waited == WAIT_OBJECT_0 || waited == WAIT_ABANDONED;
    }
    ~BackupsLock() {
        if (isHeld_) ReleaseMutex(mutex_.get());
    }
    BackupsLock(const BackupsLock&) = delete;
    BackupsLock& operator=(const BackupsLock&) = delete;

    [[nodiscard]] bool isHeld(const ActionHost& host, const wchar_t* prefix) const {
        if (!isHeld_)
            host.appendLog(prefix + std::wstring(L" Another Mirelo is at work on the backups. "
                                                 L"Try again when it has finished."));
        return isHeld_;
    }

  private:
    KernelHandle mutex_;
    bool isHeld_ = false;
};

}  // namespace

bool IsCorelRunning() {
    return !processesNamed(L"CorelDRW.exe").empty();
}

void OnCleanup(const ActionHost& host) {
    const BackupsLock lock;
    if (!lock.isHeld(host, L"[Cleanup]")) return;
    UserFolders user;
    OnCleanup(host, user.context());
}

void OnRestore(const ActionHost& host) {
    const BackupsLock lock;
    if (!lock.isHeld(host, L"[Restore]")) return;
    UserFolders user;
    OnRestore(host, user.context());
}

void OnOptimizeSettings(const ActionHost& host) {
    const BackupsLock lock;
    if (!lock.isHeld(host, L"[Settings]")) return;
    UserFolders user;
    WindowsRegistry registry;
    OnOptimizeSettings(host, SettingsContext{registry, user.context()});
}
