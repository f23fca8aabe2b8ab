#include "base/files/long_path.h"

#include <algorithm>

namespace {

bool isDevicePath(std::wstring_view path) {
    return path.starts_with(L"\\\\?\\") || path.starts_with(L"\\\\.\\");
}

bool isDrivePath(std::wstring_view path) {
    return path.size() >= 3 && path[1] == L':' && path[2] == L'\\';
}

}  // namespace

std::wstring extendedPath(std::wstring_view fullPath) {
    if (isDevicePath(fullPath)) return std::wstring(fullPath);
    if (fullPath.starts_with(L"\\\\")) return L"\\\\?\\UNC" + std::wstring(fullPath.substr(1));
    if (isDrivePath(fullPath)) return L"\\\\?\\" + std::wstring(fullPath);
    return std::wstring(fullPath);
}

bool isSpelledInFull(std::wstring_view path) {
    if (isDevicePath(path)) return true;
    if (!path.starts_with(L"\\\\") && !isDrivePath(path)) return false;
    if (path.find(L'/') != std::wstring_view::npos) return false;
    // The last part may be empty: a drive's root, or a folder named with its backslash.
    for (std::size_t start = 2; start < path.size();) {
        const std::size_t end = std::min(path.find(L'\\', start + 1), path.size());
        const std::wstring_view part = path.substr(start, end - start);
        if (part == L"\\." || part == L"\\.." || (part == L"\\" && end < path.size())) return false;
        start = end;
    }
    return true;
}
