#include "cdr/version_string_win.h"

#include <windows.h>

#include <cwchar>
#include <vector>

namespace {

struct Translation {
    WORD language;
    WORD codePage;
};

}  // namespace

std::wstring ReadVersionString(const std::wstring& filePath, const std::wstring& valueName) {
    DWORD ignored = 0;
    const DWORD size = GetFileVersionInfoSizeW(filePath.c_str(), &ignored);
    if (size == 0) return {};
    std::vector<BYTE> resource(size);
    if (!GetFileVersionInfoW(filePath.c_str(), 0, size, resource.data())) return {};

    void* found = nullptr;
    UINT length = 0;
    if (!VerQueryValueW(resource.data(), L"\\VarFileInfo\\Translation", &found, &length) ||
        found == nullptr || length < sizeof(Translation)) {
        return {};
    }
    const Translation first = *static_cast<const Translation*>(found);

    wchar_t prefix[32];
    std::swprintf(prefix, std::size(prefix), L"\\StringFileInfo\\%04x%04x\\",
                  static_cast<unsigned>(first.language), static_cast<unsigned>(first.codePage));
    if (!VerQueryValueW(resource.data(), (prefix + valueName).c_str(), &found, &length) ||
        found == nullptr) {
        return {};
    }
    // The length is the resource's own claim and often wrong; the buffer's end is the honest bound.
    const auto* text = static_cast<const wchar_t*>(found);
    const auto* end = reinterpret_cast<const wchar_t*>(resource.data() + std::size_t{size} / 2 * 2);
    return text < end ? std::wstring(text, wcsnlen(text, static_cast<std::size_t>(end - text)))
                      : std::wstring();
}
