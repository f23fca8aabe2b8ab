#include "fixes/settings/settings_change.h"

#include <algorithm>
#include <set>

#include "base/text.h"
#include "fixes/settings/registry_export.h"

namespace {

const std::wstring kPrefix = L"[Settings] ";

const RegistryValue* findValue(const std::vector<RegistryValue>& values, const std::wstring& name) {
    const auto found = std::ranges::find_if(
        values, [&](const RegistryValue& value) { return equalsIgnoringCase(value.name, name); });
    return found == values.end() ? nullptr : &*found;
}

// The keys to export, each once: a key is exported with everything below it.
std::set<std::wstring> exportRoots(const std::vector<SettingChange>& changes) {
    std::set<std::wstring> roots;
    for (const SettingChange& change : changes)
        roots.insert(change.key);
    std::erase_if(roots, [keys = roots](const std::wstring& key) {
        return std::ranges::any_of(
            keys, [&](const std::wstring& outer) { return key.starts_with(outer + L"\\"); });
    });
    return roots;
}

bool stopForCorel(const ActionHost& host, const SettingsContext& context) {
    if (!context.backup.running().coreldraw) return false;
    host.appendLog(kPrefix +
                   L"[WARN] CorelDRAW is running and writes its settings back when it closes. "
                   L"Close it first; nothing was changed.");
    return true;
}

void reportFindings(const ActionHost& host, const std::vector<VersionPlan>& plans) {
    for (const VersionPlan& plan : plans) {
        const std::wstring version = kPrefix + L"CorelDRAW " + plan.version + L": ";
        if (!plan.isReadable) {
            host.appendLog(version + L"[WARN] the settings cannot be read whole, left alone.");
            continue;
        }
        std::wstring missing;
        for (std::size_t i = 0; i < kCorelSettingCount; ++i) {
            if (plan.found[i] > 0) continue;
            missing += missing.empty() ? L"no value for the " : L" or the ";
            missing += kCorelSettingNames[i];
        }
        if (!missing.empty()) host.appendLog(version + missing + L" was found, left alone.");
    }
}

std::wstring question(const std::vector<SettingChange>& changes, const std::wstring& file) {
    std::wstring text = L"Change these settings in the registry?\n\n";
    for (const SettingChange& change : changes)
        text += L"  " + ChangeText(change) + L"\n";
    return text + L"\nThe keys are exported first, to:\n" + file +
           L"\nOpening that file brings the old settings back.\n\nContinue?";
}

std::wstring outcomeText(const SettingChange& change, ChangeOutcome outcome) {
    switch (outcome) {
        case ChangeOutcome::changed:
            return ChangeText(change);
        case ChangeOutcome::changedMeanwhile:
            return L"[WARN] " + ChangeText(change) +
                   L": the value has changed meanwhile, left alone";
        case ChangeOutcome::refused:
            return L"Failed: " + ChangeText(change) + L", Windows refused it";
        case ChangeOutcome::notKept:
            return L"Failed: " + ChangeText(change) + L", the value did not stay";
    }
    return L"";
}

void applyAll(const ActionHost& host, const SettingsContext& context,
              const std::vector<SettingChange>& changes, const std::wstring& file) {
    std::size_t done = 0;
    for (const SettingChange& change : changes) {
        const ChangeOutcome outcome = ApplyChange(context.registry, change);
        done += outcome == ChangeOutcome::changed ? 1 : 0;
        host.appendLog(kPrefix + outcomeText(change, outcome));
    }
    host.appendLog(
        kPrefix + (done == changes.size() ? L"[OK] " : L"[WARN] ") + decimalUnsigned(done) +
        L" of " + decimalUnsigned(changes.size()) +
        L" settings changed, in effect when CorelDRAW starts again. The old ones are in " + file);
}

void askAndApply(const ActionHost& host, const SettingsContext& context,
                 const std::vector<SettingChange>& changes) {
    const std::wstring file = NewBackupFolder(context.backup.files, context.backup.homes,
                                              kSettingsBackup, context.backup.now().local) +
                              L"\\settings.reg";
    if (!host.confirm(question(changes, file), L"Confirm Settings Optimization",
                      ConfirmStyle::warning)) {
        host.appendLog(kPrefix + L"Cancelled, nothing was changed.");
        return;
    }
    // It may have been started while the question was open.
    if (stopForCorel(host, context)) return;
    const std::wstring reason = ExportKeys(context, changes, file);
    if (!reason.empty()) {
        host.appendLog(kPrefix + L"Failed to export the registry to " + file + L": " + reason +
                       L". Nothing was changed.");
        return;
    }
    applyAll(host, context, changes, file);
}

}  // namespace

std::wstring ExportKeys(const SettingsContext& context, const std::vector<SettingChange>& changes,
                        const std::wstring& file) {
    FileSystem& files = context.backup.files;
    std::vector<RegistryKeyRecord> keys;
    for (const std::wstring& root : exportRoots(changes)) {
        auto tree = ReadTree(context.registry, root);
        if (!tree) return L"the key cannot be read: " + root;
        std::ranges::move(*tree, std::back_inserter(keys));
    }
    const auto text = WriteRegistryExport(keys);
    if (!text) return L"a key has a name that no file can hold";
    FileResult result = CreateBackupFolder(files, context.backup.homes, parentFolder(file));
    if (!result.isDone()) return reasonText(result);
    result = files.writeNew(file, *text);
    // One byte more than was written would show, too.
    if (result.isDone() && files.read(file, text->size() + 1) == text) return L"";
    files.remove(file, nullptr);
    files.removeFolder(parentFolder(file));
    return result.isDone() ? L"the file does not hold what was written" : reasonText(result);
}

ChangeOutcome ApplyChange(Registry& registry, const SettingChange& change) {
    const auto before = registry.values(change.key);
    const RegistryValue* old = before ? findValue(*before, change.before.name) : nullptr;
    if (old == nullptr || *old != change.before) return ChangeOutcome::changedMeanwhile;
    if (registry.setValue(change.key, change.after) != 0) return ChangeOutcome::refused;
    const auto after = registry.values(change.key);
    const RegistryValue* now = after ? findValue(*after, change.after.name) : nullptr;
    return now != nullptr && *now == change.after ? ChangeOutcome::changed : ChangeOutcome::notKept;
}

void OptimizeSettings(const ActionHost& host, const SettingsContext& context) {
    if (stopForCorel(host, context)) return;
    if (context.backup.homes.local.empty()) {
        host.appendLog(kPrefix + L"Failed: the folder for application data cannot be found.");
        return;
    }
    const auto plans = PlanSettings(ReadCorelVersions(context.registry, context.corelKey));
    if (plans.empty()) {
        host.appendLog(kPrefix + L"No settings of CorelDRAW were found in the registry.");
        return;
    }
    reportFindings(host, plans);
    std::vector<SettingChange> changes;
    std::size_t found = 0;
    for (const VersionPlan& plan : plans) {
        changes.insert(changes.end(), plan.changes.begin(), plan.changes.end());
        for (const std::size_t count : plan.found)
            found += count;
    }
    if (changes.empty()) {
        if (found > 0)
            host.appendLog(kPrefix +
                           L"[OK] What was found is optimal already, nothing was changed.");
        return;
    }

    askAndApply(host, context, changes);
}
