#include "cloud/settings_win.h"

#include <windows.h>

#include <string_view>

#include "base/handle_win.h"

namespace {

constexpr wchar_t kKeyPath[] = L"Software\\Mirelo";
constexpr wchar_t kValueName[] = L"NetworkEnabled";

}  // namespace

bool IsNetworkEnabled() {
    RegistryKey key;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, kKeyPath, 0, KEY_READ, key.receive()) != ERROR_SUCCESS)
        return true;

    wchar_t text[64] = {};
    DWORD type = REG_NONE;
    DWORD byteCount = sizeof(text);
    if (RegQueryValueExW(key.get(), kValueName, nullptr, &type, reinterpret_cast<BYTE*>(text),
                         &byteCount) != ERROR_SUCCESS ||
        type != REG_SZ) {
        return true;
    }
    // The registry does not promise the terminating zero.
    const std::wstring_view stored(text, byteCount / sizeof(wchar_t));
    return stored.substr(0, stored.find(L'\0')) != L"0";
}

void SetNetworkEnabled(bool enabled) {
    RegistryKey key;
    if (RegCreateKeyExW(HKEY_CURRENT_USER, kKeyPath, 0, nullptr, REG_OPTION_NON_VOLATILE,
                        KEY_SET_VALUE, nullptr, key.receive(), nullptr) != ERROR_SUCCESS) {
        return;
    }
    const wchar_t text[] = {enabled ? L'1' : L'0', L'\0'};
    RegSetValueExW(key.get(), kValueName, 0, REG_SZ, reinterpret_cast<const BYTE*>(text),
                   sizeof(text));
}
