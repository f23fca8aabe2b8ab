// The real registry of the user.
#pragma once

#include "fixes/settings/registry.h"

class WindowsRegistry final : public Registry {
  public:
    std::optional<std::vector<std::wstring>> subkeys(const std::wstring& key) override;
    std::optional<std::vector<RegistryValue>> values(const std::wstring& key) override;
    std::uint32_t setValue(const std::wstring& key, const RegistryValue& value) override;
};
