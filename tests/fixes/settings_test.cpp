#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "base/text.h"
#include "fixes/backup_folders.h"
#include "fixes/registry_export.h"
#include "fixes/settings_change.h"
#include "tests/fixes/fake_file_system.h"

namespace {

const std::wstring kCorel = L"Software\\Corel\\CorelDRAW";

RegistryValue text(const wchar_t* name, const wchar_t* data) {
    return {name, kRegistryText, DataOfText(data)};
}
RegistryValue number(const wchar_t* name, std::uint32_t data) {
    return {name, kRegistryNumber, DataOfNumber(data)};
}

class FakeRegistry final : public Registry {
  public:
    std::map<std::wstring, std::vector<RegistryValue>> keys;
    bool refuses = false;
    bool forgets = false;
    int written = 0;

    std::optional<std::vector<std::wstring>> subkeys(const std::wstring& key) override {
        std::vector<std::wstring> names;
        for (const auto& [path, values] : keys) {
            if (!path.starts_with(key + L"\\")) continue;
            const std::wstring rest = path.substr(key.size() + 1);
            const std::wstring name = rest.substr(0, rest.find(L'\\'));
            if (std::ranges::find(names, name) == names.end()) names.push_back(name);
        }
        if (names.empty() && !keys.contains(key)) return std::nullopt;
        return names;
    }
    std::optional<std::vector<RegistryValue>> values(const std::wstring& key) override {
        const auto found = keys.find(key);
        if (found != keys.end()) return found->second;
        if (subkeys(key)) return std::vector<RegistryValue>();
        return std::nullopt;
    }
    std::uint32_t setValue(const std::wstring& key, const RegistryValue& value) override {
        if (refuses) return 5;
        ++written;
        for (RegistryValue& old : keys.at(key))
            if (old.name == value.name && !forgets) old = value;
        return 0;
    }
};

struct Settings {
    Settings() {
        registry.keys[kCorel + L"\\24.0\\Draw\\Application Preferences\\General"] = {
            number(L"UndoLevels", 99), number(L"BitmapUndoLevels", 2), text(L"Other", L"99")};
        registry.keys[kCorel + L"\\24.0\\Draw\\Application Preferences\\Framework"] = {
            text(L"ShowWelcomeScreen", L"true")};
        registry.keys[kCorel + L"\\9.0\\Draw\\Application Preferences\\General\\Deep"] = {
            text(L"Undo Levels", L"20"), text(L"Hide Welcome Screen", L"0")};
        registry.keys[kCorel + L"\\13.0\\CorelDRAW\\Application Preferences\\HTML Export"] = {
            text(L"x", L"1")};
        registry.keys[kCorel + L"\\13.0\\PHOTO-PAINT\\Application Preferences\\General"] = {
            number(L"UndoLevels", 99)};
        registry.keys[kCorel + L"\\Shared\\Draw\\Application Preferences\\General"] = {
            number(L"UndoLevels", 99)};
        files.addFolder(L"C:\\Roaming");
    }
    void run() {
        log.clear();
        questions.clear();
        const Shell shell = {
            [&](std::wstring line) { log.push_back(std::move(line)); },
            [&](const std::wstring& question, const std::wstring&, ConfirmStyle style) {
                EXPECT_EQ(style, ConfirmStyle::warning);
                questions.push_back(question);
                if (whileAsking) whileAsking();
                return answer;
            },
            [](std::wstring) {}};
        OnOptimizeSettings(shell, {registry,
                                   {files,
                                    {},
                                    L"C:\\Roaming\\Mirelo",
                                    [this] { return isCorelRunning; },
                                    [] {
                                        return BackupWorld::Now{1, 133'500'000'000'000'000};
                                    }},
                                   kCorel});
    }
    std::wstring logText() const {
        std::wstring all;
        for (const std::wstring& line : log)
            all += line + L"\n";
        return all;
    }

    FakeRegistry registry;
    FakeFileSystem files;
    bool answer = true;
    bool isCorelRunning = false;
    std::function<void()> whileAsking;
    std::vector<std::wstring> log, questions;
};

const std::wstring kExport =
    L"C:\\Roaming\\Mirelo\\backups\\settings_2024-01-17_21-20-00\\settings.reg";

}  // namespace

TEST(SettingsPlan, FindsValuesByNameKeepsTheirTypeAndLeavesTheRest) {
    const RegistryValue none;
    const struct {
        RegistryValue before;
        RegistryValue after;  // `none` when the value is not one of ours
    } cases[] = {
        {number(L"UndoLevels", 99), number(L"UndoLevels", 30)},
        {number(L"Regular Undo Levels", 0), number(L"Regular Undo Levels", 30)},
        {text(L"undo_levels", L"150"), text(L"undo_levels", L"30")},
        {{L"UndoLevel", kRegistryExpandableText, DataOfText(L"99")},
         {L"UndoLevel", kRegistryExpandableText, DataOfText(L"30")}},
        {text(L"UndoLevels", L"30"), text(L"UndoLevels", L"30")},
        {{L"UndoLevels", kRegistryText, {0x33, 0, 0x30, 0}},
         {L"UndoLevels", kRegistryText, {0x33, 0, 0x30, 0}}},
        {number(L"BitmapEffectsUndoLevels", 2), none},
        {number(L"UndoLevels", 0xFFFFFFFF), none},
        {text(L"UndoLevels", L""), none},
        {text(L"UndoLevels", L"many"), none},
        {text(L"UndoLevels", L"123456"), none},
        {text(L"UndoDocker", L"1"), none},
        {{L"UndoLevels", kRegistryBinary, {30, 0, 0, 0}}, none},
        {text(L"ShowWelcomeScreen", L"1"), text(L"ShowWelcomeScreen", L"0")},
        {text(L"Show Welcome Screen at Startup", L"True"),
         text(L"Show Welcome Screen at Startup", L"False")},
        {number(L"WelcomeScreen", 1), number(L"WelcomeScreen", 0)},
        {number(L"DontShowWelcomeScreen", 0), number(L"DontShowWelcomeScreen", 1)},
        {text(L"Don't Show Welcome Screen", L"no"), text(L"Don't Show Welcome Screen", L"yes")},
        {number(L"ShowWelcomeScreen", 2), none},
        {text(L"ShowWelcomeScreen", L"800,600"), none},
        {number(L"WelcomeScreenWidth", 1), none},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(utf8FromWide(c.before.name + L" " + ValueText(c.before)));
        const auto plans =
            PlanSettings({{L"24.0",
                           {{kCorel + L"\\24.0\\Draw\\Application Preferences\\G", {c.before}}},
                           true}});
        ASSERT_EQ(plans.size(), 1U);
        EXPECT_EQ(plans[0].found[0] + plans[0].found[1], c.after == none ? 0U : 1U);
        const bool isChange = !(c.after == none) && !(c.after == c.before);
        ASSERT_EQ(plans[0].changes.size(), isChange ? 1U : 0U);
        EXPECT_TRUE(!isChange || plans[0].changes[0].after == c.after);
    }
}

TEST(Settings, AsksExportsChangesAndSaysEach) {
    Settings settings;
    const auto before = settings.registry.keys;
    settings.run();
    const std::wstring expected =
        L"[Settings] CorelDRAW 13.0: no value for the undo levels or the welcome screen was "
        L"found, left alone.\n"
        L"[Settings] CorelDRAW 9.0: undo levels 20 -> 30\n"
        L"[Settings] CorelDRAW 9.0: welcome screen 0 -> 1\n"
        L"[Settings] CorelDRAW 24.0: welcome screen true -> false\n"
        L"[Settings] CorelDRAW 24.0: undo levels 99 -> 30\n"
        L"[Settings] [OK] 4 of 4 settings changed, in effect when CorelDRAW starts again. The old "
        L"ones are in " +
        kExport + L"\n";
    EXPECT_EQ(settings.logText(), expected);
    ASSERT_EQ(settings.questions.size(), 1U);
    EXPECT_NE(settings.questions[0].find(L"CorelDRAW 24.0: undo levels 99 -> 30\n"),
              std::wstring::npos);
    EXPECT_NE(settings.questions[0].find(kExport), std::wstring::npos);

    // The export holds the keys whole, as they were.
    const auto exported = ReadRegistryExport(settings.files.find(kExport)->contents);
    ASSERT_TRUE(exported);
    ASSERT_EQ(exported->size(), 3U);
    for (const RegistryKeyRecord& key : *exported)
        EXPECT_EQ(key.values, before.at(key.path));
    EXPECT_EQ(settings.registry.written, 4);

    // A second press finds nothing to do and exports nothing.
    settings.run();
    EXPECT_EQ(settings.questions.size(), 0U);
    EXPECT_TRUE(settings.log.back().starts_with(L"[Settings] [OK] "));
    EXPECT_EQ(ListBackups(settings.files, L"C:\\Roaming\\Mirelo", kSettingsBackup).size(), 1U);
}

TEST(Settings, ChangesNothingWhenItMayNot) {
    const struct {
        const char* what;
        std::function<void(Settings&)> arrange;
        const wchar_t* lastLine;
    } cases[] = {
        {"running", [](Settings& s) { s.isCorelRunning = true; },
         L"[Settings] [WARN] CorelDRAW is running"},
        {"started meanwhile",
         [](Settings& s) { s.whileAsking = [&s] { s.isCorelRunning = true; }; },
         L"[Settings] [WARN] CorelDRAW is running"},
        {"no", [](Settings& s) { s.answer = false; }, L"[Settings] Cancelled"},
        {"no CorelDRAW", [](Settings& s) { s.registry.keys.clear(); }, L"[Settings] No settings"},
        {"no folder for the export",
         [](Settings& s) { s.files.add(L"C:\\Roaming\\Mirelo", "file"); },
         L"[Settings] Failed to export"},
        {"a key that no file can hold",
         [](Settings& s) {
             s.registry
                 .keys[kCorel + L"\\24.0\\Draw\\Application Preferences\\General\\a\r\nb"] = {};
         },
         L"[Settings] Failed to export"},
        {"refused", [](Settings& s) { s.registry.refuses = true; }, L"[Settings] [WARN] 0 of 4"},
        {"not kept", [](Settings& s) { s.registry.forgets = true; }, L"[Settings] [WARN] 0 of 4"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        Settings settings;
        c.arrange(settings);
        const auto before = settings.registry.keys;
        settings.run();
        EXPECT_TRUE(settings.registry.keys == before);
        ASSERT_FALSE(settings.log.empty());
        EXPECT_TRUE(settings.log.back().starts_with(c.lastLine))
            << utf8FromWide(settings.logText());
    }
}

TEST(Settings, LeavesAValueThatChangedMeanwhile) {
    Settings settings;
    auto& general =
        settings.registry.keys[kCorel + L"\\24.0\\Draw\\Application Preferences\\General"];
    settings.whileAsking = [&] { general[0] = number(L"UndoLevels", 50); };
    settings.run();
    EXPECT_EQ(general[0], number(L"UndoLevels", 50));
    EXPECT_NE(settings.logText().find(L"changed meanwhile"), std::wstring::npos);
    EXPECT_TRUE(settings.log.back().starts_with(L"[Settings] [WARN] 3 of 4"));
}
