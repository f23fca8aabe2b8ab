#include "fixes/cleanup/cleanup_locations.h"

#include <algorithm>

#include "base/wildcard.h"

namespace {

std::wstring_view takeName(std::wstring_view& path) {
    const std::size_t end = std::min(path.find(L'\\'), path.size());
    const std::wstring_view name = path.substr(0, end);
    path.remove_prefix(std::min(end + 1, path.size()));
    return name;
}

struct Match {
    bool fits = true;
    bool pathLeft = false;     // the path goes on below the pattern
    bool patternLeft = false;  // the path ends above it
};

Match matchFromRoot(std::wstring_view path, std::wstring_view pattern) {
    while (!path.empty() && !pattern.empty())
        if (!matchesPattern(takeName(path), takeName(pattern))) return {.fits = false};
    return {true, !path.empty(), !pattern.empty()};
}

}  // namespace

bool Covers(const CleanupLocation& location, std::wstring_view relative, bool isFolder) {
    const Match match = matchFromRoot(relative, location.pattern);
    if (!match.fits || match.patternLeft) return false;
    switch (location.extent) {
        case Extent::files:
            return !match.pathLeft && !isFolder;
        case Extent::contents:
            return match.pathLeft;
        case Extent::wholeFolder:
            return match.pathLeft || isFolder;
    }
    return false;
}

bool LeadsTo(const CleanupLocation& location, std::wstring_view relative) {
    const Match match = matchFromRoot(relative, location.pattern);
    return match.fits && (match.patternLeft || location.extent != Extent::files);
}

std::wstring FolderOf(const CleanupLocation& location, std::wstring_view relative) {
    const auto backslashes = std::ranges::count(location.pattern, L'\\');
    // Contents lie one level below the folder that the pattern names.
    auto levels = backslashes + (location.extent == Extent::contents ? 1 : 0);
    std::size_t end = 0;
    for (; levels > 0; --levels)
        end = std::min(relative.find(L'\\', end + 1), relative.size());
    return std::wstring(relative.substr(0, end));
}
