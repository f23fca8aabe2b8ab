#include "diagnosis/module_list.h"

#include <algorithm>

namespace {

// Hundreds of modules, seldom a difference: a plain search is quick enough.
std::vector<LoadedModule> Missing(const std::vector<LoadedModule>& from,
                                  const std::vector<LoadedModule>& in) {
    std::vector<LoadedModule> missing;
    std::copy_if(from.begin(), from.end(), std::back_inserter(missing),
                 [&](const LoadedModule& module) {
                     return std::find(in.begin(), in.end(), module) == in.end();
                 });
    return missing;
}

}  // namespace

ModuleChanges CompareModules(const std::vector<LoadedModule>& before,
                             const std::vector<LoadedModule>& now) {
    return {Missing(before, now), Missing(now, before)};
}

const LoadedModule* ModuleAt(const std::vector<LoadedModule>& modules, std::uint64_t address) {
    const auto found = std::find_if(modules.begin(), modules.end(), [&](const LoadedModule& m) {
        return address >= m.base && address - m.base < m.sizeBytes;
    });
    return found == modules.end() ? nullptr : &*found;
}
