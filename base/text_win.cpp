#include <windows.h>

#include "base/text.h"

bool equalsIgnoringCase(std::wstring_view left, std::wstring_view right) {
    if (left.size() != right.size()) return false;
    if (left.empty()) return true;
    constexpr std::size_t kLongest = 0x7FFFFFFF;
    if (left.size() > kLongest) return left == right;
    return CompareStringOrdinal(left.data(), static_cast<int>(left.size()), right.data(),
                                static_cast<int>(right.size()), TRUE) == CSTR_EQUAL;
}
