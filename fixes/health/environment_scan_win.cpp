#include "fixes/health/environment_scan_win.h"

#include <windows.h>

#include "base/handle_win.h"
#include "fixes/health/printer_win.h"

namespace {

RegistryKey OpenMachineKey(const wchar_t* path) {
    RegistryKey key;
    RegOpenKeyExW(HKEY_LOCAL_MACHINE, path, 0, KEY_READ, key.receive());
    return key;
}

// The system lists every installed font as one value of this key.
std::int32_t InstalledFontCount() {
    const RegistryKey key =
        OpenMachineKey(L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Fonts");
    DWORD count = 0;
    if (key) {
        RegQueryInfoKeyW(key.get(), nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &count,
                         nullptr, nullptr, nullptr, nullptr);
    }
    return static_cast<std::int32_t>(count);
}

std::uint32_t GdiProcessHandleQuota() {
    const RegistryKey key =
        OpenMachineKey(L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Windows");
    if (!key) return kDefaultGdiQuota;
    DWORD type = REG_NONE;
    DWORD quota = kDefaultGdiQuota;
    DWORD size = sizeof quota;
    const LSTATUS status = RegQueryValueExW(key.get(), L"GDIProcessHandleQuota", nullptr, &type,
                                            reinterpret_cast<BYTE*>(&quota), &size);
    const bool whole = status == ERROR_SUCCESS && type == REG_DWORD && size == sizeof quota;
    return whole ? quota : kDefaultGdiQuota;
}

std::uint64_t PhysicalMemoryBytes() {
    MEMORYSTATUSEX memory{};
    memory.dwLength = sizeof memory;
    GlobalMemoryStatusEx(&memory);
    return memory.ullTotalPhys;
}

}  // namespace

EnvCheckResult RunEnvironmentCheck() {
    return RateEnvironment({QueryDefaultPrinter(), InstalledFontCount(), GdiProcessHandleQuota(),
                            PhysicalMemoryBytes()});
}
