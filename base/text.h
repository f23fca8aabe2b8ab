// Text at the edges: UTF-8 outside, wide text inside, and the comparisons that the system agrees
// on.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Wide text from UTF-8 (RFC 3629): UTF-16 where `wchar_t` has 16 bits, code points where it
/// has 32. A surrogate pair that arrives as two three-byte sequences, as JSON escapes produce it,
/// becomes its character; everything else that is malformed becomes U+FFFD, so the result is always
/// well-formed.
std::wstring wideFromUtf8(std::string_view utf8);

/// UTF-8 from wide text; a lone surrogate becomes U+FFFD.
std::string utf8FromWide(std::wstring_view wide);

/// Lower-cased character by character with the C library's `towlower`.
std::wstring lowered(std::wstring_view text);

/// Decimal digits, with a leading "-" for a negative number.
std::wstring decimal(std::int64_t number);
std::wstring decimalUnsigned(std::uint64_t number);

/// True when both texts are equal in an ordinal comparison that ignores case: the system's own
/// upper-case table on Windows (`CompareStringOrdinal`), the C library's elsewhere.
bool equalsIgnoringCase(std::wstring_view left, std::wstring_view right);
