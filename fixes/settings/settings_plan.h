// CorelDRAW's own settings, as far as they slow it down: undo levels 30, welcome screen off. The
// values have no public description and differ between versions, so they are looked for among those
// that are there; none is ever created.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "fixes/settings/registry.h"

enum class CorelSetting : std::uint8_t { undoLevels, welcomeScreen };
inline constexpr std::size_t kCorelSettingCount = 2;
inline constexpr std::array<const wchar_t*, kCorelSettingCount> kCorelSettingNames = {
    L"undo levels", L"welcome screen"};

/// One version of CorelDRAW that left settings for this user.
struct CorelVersion {
    std::wstring name;  // the name of its key: "24.0"
    /// The keys "Application Preferences" with all below them.
    std::vector<RegistryKeyRecord> preferences;
    bool isReadable = true;
};

/// The versions below `corelKey`, oldest first.
std::vector<CorelVersion> ReadCorelVersions(Registry& registry, const std::wstring& corelKey);

struct SettingChange {
    CorelSetting setting = CorelSetting::undoLevels;
    std::wstring version;
    std::wstring key;
    RegistryValue before;
    RegistryValue after;
};

struct VersionPlan {
    std::wstring version;
    bool isReadable = true;
    /// How many values were found for each setting, as they should be or not.
    std::array<std::size_t, kCorelSettingCount> found{};
    std::vector<SettingChange> changes;
};

/// What would change, judged by the one table of patterns.
std::vector<VersionPlan> PlanSettings(const std::vector<CorelVersion>& versions);

/// What a value shows: its text or its number.
std::wstring ValueText(const RegistryValue& value);

/// "CorelDRAW 24.0: undo levels 99 -> 30 (HKEY_CURRENT_USER\...\General, UndoLevels)".
std::wstring ChangeText(const SettingChange& change);
