#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "base/text.h"
#include "fixes/settings/registry_export.h"
#include "fixes/settings/settings_change.h"
#include "tests/base/files/fake_file_system.h"
#include "tests/fake_host.h"

namespace {

const std::wstring kCorel = L"Software\\Corel\\CorelDRAW";
const std::wstring kDraw24 = kCorel + L"\\24.0\\Draw\\Application Preferences\\";
const std::wstring kTool = L"C:\\Local\\Mirelo";
const std::wstring kExport = kTool + L"\\backups\\settings_2024-01-17_21-20-00\\settings.reg";

RegistryValue text(const wchar_t* name, const wchar_t* data) {
    return {name, kRegistryText, DataOfText(data)};
}
RegistryValue number(const wchar_t* name, std::uint32_t data) {
    return {name, kRegistryNumber, DataOfNumber(data)};
}

class FakeRegistry final : public Registry {
  public:
    std::map<std::wstring, std::vector<RegistryValue>> keys;
    bool forgets = false;

    std::optional<std::vector<std::wstring>> subkeys(const std::wstring& key) override {
        std::vector<std::wstring> names;
        for (const auto& [path, values] : keys) {
            if (!path.starts_with(key + L"\\")) continue;
            std::wstring name = path.substr(key.size() + 1);
            name.resize(std::min(name.find(L'\\'), name.size()));
            if (std::ranges::find(names, name) == names.end()) names.push_back(name);
        }
        return names;
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

struct Settings {
    Settings() {
        registry.keys = {
            {kDraw24 + L"General",
             {number(L"UndoLevels", 99), number(L"BitmapUndoLevels", 2), text(L"Other", L"99")}},
            {kDraw24 + L"Framework", {text(L"ShowWelcomeScreen", L"true")}},
            {kCorel + L"\\9.0\\Draw\\Application Preferences\\General\\Deep",
             {text(L"Undo Levels", L"20"), text(L"Hide Welcome Screen", L"0")}},
            {kCorel + L"\\13.0\\CorelDRAW\\Application Preferences\\HTML Export",
             {text(L"x", L"1")}},
            {kCorel + L"\\13.0\\PHOTO-PAINT\\Application Preferences\\G",
             {number(L"UndoLevels", 9)}},
        };
        files.addFolder(parentFolder(kTool));
    }
    /// The report of one press.
    std::wstring run() {
        fake.lines.clear();
        ActionHost host = fake.host();
        host.confirm = [&, ask = host.confirm](auto&&... arguments) {
            if (whileAsking) whileAsking();
            return ask(arguments...);
        };
        const auto now = [] { return BackupContext::Now{1, 133'500'000'000'000'000}; };
        OptimizeSettings(
            host,
            {registry, {files, {}, L"", {kTool, L""}, [this] { return running; }, now}, kCorel});
        return fake.report();
    }

    FakeRegistry registry;
    FakeFileSystem files;
    FakeHost fake;
    RunningPrograms running;
    std::function<void()> whileAsking;
};

}  // namespace

TEST(SettingsPlan, FindsValuesByNameKeepsTheirTypeAndLeavesTheRest) {
    const auto changeOf = [](const RegistryValue& before) {
        const auto plans = PlanSettings({{L"24.0", {{kDraw24 + L"G", {before}}}, true}});
        const VersionPlan& plan = plans.at(0);
        return plan.changes.empty() ? std::nullopt : std::optional(plan.changes[0].after);
    };
    const struct {
        const wchar_t *name, *before, *after;
    } texts[] = {
        {L"undo_levels", L"150", L"30"},
        {L"Show Welcome Screen at Startup", L"True", L"False"},
        {L"Don't Show Welcome Screen", L"no", L"yes"},
    };
    for (const auto& c : texts)
        EXPECT_EQ(changeOf(text(c.name, c.before)), text(c.name, c.after)) << c.name;
    EXPECT_EQ(changeOf(number(L"Regular Undo Levels", 0)), number(L"Regular Undo Levels", 30));
    EXPECT_EQ(changeOf({L"UndoLevel", kRegistryExpandableText, DataOfText(L"99")}),
              (RegistryValue{L"UndoLevel", kRegistryExpandableText, DataOfText(L"30")}));
    const RegistryValue others[] = {
        {L"UndoLevels", kRegistryText, {0x33, 0, 0x30, 0}},  // 30, not terminated
        {L"UndoLevels", kRegistryBinary, {31, 0, 0, 0}},
        number(L"BitmapEffectsUndoLevels", 2),
        number(L"MaxUndoMemory", 512),
        number(L"UndoLevels", 0xFFFFFFFF),
        text(L"UndoLevels", L"many"),
        text(L"UndoLevels", L"123456"),
        text(L"ShowWelcomeScreen", L"800,600"),
        number(L"ShowWelcomeScreenTips", 1),
    };
    for (const RegistryValue& other : others)
        EXPECT_EQ(changeOf(other), std::nullopt) << utf8FromWide(other.name);
}

TEST(Settings, AsksExportsChangesAndSaysEach) {
    Settings settings;
    // The keys go into the export whole, as they were.
    const std::wstring deep = kCorel + L"\\9.0\\Draw\\Application Preferences\\General\\Deep";
    std::vector<RegistryKeyRecord> exported;
    for (const std::wstring& key : {kDraw24 + L"Framework", kDraw24 + L"General", deep})
        exported.push_back({key, settings.registry.keys.at(key)});
    const std::wstring hkcu = L" (HKEY_CURRENT_USER\\";
    const std::wstring changes[] = {
        L"CorelDRAW 9.0: welcome screen 0 -> 1" + hkcu + deep + L", Hide Welcome Screen)\n",
        L"CorelDRAW 24.0: undo levels 99 -> 30" + hkcu + kDraw24 + L"General, UndoLevels)\n",
    };
    const std::wstring log = settings.run();
    for (const std::wstring& part :
         {std::wstring(L"13.0: no value for the undo levels or the welcome screen was found"),
          L"[OK] 4 of 4 settings changed, in effect when CorelDRAW starts again. The old ones are "
          L"in " +
              kExport})
        EXPECT_NE(log.find(part), std::wstring::npos) << utf8FromWide(log);
    const std::wstring& question = settings.fake.questions.at(0);
    for (const std::wstring& change : changes) {
        EXPECT_NE(log.find(L"[Settings] " + change), std::wstring::npos) << utf8FromWide(log);
        EXPECT_NE(question.find(L"  " + change), std::wstring::npos) << utf8FromWide(question);
    }
    EXPECT_NE(question.find(kExport), std::wstring::npos);
    EXPECT_EQ(settings.files.find(kExport)->contents, WriteRegistryExport(exported));

    // A second press finds nothing to do and exports nothing.
    EXPECT_TRUE(settings.run().ends_with(L"optimal already, nothing was changed.\n"));
    EXPECT_EQ(settings.files.snapshot(kTool + L"\\backups").size(), 2U);
}

TEST(Settings, ChangesNothingWhenItMayNot) {
    const struct {
        std::function<void(Settings&)> arrange;
        const wchar_t* line;
    } cases[] = {
        {[](Settings& s) { s.whileAsking = [&s] { s.running.coreldraw = true; }; },
         L"[Settings] [WARN] CorelDRAW is running"},
        {[](Settings& s) { s.fake.consents = false; },
         L"[Settings] Cancelled, nothing was changed."},
        {[](Settings& s) { s.files.add(kTool, "a file"); }, L"[Settings] Failed to export"},
        {[](Settings& s) { s.files.spoilsWriting = true; }, L"does not hold what was written"},
        {[](Settings& s) { s.registry.keys[kDraw24 + L"General\\a\r\nb"] = {}; },
         L"[Settings] Failed to export"},
        {[](Settings& s) { s.registry.forgets = true; }, L"[Settings] [WARN] 0 of 4 settings"},
    };
    for (const auto& c : cases) {
        Settings settings;
        c.arrange(settings);
        const auto before = settings.registry.keys;
        const std::wstring log = settings.run();
        EXPECT_TRUE(settings.registry.keys == before) << c.line;
        EXPECT_NE(log.find(c.line), std::wstring::npos) << utf8FromWide(log);
    }

    Settings settings;
    RegistryValue& undo = settings.registry.keys.at(kDraw24 + L"General")[0];
    settings.whileAsking = [&] { undo = number(L"UndoLevels", 50); };
    EXPECT_NE(settings.run().find(L"UndoLevels): the value has changed meanwhile"),
              std::wstring::npos);
    EXPECT_EQ(undo, number(L"UndoLevels", 50));
}
