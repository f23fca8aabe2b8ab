#include "base/text.h"

#include <algorithm>
#include <cwctype>

namespace {

constexpr char32_t kReplacement = 0xFFFD;

constexpr bool isHighSurrogate(char32_t c) {
    return c >= 0xD800 && c <= 0xDBFF;
}
constexpr bool isLowSurrogate(char32_t c) {
    return c >= 0xDC00 && c <= 0xDFFF;
}
constexpr char32_t joinSurrogates(char32_t high, char32_t low) {
    return 0x10000 + ((high - 0xD800) << 10) + (low - 0xDC00);
}

struct Decoded {
    char32_t codePoint;
    std::size_t length;
};

// One sequence by the table of RFC 3629, surrogates let through for the caller to judge. A
// malformed sequence gives U+FFFD for its first byte alone.
Decoded decodeSequence(std::string_view bytes) {
    const auto lead = static_cast<unsigned char>(bytes[0]);
    if (lead < 0x80) return {lead, 1};
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || bytes.size() < length) return {kReplacement, 1};

    char32_t codePoint = lead & (0xFFU >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        const auto next = static_cast<unsigned char>(bytes[i]);
        if ((next & 0xC0U) != 0x80) return {kReplacement, 1};
        codePoint = (codePoint << 6) | (next & 0x3FU);
    }
    constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
    if (codePoint < kSmallest[length] || codePoint > 0x10FFFF) return {kReplacement, 1};
    return {codePoint, length};
}

Decoded decodeCharacter(std::string_view bytes) {
    const Decoded first = decodeSequence(bytes);
    if (isLowSurrogate(first.codePoint)) return {kReplacement, first.length};
    if (!isHighSurrogate(first.codePoint)) return first;
    if (first.length < bytes.size()) {
        const Decoded second = decodeSequence(bytes.substr(first.length));
        if (isLowSurrogate(second.codePoint)) {
            return {joinSurrogates(first.codePoint, second.codePoint),
                    first.length + second.length};
        }
    }
    return {kReplacement, first.length};
}

void appendWide(std::wstring& wide, char32_t codePoint) {
    if (sizeof(wchar_t) == 2 && codePoint > 0xFFFF) {
        wide.push_back(static_cast<wchar_t>(0xD800 + ((codePoint - 0x10000) >> 10)));
        wide.push_back(static_cast<wchar_t>(0xDC00 + ((codePoint - 0x10000) & 0x3FF)));
        return;
    }
    wide.push_back(static_cast<wchar_t>(codePoint));
}

void appendUtf8(std::string& utf8, char32_t codePoint) {
    const auto tail = [&](unsigned shift) {
        utf8.push_back(static_cast<char>(0x80U | ((codePoint >> shift) & 0x3FU)));
    };
    if (codePoint < 0x80) {
        utf8.push_back(static_cast<char>(codePoint));
    } else if (codePoint < 0x800) {
        utf8.push_back(static_cast<char>(0xC0U | (codePoint >> 6)));
        tail(0);
    } else if (codePoint < 0x10000) {
        utf8.push_back(static_cast<char>(0xE0U | (codePoint >> 12)));
        tail(6), tail(0);
    } else {
        utf8.push_back(static_cast<char>(0xF0U | (codePoint >> 18)));
        tail(12), tail(6), tail(0);
    }
}

}  // namespace

std::wstring wideFromUtf8(std::string_view utf8) {
    std::wstring wide;
    wide.reserve(utf8.size());
    while (!utf8.empty()) {
        const Decoded character = decodeCharacter(utf8);
        appendWide(wide, character.codePoint);
        utf8.remove_prefix(character.length);
    }
    return wide;
}

std::string utf8FromWide(std::wstring_view wide) {
    std::string utf8;
    utf8.reserve(wide.size());
    for (std::size_t i = 0; i < wide.size(); ++i) {
        auto codePoint = static_cast<char32_t>(wide[i]);
        if (isHighSurrogate(codePoint) && i + 1 < wide.size() &&
            isLowSurrogate(static_cast<char32_t>(wide[i + 1]))) {
            codePoint = joinSurrogates(codePoint, static_cast<char32_t>(wide[++i]));
        } else if (isHighSurrogate(codePoint) || isLowSurrogate(codePoint) ||
                   codePoint > 0x10FFFF) {
            codePoint = kReplacement;
        }
        appendUtf8(utf8, codePoint);
    }
    return utf8;
}

std::wstring lowered(std::wstring_view text) {
    std::wstring lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(), [](wchar_t c) {
        return static_cast<wchar_t>(std::towlower(static_cast<std::wint_t>(c)));
    });
    return lower;
}

std::wstring decimal(std::int64_t number) {
    if (number >= 0) return decimalUnsigned(static_cast<std::uint64_t>(number));
    return L"-" + decimalUnsigned(0 - static_cast<std::uint64_t>(number));
}

std::wstring decimalUnsigned(std::uint64_t number) {
    std::wstring digits;
    do {
        digits.push_back(static_cast<wchar_t>(L'0' + static_cast<int>(number % 10)));
        number /= 10;
    } while (number != 0);
    std::reverse(digits.begin(), digits.end());
    return digits;
}
