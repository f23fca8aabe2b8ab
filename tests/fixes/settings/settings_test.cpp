#include <gtest/gtest.h>

#include <map>
#include <set>

#include "fixes/settings/registry_export.h"
#include "fixes/settings/settings_change.h"
#include "tests/fixes/cleanup/staged_profile.h"

namespace {

const std::wstring kCorel = L"Software\\Corel\\CorelDRAW";
const std::wstring kDraw24 = kCorel + L"\\24.0\\Draw\\Application Preferences\\";
const std::wstring kDeep = kCorel + L"\\9.0\\Draw\\Application Preferences\\General\\Deep";

RegistryValue text(const wchar_t* name, const wchar_t* data) {
    return {name, kRegistryText, DataOfText(data)};
}
RegistryValue number(const wchar_t* name, std::uint32_t data) {
    return {name, kRegistryNumber, DataOfNumber(data)};
}

struct FakeRegistry final : Registry {
    std::map<std::wstring, std::vector<RegistryValue>> keys;
    bool forgets = false;

    std::optional<std::vector<std::wstring>> subkeys(const std::wstring& key) override {
        std::set<std::wstring> names;
        for (const auto& [path, values] : keys)
            if (path.starts_with(key + L"\\"))
                names.insert(
                    path.substr(key.size() + 1, path.find(L'\\', key.size() + 1) - key.size() - 1));
        return std::vector(names.begin(), names.end());
    }
    std::optional<std::vector<RegistryValue>> values(const std::wstring& key) override {
        if (keys.contains(key)) return keys.at(key);
        if (subkeys(key)->empty()) return std::nullopt;
        return std::vector<RegistryValue>();
    }
    std::uint32_t setValue(const std::wstring& key, const RegistryValue& value) override {
        for (RegistryValue& old : keys.at(key))
            if (old.name == value.name && !forgets) old = value;
        return 0;
    }
};

struct Settings : Stage {
    Settings() {
        registry.keys = {
            {kDraw24 + L"General",
             {number(L"UndoLevels", 99), number(L"BitmapUndoLevels", 2), text(L"Other", L"99")}},
            {kDraw24 + L"Framework", {text(L"ShowWelcomeScreen", L"true")}},
            {kDeep, {text(L"Undo Levels", L"20"), text(L"Hide Welcome Screen", L"0")}},
            {kCorel + L"\\13.0\\CorelDRAW\\Application Preferences\\HTML", {text(L"x", L"1")}},
            {kCorel + L"\\13.0\\PAINT\\Application Preferences", {number(L"UndoLevels", 9)}},
        };
        context.running = [this] {
            if (!host.questions.empty()) afterTheAnswer();
            return running;
        };
    }
    std::wstring run() {
        host.lines.clear();
        OptimizeSettings(host.host(), {registry, context, kCorel});
        return host.report();
    }

    FakeRegistry registry;
    std::function<void()> afterTheAnswer = [] {};
};

}  // namespace

TEST(SettingsPlan, FindsValuesByNameKeepsTheirTypeAndLeavesTheRest) {
    const auto changeOf = [](const RegistryValue& before) {
        const auto plans = PlanSettings({{L"24.0", {{kDraw24 + L"G", {before}}}, true}});
        return plans[0].changes.empty() ? before : plans[0].changes[0].after;
    };
    const struct {
        RegistryValue before, after;
    } cases[] = {
        {text(L"undo_levels", L"150"), text(L"undo_levels", L"30")},
        {text(L"Don't Show Welcome Screen", L"no"), text(L"Don't Show Welcome Screen", L"yes")},
        {{L"UndoLevel", kRegistryExpandableText, DataOfText(L"99")},
         {L"UndoLevel", kRegistryExpandableText, DataOfText(L"30")}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(changeOf(c.before), c.after) << c.before.name;
    for (const RegistryValue& other :
         {RegistryValue{L"UndoLevels", kRegistryBinary, {31, 0, 0, 0}},
          number(L"BitmapEffectsUndoLevels", 2), number(L"MaxUndoMemory", 512),
          number(L"UndoLevels", 0xFFFFFFFF), text(L"UndoLevels", L"many"),
          text(L"ShowWelcomeScreen", L"800,600"), number(L"ShowWelcomeScreenTips", 1)})
        EXPECT_EQ(changeOf(other), other) << other.name;
}

TEST(Settings, AsksExportsChangesAndSaysEach) {
    Settings settings;
    std::vector<RegistryKeyRecord> exported;
    for (const std::wstring& key : {kDraw24 + L"Framework", kDraw24 + L"General", kDeep})
        exported.push_back({key, settings.registry.keys.at(key)});
    const std::wstring file = kNear + L"\\backups\\settings_2024-01-17_22-20-00\\settings.reg";
    const std::wstring welcome = L"CorelDRAW 9.0: welcome screen 0 -> 1 (HKEY_CURRENT_USER\\" +
                                 kDeep + L", Hide Welcome Screen)\n";
    const std::wstring undo = L"CorelDRAW 24.0: undo levels 99 -> 30 (HKEY_CURRENT_USER\\" +
                              kDraw24 + L"General, UndoLevels)\n";
    expectParts(settings.run(),
                {L"13.0: no value for the undo levels or the welcome screen was found",
                 L"[Settings] " + welcome, L"[Settings] " + undo,
                 L"[OK] 4 of 4 settings changed, in effect when CorelDRAW starts again. The old "
                 L"ones are in " +
                     file});
    expectParts(settings.host.questions.at(0), {L"  " + welcome, L"  " + undo, file});
    EXPECT_EQ(settings.files.find(file)->contents, WriteRegistryExport(exported));

    EXPECT_TRUE(settings.run().ends_with(L"optimal already, nothing was changed.\n"));
}

TEST(Settings, ChangesNothingWhenItMayNot) {
    const struct {
        void (*arrange)(Settings&);
        const wchar_t* line;
    } cases[] = {
        {[](Settings& s) { s.afterTheAnswer = [&s] { s.running.coreldraw = true; }; },
         L"[Settings] [WARN] CorelDRAW is running"},
        {[](Settings& s) { s.host.consents = false; },
         L"[Settings] Cancelled, nothing was changed."},
        {[](Settings& s) { s.files.spoilsWriting = true; }, L"does not hold what was written"},
        {[](Settings& s) { s.registry.keys[kDraw24 + L"General\\a\r\nb"] = {}; },
         L"[Settings] Failed to export"},
        {[](Settings& s) { s.registry.forgets = true; }, L"[Settings] [WARN] 0 of 4 settings"},
    };
    for (const auto& c : cases) {
        Settings settings;
        c.arrange(settings);
        const auto before = settings.registry.keys;
        expectParts(settings.run(), {c.line});
        EXPECT_TRUE(settings.registry.keys == before) << c.line;
    }
    Settings settings;
    RegistryValue& undo = settings.registry.keys.at(kDraw24 + L"General")[0];
    settings.afterTheAnswer = [&] { undo = number(L"UndoLevels", 50); };
    expectParts(settings.run(), {L"UndoLevels): the value has changed meanwhile"});
    EXPECT_EQ(undo, number(L"UndoLevels", 50));
}
