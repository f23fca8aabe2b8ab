// What a process has loaded, and what that means for a list made earlier.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// One loaded module. Plug-ins often share one preferred base: only all four together say that a
/// module is still the same.
struct LoadedModule {
    std::uint64_t base = 0;
    /// Whole, however long.
    std::wstring path;
    std::uint32_t sizeBytes = 0;
    /// From the image's header.
    std::uint32_t timeStamp = 0;
    /// The image names a symbol file on another machine.
    bool hasRemoteSymbols = false;

    bool operator==(const LoadedModule&) const = default;
};

struct ModuleChanges {
    /// Of `before`, to be forgotten first: gone, or replaced by another at the same base.
    std::vector<LoadedModule> gone;
    /// Of `now`.
    std::vector<LoadedModule> added;
};

/// Both lists in any order.
ModuleChanges CompareModules(const std::vector<LoadedModule>& before,
                             const std::vector<LoadedModule>& now);

/// The module that holds the address; null when none does.
const LoadedModule* ModuleAt(const std::vector<LoadedModule>& modules, std::uint64_t address);
