#include "cdr/cdr_instance.h"

#include "base/text.h"

std::wstring ShownVersion(const CdrInstance& instance) {
    return instance.version.empty() ? L"(unknown)" : instance.version;
}

std::wstring InstanceRowText(const CdrInstance& instance) {
    return L"PID " + decimalUnsigned(instance.pid) + L"    v" + ShownVersion(instance);
}

const CdrInstance* SelectedInstance(const std::vector<CdrInstance>& instances, int selection) {
    if (selection < 0 || static_cast<std::size_t>(selection) >= instances.size()) return nullptr;
    return &instances[static_cast<std::size_t>(selection)];
}

int RepairedSelection(int selection, std::size_t instanceCount) {
    if (instanceCount == 0) return -1;
    const bool valid = selection >= 0 && static_cast<std::size_t>(selection) < instanceCount;
    return valid ? selection : 0;
}
