#include "base/files/tool_folder_win.h"

#include <windows.h>

#include <shlobj.h>

#include "base/deadline_win.h"

namespace {

constexpr DWORD kLimitMs = 2000;

std::wstring applicationDataFolder() {
    wchar_t folder[MAX_PATH] = {};
    const bool isNamed =
        SHGetFolderPathW(nullptr, CSIDL_APPDATA, nullptr, SHGFP_TYPE_CURRENT, folder) == S_OK;
    return isNamed ? folder : L"";
}

}  // namespace

std::wstring toolFolder() {
    const std::wstring folder = answerWithin(kLimitMs, applicationDataFolder).value_or(L"");
    return folder.empty() ? folder : folder + L"\\Mirelo";
}

void makeToolFolder() {
    const std::wstring folder = toolFolder();
    if (!folder.empty()) CreateDirectoryW(folder.c_str(), nullptr);
}
