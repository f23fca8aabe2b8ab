// Registry keys as plain records, and what reading and changing settings needs of the registry.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// The type numbers of the registry (`REG_SZ` and so on) that this program tells apart.
enum RegistryType : std::uint32_t {
    kRegistryText = 1,
    kRegistryExpandableText = 2,
    kRegistryBinary = 3,
    kRegistryNumber = 4,
};

struct RegistryValue {
    std::wstring name;  // empty for a key's default value
    std::uint32_t type = kRegistryText;
    std::vector<std::uint8_t> data;

    bool operator==(const RegistryValue&) const = default;
};

/// One key with its values; the path starts below HKEY_CURRENT_USER.
struct RegistryKeyRecord {
    std::wstring path;
    std::vector<RegistryValue> values;

    bool operator==(const RegistryKeyRecord&) const = default;
};

/// The user's part of the registry. Paths start below HKEY_CURRENT_USER.
class Registry {
  public:
    virtual ~Registry() = default;

    /// Nothing when there is no such key or it cannot be read whole.
    virtual std::optional<std::vector<std::wstring>> subkeys(const std::wstring& key) = 0;
    virtual std::optional<std::vector<RegistryValue>> values(const std::wstring& key) = 0;
    /// Replaces the data of a value that is there; 0 or the system's error number.
    virtual std::uint32_t setValue(const std::wstring& key, const RegistryValue& value) = 0;
};

/// A key and all below it, outer keys first. Nothing when any of them cannot be read.
std::optional<std::vector<RegistryKeyRecord>> ReadTree(Registry& registry, const std::wstring& key);

/// The characters of a text value up to its terminator; what is left of a half character is
/// dropped.
std::wstring TextOf(const std::vector<std::uint8_t>& data);
std::vector<std::uint8_t> DataOfText(const std::wstring& text);

/// The number in four little-endian bytes; nothing for any other length.
std::optional<std::uint32_t> NumberOf(const std::vector<std::uint8_t>& data);
std::vector<std::uint8_t> DataOfNumber(std::uint32_t number);

/// Characters as UTF-16, little-endian, and back, whatever the width of `wchar_t`. Lone surrogates
/// pass.
void AppendUtf16(std::vector<std::uint8_t>& bytes, std::wstring_view text);
std::wstring WideFromUtf16(const std::uint8_t* bytes, std::size_t count);
