#include "diagnosis/stack_frame.h"

#include "base/text.h"

std::wstring ModuleNameOf(const std::wstring& reportedName, const std::wstring& imagePath) {
    const bool isPlugin = lowered(imagePath).ends_with(L".cpg");
    if (!isPlugin || lowered(reportedName).ends_with(L".cpg")) return reportedName;
    return imagePath.substr(imagePath.find_last_of(L"\\/") + 1);
}
