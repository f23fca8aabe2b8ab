// The comparison for builds without Windows: tests, fuzzers and benchmarks.
#include <algorithm>
#include <cwctype>

#include "base/text.h"

bool equalsIgnoringCase(std::wstring_view left, std::wstring_view right) {
    const auto upper = [](wchar_t c) { return std::towupper(static_cast<std::wint_t>(c)); };
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [&](wchar_t a, wchar_t b) { return upper(a) == upper(b); });
}
