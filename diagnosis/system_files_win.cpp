#include "diagnosis/system_files_win.h"

#include <windows.h>

#include <cwchar>

#include "cdr/version_string_win.h"

bool IsInSystemDirectory(const std::wstring& path) {
    wchar_t directory[MAX_PATH] = {};
    const UINT length = GetSystemDirectoryW(directory, MAX_PATH);
    if (length == 0 || length >= MAX_PATH) return false;
    return _wcsnicmp(path.c_str(), directory, length) == 0;
}

bool IsMicrosoftFile(const std::wstring& path) {
    return ReadVersionString(path, L"CompanyName").find(L"Microsoft") != std::wstring::npos;
}
