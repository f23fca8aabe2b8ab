#include "base/wildcard.h"

#include <cstddef>

namespace {

// Patterns are ASCII, so no other letter needs folding, and none can match by accident.
wchar_t folded(wchar_t c) {
    return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c - L'A' + L'a') : c;
}

}  // namespace

// One star is remembered: what follows it is tried one character further on whenever it stops
// fitting, which is enough because a later star takes over from an earlier one.
bool matchesPattern(std::wstring_view name, std::wstring_view pattern) {
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
