#include "base/files/tool_folder_win.h"

#include <windows.h>

#include <shlobj.h>

std::wstring toolFolder() {
    wchar_t folder[MAX_PATH] = {};
    if (SHGetFolderPathW(nullptr, CSIDL_APPDATA, nullptr, SHGFP_TYPE_CURRENT, folder) != S_OK) {
        return {};
    }
    return std::wstring(folder) + L"\\Mirelo";
}
