// Names against patterns.
#pragma once

#include <string_view>

/// True when the whole name fits the pattern; `*` stands for any run of characters. ASCII letters
/// match without regard to case.
bool matchesPattern(std::wstring_view name, std::wstring_view pattern);
