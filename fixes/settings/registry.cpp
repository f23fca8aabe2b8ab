#include "fixes/settings/registry.h"

namespace {

// A key's name has at most 255 characters and keys nest at most 512 deep; a tree of settings has a
// few hundred keys.
constexpr std::size_t kMostKeys = 20'000;

}  // namespace

std::optional<std::vector<RegistryKeyRecord>> ReadTree(Registry& registry,
                                                       const std::wstring& key) {
    std::vector<RegistryKeyRecord> tree = {{key, {}}};
    for (std::size_t i = 0; i < tree.size(); ++i) {
        const std::wstring path = tree[i].path;
        auto values = registry.values(path);
        const auto subkeys = registry.subkeys(path);
        if (!values || !subkeys || tree.size() + subkeys->size() > kMostKeys) return std::nullopt;
        tree[i].values = std::move(*values);
        for (const std::wstring& name : *subkeys)
            tree.push_back({path + L"\\" + name, {}});
    }
    return tree;
}

void AppendUtf16(std::vector<std::uint8_t>& bytes, std::wstring_view text) {
    const auto append = [&](std::uint32_t unit) {
        bytes.push_back(static_cast<std::uint8_t>(unit & 0xFF));
        bytes.push_back(static_cast<std::uint8_t>(unit >> 8 & 0xFF));
    };
    for (const wchar_t c : text) {
        const auto codePoint = static_cast<char32_t>(c);
        if (sizeof(wchar_t) == 2 || codePoint < 0x10000) {
            append(codePoint);
            continue;
        }
        append(0xD800 + ((codePoint - 0x10000) >> 10));
        append(0xDC00 + ((codePoint - 0x10000) & 0x3FF));
    }
}

std::wstring WideFromUtf16(const std::uint8_t* bytes, std::size_t count) {
    const auto unitAt = [&](std::size_t i) {
        return static_cast<std::uint32_t>(bytes[i] | bytes[i + 1] << 8);
    };
    std::wstring text;
    text.reserve(count / 2);
    for (std::size_t i = 0; i + 1 < count; i += 2) {
        std::uint32_t unit = unitAt(i);
        const bool isPair = sizeof(wchar_t) > 2 && unit >= 0xD800 && unit < 0xDC00 &&
                            i + 3 < count && unitAt(i + 2) >= 0xDC00 && unitAt(i + 2) < 0xE000;
        if (isPair) {
            unit = 0x10000 + ((unit - 0xD800) << 10) + (unitAt(i + 2) - 0xDC00);
            i += 2;
        }
        text.push_back(static_cast<wchar_t>(unit));
    }
    return text;
}

std::wstring TextOf(const std::vector<std::uint8_t>& data) {
    const std::wstring text = WideFromUtf16(data.data(), data.size());
    return text.substr(0, text.find(L'\0'));
}

std::vector<std::uint8_t> DataOfText(const std::wstring& text) {
    std::vector<std::uint8_t> data;
    AppendUtf16(data, text);
    data.insert(data.end(), 2, 0);
    return data;
}

std::optional<std::uint32_t> NumberOf(const std::vector<std::uint8_t>& data) {
    if (data.size() != 4) return std::nullopt;
    std::uint32_t number = 0;
    for (std::size_t i = 4; i-- > 0;)
        number = number << 8 | data[i];
    return number;
}

std::vector<std::uint8_t> DataOfNumber(std::uint32_t number) {
    std::vector<std::uint8_t> data;
    for (int i = 0; i < 4; ++i, number >>= 8)
        data.push_back(static_cast<std::uint8_t>(number & 0xFF));
    return data;
}
