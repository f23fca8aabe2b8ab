#include "fixes/fix_actions_win.h"

#include <windows.h>

#include <shlobj.h>

#include "base/handle_win.h"
#include "base/process_win.h"
#include "base/text.h"
#include "fixes/file_system_win.h"
#include "fixes/registry_win.h"
#include "fixes/restore.h"
#include "fixes/settings_change.h"

namespace {

// The long form without a backslash at the end: names in a backup are spelled as the folders
// themselves spell them, and the folder for temporary files often comes in its short form.
std::wstring tidied(std::wstring path) {
    const DWORD needed = GetLongPathNameW(path.c_str(), nullptr, 0);
    std::wstring longPath(needed, L'\0');
    const DWORD length = needed == 0 ? 0 : GetLongPathNameW(path.c_str(), longPath.data(), needed);
    if (length > 0 && length < needed) path = longPath.substr(0, length);
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

BackupWorld::Now readClock() {
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

    BackupWorld world() {
        const std::wstring tool = roots[0].empty() ? L"" : roots[0] + L"\\Mirelo";
        return {files, roots, tool, IsCorelRunning, readClock};
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

    [[nodiscard]] bool isHeld(const Shell& shell, const wchar_t* prefix) const {
        if (!isHeld_)
            shell.appendLog(prefix + std::wstring(L" Another Mirelo is at work on the backups. "
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

void OnCleanup(const Shell& shell) {
    const BackupsLock lock;
    if (!lock.isHeld(shell, L"[Cleanup]")) return;
    UserFolders user;
    OnCleanup(shell, user.world());
}

void OnRestore(const Shell& shell) {
    const BackupsLock lock;
    if (!lock.isHeld(shell, L"[Restore]")) return;
    UserFolders user;
    OnRestore(shell, user.world());
}

void OnOptimizeSettings(const Shell& shell) {
    const BackupsLock lock;
    if (!lock.isHeld(shell, L"[Settings]")) return;
    UserFolders user;
    WindowsRegistry registry;
    OnOptimizeSettings(shell, SettingsWorld{registry, user.world()});
}
