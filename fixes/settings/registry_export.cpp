#include "fixes/settings/registry_export.h"

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

}  // namespace

std::optional<std::string> WriteRegistryExport(const std::vector<RegistryKeyRecord>& keys) {
    std::wstring text = L"\uFEFF";
    text += kFirstLine;
    text += kLineEnd;
    text += kLineEnd;
    for (const RegistryKeyRecord& key : keys) {
        if (key.path.find_first_of(L"\r\n") != std::wstring::npos) return std::nullopt;
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
    return std::string(bytes.begin(), bytes.end());
}
