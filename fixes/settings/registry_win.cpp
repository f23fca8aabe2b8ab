#include "fixes/settings/registry_win.h"

#include <windows.h>

#include "base/handle_win.h"

namespace {

RegistryKey open(const std::wstring& path, REGSAM access) {
    RegistryKey key;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, access, key.receive()) != ERROR_SUCCESS)
        key.release();
    return key;
}

struct Limits {
    DWORD subkeyName = 0;  // in characters, without the terminator
    DWORD valueName = 0;
    DWORD data = 0;  // in bytes
};

bool readLimits(HKEY key, Limits& limits) {
    return RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, nullptr, &limits.subkeyName, nullptr,
                            nullptr, &limits.valueName, &limits.data, nullptr,
                            nullptr) == ERROR_SUCCESS;
}

}  // namespace

std::optional<std::vector<std::wstring>> WindowsRegistry::subkeys(const std::wstring& key) {
    const RegistryKey opened = open(key, KEY_READ);
    Limits limits;
    if (!opened || !readLimits(opened.get(), limits)) return std::nullopt;
    std::vector<std::wstring> names;
    std::wstring name(limits.subkeyName + 1, L'\0');
    for (DWORD index = 0;; ++index) {
        auto length = static_cast<DWORD>(name.size());
        const LSTATUS status = RegEnumKeyExW(opened.get(), index, name.data(), &length, nullptr,
                                             nullptr, nullptr, nullptr);
        if (status == ERROR_NO_MORE_ITEMS) return names;
        if (status != ERROR_SUCCESS) return std::nullopt;
        names.emplace_back(name.data(), length);
    }
}

std::optional<std::vector<RegistryValue>> WindowsRegistry::values(const std::wstring& key) {
    const RegistryKey opened = open(key, KEY_READ);
    Limits limits;
    if (!opened || !readLimits(opened.get(), limits)) return std::nullopt;
    std::vector<RegistryValue> values;
    std::wstring name(limits.valueName + 1, L'\0');
    std::vector<std::uint8_t> data(limits.data + 1);
    for (DWORD index = 0;; ++index) {
        auto length = static_cast<DWORD>(name.size());
        auto size = static_cast<DWORD>(data.size());
        DWORD type = 0;
        const LSTATUS status = RegEnumValueW(opened.get(), index, name.data(), &length, nullptr,
                                             &type, data.data(), &size);
        if (status == ERROR_NO_MORE_ITEMS) return values;
        // A value that grew since the limits were read is a value that somebody is writing.
        if (status != ERROR_SUCCESS) return std::nullopt;
        values.push_back(
            {std::wstring(name.data(), length), type, {data.begin(), data.begin() + size}});
    }
}

std::uint32_t WindowsRegistry::setValue(const std::wstring& key, const RegistryValue& value) {
    RegistryKey opened;
    const LSTATUS status =
        RegOpenKeyExW(HKEY_CURRENT_USER, key.c_str(), 0, KEY_SET_VALUE, opened.receive());
    if (status != ERROR_SUCCESS) return static_cast<std::uint32_t>(status);
    return static_cast<std::uint32_t>(RegSetValueExW(opened.get(), value.name.c_str(), 0,
                                                     value.type, value.data.data(),
                                                     static_cast<DWORD>(value.data.size())));
}
