#include "fixes/cleanup/cleanup_locations.h"

#include <algorithm>

#include "base/wildcard.h"

namespace {

constexpr std::wstring_view kUserWork[] = {
    // clang-format off
    // documents, templates, symbols
    L"*.cdr", L"*.cdt", L"*.cdx", L"*.cpx", L"*.cmx", L"*.cpt", L"*.cdrt", L"*.csl", L"*.clk",
    // what is kept of them on the side, by CorelDRAW and by this tool
    L"Backup_of_*", L"auto-backup*", L"AutoBackup*", L"*.mirelobak",
    // workspaces, macros, palettes, styles
    L"*.cdws", L"*.gms", L"*.cpl", L"*.pal", L"*.cdss",
    // fonts
    L"*.ttf", L"*.otf", L"*.ttc", L"*.pfb",
    // clang-format on
};

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

bool IsUserWork(std::wstring_view fileName) {
    return std::ranges::any_of(
        kUserWork, [&](std::wstring_view name) { return matchesPattern(fileName, name); });
}
