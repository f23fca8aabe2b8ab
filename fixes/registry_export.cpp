#include "fixes/registry_export.h"

#include <algorithm>

namespace {

constexpr std::wstring_view kFirstLine = L"Windows Registry Editor Version 5.00";
constexpr std::wstring_view kRoot = L"HKEY_CURRENT_USER\\";
constexpr std::wstring_view kLineEnd = L"\r\n";
constexpr std::wstring_view kContinued = L",\\\r\n  ";
constexpr std::size_t kBytesPerLine = 25;
constexpr std::wstring_view kHexDigits = L"0123456789abcdef";

std::wstring quoted(std::wstring_view text) {
    std::wstring result = L"\"";
    for (const wchar_t c : text) {
        switch (c) {
            case L'\n':
                result += L"\\n";
                break;
            case L'\r':
                result += L"\\r";
                break;
            case L'"':
            case L'\\':
                result += L'\\';
                [[fallthrough]];
            default:
                result += c;
                break;
        }
    }
    return result + L"\"";
}

std::wstring hexNumber(std::uint32_t number, std::size_t digits) {
    std::wstring text;
    for (; number != 0 || text.size() < digits; number >>= 4)
        text.insert(text.begin(), kHexDigits[number & 15]);
    return text;
}

std::wstring hexBytes(const std::vector<std::uint8_t>& data) {
    std::wstring text;
    for (std::size_t i = 0; i < data.size(); ++i) {
        if (i > 0) text += i % kBytesPerLine == 0 ? kContinued : std::wstring_view(L",");
        text += hexNumber(data[i], 2);
    }
    return text;
}

// Text that quotes can hold: one terminator, at the end, and nothing that breaks a line.
bool isPlainText(const RegistryValue& value) {
    if (value.type != kRegistryText || value.data.size() % 2 != 0) return false;
    const std::wstring text = WideFromUtf16(value.data.data(), value.data.size());
    return !text.empty() && text.back() == L'\0' &&
           std::none_of(text.begin(), text.end() - 1, [](wchar_t c) { return c < 0x20; });
}

std::wstring dataText(const RegistryValue& value) {
    if (isPlainText(value)) return quoted(TextOf(value.data));
    const auto number = NumberOf(value.data);
    if (value.type == kRegistryNumber && number) return L"dword:" + hexNumber(*number, 8);
    if (value.type == kRegistryBinary) return L"hex:" + hexBytes(value.data);
    return L"hex(" + hexNumber(value.type, 1) + L"):" + hexBytes(value.data);
}

// Reads from the front of the file's text; each function takes what it finds or nothing at all.
struct Reader {
    std::wstring_view rest;

    bool take(std::wstring_view expected) {
        if (!rest.starts_with(expected)) return false;
        rest.remove_prefix(expected.size());
        return true;
    }

    std::optional<std::wstring> takeQuoted() {
        if (!take(L"\"")) return std::nullopt;
        std::wstring text;
        while (!rest.empty() && rest[0] != L'"') {
            wchar_t c = rest[0];
            rest.remove_prefix(1);
            if (c == L'\\') {
                if (rest.empty()) return std::nullopt;
                c = rest[0] == L'n' ? L'\n' : rest[0] == L'r' ? L'\r' : rest[0];
                rest.remove_prefix(1);
            } else if (c == L'\r' || c == L'\n') {
                return std::nullopt;
            }
            text.push_back(c);
        }
        if (!take(L"\"")) return std::nullopt;
        return text;
    }

    std::optional<std::uint32_t> takeHex(std::size_t most) {
        std::uint32_t number = 0;
        std::size_t digits = 0;
        for (; digits < most && !rest.empty(); ++digits) {
            const std::size_t digit = kHexDigits.find(rest[0]);
            if (digit == std::wstring_view::npos) break;
            number = number << 4 | static_cast<std::uint32_t>(digit);
            rest.remove_prefix(1);
        }
        if (digits == 0) return std::nullopt;
        return number;
    }

    std::optional<std::vector<std::uint8_t>> takeBytes() {
        std::vector<std::uint8_t> data;
        while (!rest.starts_with(kLineEnd)) {
            if (!data.empty() && !take(kContinued) && !take(L",")) return std::nullopt;
            const auto byte = takeHex(2);
            if (!byte) return std::nullopt;
            data.push_back(static_cast<std::uint8_t>(*byte));
        }
        return data;
    }

    std::optional<RegistryValue> takeData() {
        if (rest.starts_with(L"\"")) {
            const auto text = takeQuoted();
            if (!text) return std::nullopt;
            return RegistryValue{L"", kRegistryText, DataOfText(*text)};
        }
        if (take(L"dword:")) {
            const auto number = takeHex(8);
            if (!number) return std::nullopt;
            return RegistryValue{L"", kRegistryNumber, DataOfNumber(*number)};
        }
        RegistryValue value;
        value.type = kRegistryBinary;
        if (!take(L"hex")) return std::nullopt;
        if (take(L"(")) {
            const auto type = takeHex(8);
            if (!type || !take(L")")) return std::nullopt;
            value.type = *type;
        }
        auto data = take(L":") ? takeBytes() : std::nullopt;
        if (!data) return std::nullopt;
        value.data = std::move(*data);
        return value;
    }

    std::optional<RegistryValue> takeValue() {
        const auto name = take(L"@") ? std::wstring() : takeQuoted();
        if (!name || !take(L"=")) return std::nullopt;
        auto value = takeData();
        if (!value || !take(kLineEnd)) return std::nullopt;
        value->name = *name;
        return value;
    }

    std::optional<RegistryKeyRecord> takeKey() {
        if (!take(L"[") || !take(kRoot)) return std::nullopt;
        const std::size_t end = rest.find(kLineEnd);
        if (end == std::wstring_view::npos || end == 0 || rest[end - 1] != L']')
            return std::nullopt;
        RegistryKeyRecord key{std::wstring(rest.substr(0, end - 1)), {}};
        rest.remove_prefix(end + kLineEnd.size());
        while (!take(kLineEnd)) {
            auto value = takeValue();
            if (!value) return std::nullopt;
            key.values.push_back(std::move(*value));
        }
        return key;
    }
};

}  // namespace

std::string WriteRegistryExport(const std::vector<RegistryKeyRecord>& keys) {
    std::wstring text = L"\uFEFF";
    text += kFirstLine;
    text += kLineEnd;
    text += kLineEnd;
    for (const RegistryKeyRecord& key : keys) {
        text += L"[" + std::wstring(kRoot) + key.path + L"]";
        text += kLineEnd;
        for (const RegistryValue& value : key.values) {
            text += value.name.empty() ? L"@" : quoted(value.name);
            text += L"=" + dataText(value);
            text += kLineEnd;
        }
        text += kLineEnd;
    }
    std::vector<std::uint8_t> bytes;
    AppendUtf16(bytes, text);
    return {bytes.begin(), bytes.end()};
}

std::optional<std::vector<RegistryKeyRecord>> ReadRegistryExport(std::string_view file) {
    if (file.size() % 2 != 0) return std::nullopt;
    const std::vector<std::uint8_t> bytes(file.begin(), file.end());
    const std::wstring text = WideFromUtf16(bytes.data(), bytes.size());
    Reader reader{text};
    if (!reader.take(L"\uFEFF") || !reader.take(kFirstLine) || !reader.take(kLineEnd) ||
        !reader.take(kLineEnd)) {
        return std::nullopt;
    }
    std::vector<RegistryKeyRecord> keys;
    while (!reader.rest.empty()) {
        auto key = reader.takeKey();
        if (!key) return std::nullopt;
        keys.push_back(std::move(*key));
    }
    return keys;
}
