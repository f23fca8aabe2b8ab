#include "base/process_win.h"

#include <tlhelp32.h>

#include <cwchar>

#include "base/handle_win.h"

std::vector<DWORD> processesNamed(const wchar_t* fileName) {
    std::vector<DWORD> pids;
    const FileHandle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    if (!snapshot) return pids;
    PROCESSENTRY32W entry{};
    entry.dwSize = sizeof entry;
    for (BOOL isThere = Process32FirstW(snapshot.get(), &entry); isThere;
         isThere = Process32NextW(snapshot.get(), &entry)) {
        if (_wcsicmp(entry.szExeFile, fileName) == 0) pids.push_back(entry.th32ProcessID);
    }
    return pids;
}

bool hasExited(HANDLE process) {
    DWORD exitCode = 0;
    return GetExitCodeProcess(process, &exitCode) && exitCode != STILL_ACTIVE;
}
