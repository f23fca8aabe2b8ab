#include "base/files/long_path_win.h"

#include <windows.h>

#include "base/files/long_path.h"

std::wstring longPath(const std::wstring& path) {
    // The system would take the dots and blanks off the end of a name that is spelled with them.
    if (isSpelledInFull(path)) return extendedPath(path);
    std::wstring full(path.size() + MAX_PATH, L'\0');
    const DWORD length =
        GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr);
    if (length == 0 || length >= full.size()) return path;
    full.resize(length);
    return extendedPath(full);
}
