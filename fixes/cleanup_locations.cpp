#include "fixes/cleanup_locations.h"

#include <algorithm>

namespace {

// Patterns are ASCII, so no other letter needs folding, and none can match by accident.
wchar_t folded(wchar_t c) {
    return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c - L'A' + L'a') : c;
}

// One star is remembered: what follows it is tried one character further on whenever it stops
// fitting, which is enough because a later star takes over from an earlier one.
bool matches(std::wstring_view name, std::wstring_view pattern) {
    constexpr std::size_t kNone = std::wstring_view::npos;
    std::size_t n = 0, p = 0, star = kNone, starName = 0;
    while (n < name.size()) {
        if (p < pattern.size() && pattern[p] == L'*') {
            star = p++;
            starName = n;
        } else if (p < pattern.size() && folded(pattern[p]) == folded(name[n])) {
            ++p, ++n;
        } else if (star != kNone) {
            p = star + 1;
            n = ++starName;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == L'*')
        ++p;
    return p == pattern.size();
}

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
        if (!matches(takeName(path), takeName(pattern))) return {.fits = false};
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
    constexpr std::wstring_view kNames[] = {
        L"Backup_of_*", L"auto-backup*", L"AutoBackup*",  // documents saved on the side
        L"*.cdr",       L"*.cdt",        L"*.cdx",        // documents and templates
        L"*.cpx",       L"*.cmx",        L"*.cpt",        //
        L"*.cdrt",      L"*.csl",        L"*.clk",        // templates, symbols, links
        L"*.cdws",      L"*.xslt",       L"*.gms",        // workspaces, macros
        L"*.cpl",       L"*.pal",        L"*.cdss",       // palettes, styles
        L"*.ttf",       L"*.otf",        L"*.ttc",        // fonts
        L"*.pfb",       L"*.mirelobak",                   // and what this tool keeps
    };
    return std::ranges::any_of(kNames,
                               [&](std::wstring_view name) { return matches(fileName, name); });
}
