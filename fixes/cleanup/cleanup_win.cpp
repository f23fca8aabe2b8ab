#include "fixes/cleanup/cleanup_win.h"

#include <windows.h>

#include <sddl.h>
#include <shlobj.h>

#include <algorithm>
#include <vector>

#include "base/deadline_win.h"
#include "base/files/tool_folder_win.h"
#include "base/process_win.h"
#include "base/text.h"
#include "fixes/cleanup/cleanup.h"
#include "fixes/cleanup/restore.h"
#include "fixes/cleanup/temp_folder.h"

namespace {

constexpr DWORD kFoldersLimitMs = 4000;

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

ReservedFolders reservedFolders() {
    ReservedFolders reserved;
    for (const int id : {CSIDL_PROFILE, CSIDL_APPDATA, CSIDL_LOCAL_APPDATA, CSIDL_COMMON_APPDATA,
                         CSIDL_PERSONAL, CSIDL_DESKTOPDIRECTORY, CSIDL_MYPICTURES})
        reserved.users.push_back(knownFolder(id));
    for (const int id : {CSIDL_WINDOWS, CSIDL_PROGRAM_FILES, CSIDL_PROGRAM_FILESX86})
        reserved.systems.push_back(knownFolder(id));
    return reserved;
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

// The security identifier of the user that a process runs as, as text; empty when it is kept from
// us.
std::wstring userOf(HANDLE process) {
    KernelHandle token;
    if (!OpenProcessToken(process, TOKEN_QUERY, token.receive())) return L"";
    alignas(TOKEN_USER) std::byte buffer[sizeof(TOKEN_USER) + SECURITY_MAX_SID_SIZE];
    DWORD size = 0;
    if (!GetTokenInformation(token.get(), TokenUser, buffer, sizeof buffer, &size)) return L"";
    wchar_t* text = nullptr;
    if (!ConvertSidToStringSidW(reinterpret_cast<TOKEN_USER*>(buffer)->User.Sid, &text)) return L"";
    std::wstring user = text;
    LocalFree(text);
    return user;
}

// A process that does not show its user counts as this user's in his own session: it may run
// elevated.
bool isThisUsers(DWORD processId) {
    const KernelHandle process(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, processId));
    const std::wstring user = process ? userOf(process.get()) : L"";
    if (!user.empty()) return user == userOf(GetCurrentProcess());
    DWORD session = 0, own = 0;
    return ProcessIdToSessionId(processId, &session) &&
           ProcessIdToSessionId(GetCurrentProcessId(), &own) && session == own;
}

RunningPrograms runningPrograms() {
    const auto runs = [](const wchar_t* fileName) {
        return std::ranges::any_of(processesNamed(fileName), isThisUsers);
    };
    return {runs(L"CorelDRW.exe"), runs(L"CorelPP.exe")};
}

}  // namespace

FolderNames FolderNames::read() {
    FolderNames names;
    names.roots = {knownFolder(CSIDL_APPDATA), knownFolder(CSIDL_LOCAL_APPDATA), tempFolder(),
                   knownFolder(CSIDL_COMMON_APPDATA)};
    const std::wstring& local = names.roots[static_cast<std::size_t>(CleanupRoot::localAppData)];
    const std::wstring& temp = names.roots[static_cast<std::size_t>(CleanupRoot::temp)];
    names.tempDoubt = WhyNotTemporary(temp, reservedFolders());
    names.homes = {local.empty() ? L"" : local + L"\\Mirelo", tidied(toolFolder())};
    return names;
}

UserFolders::UserFolders()
    : names(answerWithin(kFoldersLimitMs, FolderNames::read).value_or(FolderNames())),
      files({names.roots.begin(), names.roots.end()}) {}

BackupContext UserFolders::context() {
    return {files, names.roots, names.tempDoubt, names.homes, runningPrograms, readClock};
}

BackupsLock::BackupsLock() : mutex_(CreateMutexW(nullptr, FALSE, name().c_str())) {
    const DWORD waited = mutex_ ? WaitForSingleObject(mutex_.get(), 0) : WAIT_FAILED;
    isHeld_ = waited == WAIT_OBJECT_0 || waited == WAIT_ABANDONED;
}

BackupsLock::~BackupsLock() {
    if (isHeld_) ReleaseMutex(mutex_.get());
}

bool BackupsLock::isHeld(const ActionHost& host, const wchar_t* prefix) const {
    if (!isHeld_)
        host.appendLog(prefix + std::wstring(L" Another Mirelo is at work on the backups. "
                                             L"Try again when it has finished."));
    return isHeld_;
}

std::wstring BackupsLock::name() {
    return L"Global\\MireloBackups-" + userOf(GetCurrentProcess());
}

void OnCleanup(const ActionHost& host) {
    const BackupsLock lock;
    if (!lock.isHeld(host, L"[Cleanup]")) return;
    UserFolders user;
    CleanUp(host, user.context());
}

void OnRestore(const ActionHost& host) {
    const BackupsLock lock;
    if (!lock.isHeld(host, L"[Restore]")) return;
    UserFolders user;
    BringBack(host, user.context());
}
