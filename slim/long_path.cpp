#include "slim/long_path.h"

std::wstring extendedPath(std::wstring_view fullPath) {
    if (fullPath.starts_with(L"\\\\?\\") || fullPath.starts_with(L"\\\\.\\"))
        return std::wstring(fullPath);
    if (fullPath.starts_with(L"\\\\")) return L"\\\\?\\UNC" + std::wstring(fullPath.substr(1));
    if (fullPath.size() >= 3 && fullPath[1] == L':' && fullPath[2] == L'\\')
        return L"\\\\?\\" + std::wstring(fullPath);
    return std::wstring(fullPath);
}
