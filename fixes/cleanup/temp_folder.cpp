#include "fixes/cleanup/temp_folder.h"

#include <algorithm>

#include "base/files/file_system.h"
#include "base/text.h"

namespace {

// Equal folders count as one inside the other.
bool isInside(std::wstring_view inner, std::wstring_view outer) {
    return inner.size() >= outer.size() &&
           (inner.size() == outer.size() || inner[outer.size()] == L'\\') &&
           equalsIgnoringCase(inner.substr(0, outer.size()), outer);
}

// "C:", "\\server\share" and what is not a path at all.
bool isRoot(std::wstring_view folder) {
    const bool isShare = folder.starts_with(L"\\\\");
    std::size_t start = 0;
    if (isShare) start = std::min(folder.find(L'\\', 2), folder.size() - 1) + 1;
    return folder.find(L'\\', start) == std::wstring_view::npos;
}

bool isNamedTemporary(const std::wstring& folder) {
    std::wstring name = lowered(folder.substr(folder.rfind(L'\\') + 1));
    while (!name.empty() && name.back() >= L'0' && name.back() <= L'9')
        name.pop_back();
    // Remote Desktop hosts number the folder of each session: "Temp\2".
    if (name.empty()) name = lowered(folder.substr(0, folder.rfind(L'\\')));
    return name.ends_with(L"temp") || name.ends_with(L"tmp");
}

}  // namespace

std::wstring WhyNotTemporary(std::wstring_view folder, const ReservedFolders& reserved) {
    if (folder.empty()) return L"it is not set";
    if (isRoot(folder)) return L"it is the root of a disk";
    const auto holds = [&](const std::wstring& other) {
        return !other.empty() && isInside(other, folder);
    };
    const auto liesIn = [&](const std::wstring& other) {
        return !other.empty() && isInside(folder, other);
    };
    if (std::ranges::any_of(reserved.users, holds)) return L"it holds a user's own files";
    if (std::ranges::any_of(reserved.systems, holds) ||
        std::ranges::any_of(reserved.systems, liesIn)) {
        return L"it belongs to Windows or to the programs";
    }
    if (!isNamedTemporary(std::wstring(folder))) return L"its name does not say so";
    return L"";
}
