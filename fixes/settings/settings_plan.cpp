#include "fixes/settings/settings_plan.h"

#include <algorithm>
#include <optional>

#include "base/text.h"

namespace {

constexpr std::wstring_view kPreferences = L"Application Preferences";
// The program's key below the version: "CorelDRAW" in version 13, "Draw" since.
constexpr std::wstring_view kPrograms[] = {L"Draw", L"CorelDRAW"};

enum class Target : std::uint8_t { thirty, off, on };

struct SettingName {
    CorelSetting setting;
    Target target;
    std::wstring_view name;  // without blanks, underscores, hyphens and apostrophes
};

// Whole names only: settings of undo's memory, of its docker and of bitmap effects, which have undo
// levels of their own, are called much alike. Undo levels must be a number, the welcome screen a
// flag; a value that is neither is another setting that happens to have such a name. Nothing is
// known about the keys below the preferences, so all of them are searched.
constexpr SettingName kSettingNames[] = {
    {CorelSetting::undoLevels, Target::thirty, L"undolevel"},
    {CorelSetting::undoLevels, Target::thirty, L"undolevels"},
    {CorelSetting::undoLevels, Target::thirty, L"levelsofundo"},
    {CorelSetting::undoLevels, Target::thirty, L"regularundolevels"},
    {CorelSetting::undoLevels, Target::thirty, L"undolevelsregular"},
    {CorelSetting::undoLevels, Target::thirty, L"maxundolevels"},
    {CorelSetting::undoLevels, Target::thirty, L"numundolevels"},
    {CorelSetting::undoLevels, Target::thirty, L"numberofundolevels"},
    {CorelSetting::welcomeScreen, Target::on, L"hidewelcomescreen"},
    {CorelSetting::welcomeScreen, Target::on, L"skipwelcomescreen"},
    {CorelSetting::welcomeScreen, Target::on, L"disablewelcomescreen"},
    {CorelSetting::welcomeScreen, Target::on, L"dontshowwelcomescreen"},
    {CorelSetting::welcomeScreen, Target::on, L"donotshowwelcomescreen"},
    {CorelSetting::welcomeScreen, Target::on, L"nowelcomescreen"},
    {CorelSetting::welcomeScreen, Target::off, L"welcomescreen"},
    {CorelSetting::welcomeScreen, Target::off, L"showwelcomescreen"},
    {CorelSetting::welcomeScreen, Target::off, L"showwelcomescreenatstartup"},
    {CorelSetting::welcomeScreen, Target::off, L"showwelcomescreenonstartup"},
    {CorelSetting::welcomeScreen, Target::off, L"displaywelcomescreen"},
    {CorelSetting::welcomeScreen, Target::off, L"enablewelcomescreen"},
    {CorelSetting::welcomeScreen, Target::off, L"welcomescreenenabled"},
    {CorelSetting::welcomeScreen, Target::off, L"welcomescreenatstartup"},
    {CorelSetting::welcomeScreen, Target::off, L"welcomescreenonstartup"},
};

struct FlagWords {
    std::wstring_view on;
    std::wstring_view off;
};
constexpr FlagWords kFlagWords[] = {
    {L"1", L"0"},    {L"true", L"false"}, {L"True", L"False"}, {L"TRUE", L"FALSE"}, {L"yes", L"no"},
    {L"Yes", L"No"}, {L"YES", L"NO"},     {L"on", L"off"},     {L"On", L"Off"},     {L"ON", L"OFF"},
};

std::wstring simplified(std::wstring_view name) {
    std::wstring simple;
    for (const wchar_t c : name)
        if (c != L' ' && c != L'_' && c != L'-' && c != L'\'') simple.push_back(c);
    return simple;
}

bool isText(const RegistryValue& value) {
    return value.type == kRegistryText || value.type == kRegistryExpandableText;
}

std::optional<RegistryValue> withNumber(const RegistryValue& value, std::uint32_t number) {
    constexpr std::size_t kMostDigits = 5;
    constexpr std::uint32_t kLargest = 99'999;
    RegistryValue after = value;
    if (isText(value)) {
        const std::wstring text = TextOf(value.data);
        const bool isNumber =
            !text.empty() && text.size() <= kMostDigits &&
            std::ranges::all_of(text, [](wchar_t c) { return c >= L'0' && c <= L'9'; });
        if (!isNumber) return std::nullopt;
        if (text != decimalUnsigned(number)) after.data = DataOfText(decimalUnsigned(number));
        return after;
    }
    const auto old = NumberOf(value.data);
    if (value.type != kRegistryNumber || !old || *old > kLargest) return std::nullopt;
    after.data = DataOfNumber(number);
    return after;
}

std::optional<RegistryValue> withFlag(const RegistryValue& value, bool flag) {
    RegistryValue after = value;
    if (!isText(value)) {
        const auto old = NumberOf(value.data);
        if (value.type != kRegistryNumber || !old || *old > 1) return std::nullopt;
        after.data = DataOfNumber(flag ? 1 : 0);
        return after;
    }
    const std::wstring text = TextOf(value.data);
    for (const FlagWords& words : kFlagWords) {
        if (text != words.on && text != words.off) continue;
        const std::wstring_view wanted = flag ? words.on : words.off;
        if (text != wanted) after.data = DataOfText(std::wstring(wanted));
        return after;
    }
    return std::nullopt;
}

// The value as it should be; nothing when it is not of the kind that the setting has.
std::optional<RegistryValue> optimised(const RegistryValue& value, Target target) {
    switch (target) {
        case Target::thirty:
            return withNumber(value, 30);
        case Target::off:
            return withFlag(value, false);
        case Target::on:
            return withFlag(value, true);
    }
    return std::nullopt;
}

void judgeValue(const RegistryKeyRecord& key, const RegistryValue& value, VersionPlan& plan) {
    const std::wstring name = simplified(value.name);
    const auto row = std::ranges::find_if(kSettingNames, [&](const SettingName& known) {
        return equalsIgnoringCase(name, known.name);
    });
    if (row == std::end(kSettingNames)) return;
    auto after = optimised(value, row->target);
    if (!after) return;
    ++plan.found[static_cast<std::size_t>(row->setting)];
    if (*after == value) return;
    plan.changes.push_back({row->setting, plan.version, key.path, value, std::move(*after)});
}

// The number in "24.0"; nothing when the key is not a version's.
std::optional<unsigned> versionNumber(std::wstring_view name) {
    const std::wstring_view major = name.substr(0, name.find(L'.'));
    const auto isDigit = [](wchar_t c) { return c >= L'0' && c <= L'9'; };
    const bool isVersion =
        !major.empty() && major.size() <= 4 && std::ranges::all_of(major, isDigit) &&
        std::ranges::all_of(name.substr(std::min(major.size() + 1, name.size())), isDigit);
    if (!isVersion) return std::nullopt;
    unsigned number = 0;
    for (const wchar_t c : major)
        number = number * 10 + static_cast<unsigned>(c - L'0');
    return number;
}

}  // namespace

std::vector<CorelVersion> ReadCorelVersions(Registry& registry, const std::wstring& corelKey) {
    std::vector<CorelVersion> versions;
    for (const std::wstring& name :
         registry.subkeys(corelKey).value_or(std::vector<std::wstring>())) {
        if (!versionNumber(name)) continue;
        CorelVersion version{name, {}, true};
        const std::wstring versionKey = corelKey + L"\\" + name;
        for (const std::wstring_view program : kPrograms) {
            const std::wstring key =
                versionKey + L"\\" + std::wstring(program) + L"\\" + std::wstring(kPreferences);
            if (!registry.values(key)) continue;
            auto tree = ReadTree(registry, key);
            if (tree)
                std::ranges::move(*tree, std::back_inserter(version.preferences));
            else
                version.isReadable = false;
        }
        versions.push_back(std::move(version));
    }
    std::ranges::stable_sort(versions, {}, [](const CorelVersion& version) {
        return versionNumber(version.name).value_or(0);
    });
    return versions;
}

std::vector<VersionPlan> PlanSettings(const std::vector<CorelVersion>& versions) {
    std::vector<VersionPlan> plans;
    for (const CorelVersion& version : versions) {
        VersionPlan plan;
        plan.version = version.name;
        plan.isReadable = version.isReadable;
        for (const RegistryKeyRecord& key : version.preferences)
            for (const RegistryValue& value : key.values)
                if (version.isReadable) judgeValue(key, value, plan);
        plans.push_back(std::move(plan));
    }
    return plans;
}

std::wstring ValueText(const RegistryValue& value) {
    const auto number = NumberOf(value.data);
    if (value.type == kRegistryNumber && number) return decimalUnsigned(*number);
    return TextOf(value.data);
}

std::wstring ChangeText(const SettingChange& change) {
    return L"CorelDRAW " + change.version + L": " +
           kCorelSettingNames[static_cast<std::size_t>(change.setting)] + L" " +
           ValueText(change.before) + L" -> " + ValueText(change.after) + L" (HKEY_CURRENT_USER\\" +
           change.key + L", " + change.before.name + L")";
}
