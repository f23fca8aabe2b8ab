// A user's folders with the traces of two CorelDRAW versions and much that must not be touched.
#pragma once

#include <set>

#include "base/text.h"
#include "fixes/cleanup/cleanup.h"
#include "fixes/cleanup/restore.h"
#include "tests/base/files/fake_file_system.h"
#include "tests/fake_host.h"

inline const std::wstring kUser = L"C:\\Users\\Zo\u00eb";
inline const CleanupRoots kRoots = {kUser + L"\\Roaming", kUser + L"\\Local",
                                    kUser + L"\\Local\\Temp", L"C:\\ProgramData"};
inline const std::wstring kCache =
    kRoots[1] + L"\\Corel\\CorelDRAW Graphics Suite X7\\Draw\\PreviewCache\\";
/// Where the tool folder lies: beside the profile, where a rename reaches it, or on another drive.
inline const std::wstring kNear = kRoots[1] + L"\\Mirelo", kFar = L"D:\\Mirelo";

struct StagedFile {
    const wchar_t* path;  // from the drive, "~" for the user's folder
    bool isCleaned;
    const char* contents = "";  // the path for none
};

inline constexpr StagedFile kStagedFiles[] = {
    {LR"(~\Local\Microsoft\Windows\WER\ReportArchive\AppCrash_CorelDRW.exe_1a2b\Report.wer)", true},
    {LR"(~\Local\Microsoft\Windows\WER\ReportArchive\AppCrash_CorelDRW.exe_1a2b\sub\m.hdmp)", true},
    {LR"(~\Local\Microsoft\Windows\WER\ReportQueue\AppHang_coreldrw.EXE_77\Report.wer)", true},
    {LR"(~\Local\Microsoft\Windows\WER\ReportArchive\AppCrash_winword.exe_1\Report.wer)", false},
    {LR"(\ProgramData\Microsoft\Windows\WER\ReportQueue\AppHang_CorelDRW.exe_3\Report.wer)", true},
    {LR"(~\Local\CrashDumps\CorelDRW.exe.4711.dmp)", true},
    {LR"(~\Local\CrashDumps\CorelDRW.exe(1).4711.dmp)", true},
    {LR"(~\Local\Temp\CDR1F3.tmp)", true},
    {LR"(~\Local\Temp\XCDR1.tmp)", false},
    {LR"(~\Local\Temp\CDR2.tmp)", false, "RIFF....CDRE"},
    {LR"(~\Local\Temp\CDR3.tmp)", false, "PK\x03\x04 a container"},
    {LR"(~\Local\Temp\Corel\plan.cdr_)", false},
    {LR"(~\Local\Temp\Corel\Backup_of_a.tmp)", false},
    {LR"(~\Local\Temp\Corel\a:b)", false},
    {LR"(~\Local\Temp\Corel\errors.log)", true},
    {LR"(~\Local\Temp\Corel\brand.cpl)", false},
    {LR"(~\Roaming\Corel\Messages\540\EN\cache.dat)", true},
    {LR"(~\Local\Corel\CorelDRAW Graphics Suite X7\Draw\PreviewCache\one.png)", true},
    {L"~\\Local\\Corel\\CorelDRAW Graphics Suite X7\\Draw\\PreviewCache\\a\\b\\\u4E2D\U0001F600'",
     true},
    {LR"(~\Local\Corel\CorelDRAW Graphics Suite X7\Draw\PreviewCache\macros.GMS)", false},
    {LR"(~\Local\Corel\CorelDRAW Graphics Suite X7\PHOTO-PAINT\PreviewCache\three.png)", true},
    {LR"(~\Local\Corel\CorelDRAW Graphics Suite 2024\Draw\PreviewCache\four.png)", true},
    {LR"(~\Local\Corel\PaintShop Pro\Draw\PreviewCache\five.png)", false},
};

inline std::wstring stagedPath(const StagedFile& file) {
    return *file.path == L'~' ? kUser + (file.path + 1) : std::wstring(L"C:") + file.path;
}

struct Stage {
    explicit Stage(const std::wstring& home = kNear) {
        context.homes.local = home;
        for (const StagedFile& file : kStagedFiles)
            files.add(stagedPath(file), *file.contents ? file.contents : utf8FromWide(file.path));
        files.find(kRoots[2] + L"\\CDR1F3.tmp")->attributes = 0x23;
        files.addFolder(parentFolder(home));
    }

    CleanupPlan plan() {
        return PlanCleanup(ListCleanupItems(files, context.roots, running.photoPaint),
                           context.roots, utc);
    }
    std::wstring newBackup() {
        return NewBackupFolder(files, context.homes, kCleanupBackup, now().local);
    }
    [[nodiscard]] BackupContext::Now now() const { return {utc, utc + 36'000'000'000}; }
    CleanupReport clean() { return ExecuteCleanup(host.host(), context, plan(), newBackup()); }
    std::wstring press(void (&act)(const ActionHost&, const BackupContext&)) {
        host.lines.clear();
        act(host.host(), context);
        return host.report();
    }
    std::wstring restore() { return press(BringBack); }
    /// Without the tool's own folder, and with folder times only for those that a cleanup removes.
    FakeFileSystem::Snapshot profile() {
        FakeFileSystem::Snapshot seen = files.snapshot(L"C:");
        std::erase_if(seen, [](const auto& item) { return item.first.starts_with(kNear); });
        for (auto& [path, node] : seen)
            if (node.type == EntryType::folder && !holds(path, L"_CorelDRW") &&
                !holds(path, L"PreviewCache\\a"))
                node.created = node.modified = 0;
        return seen;
    }
    std::multiset<std::string> contents() {
        std::multiset<std::string> all;
        for (const wchar_t* drive : {L"C:", L"D:"})
            for (const auto& [path, node] : files.snapshot(drive))
                if (node.type == EntryType::file) all.insert(node.contents);
        return all;
    }
    /// Runs an act with a kill at the given step; true when it came that far.
    template <typename Act>
    bool isKilled(int step, const Act& act) {
        files.steps = 0;
        files.killAt = step;
        utc += 60 * kTicksPerSecond;
        try {
            act();
        } catch (const Killed&) {
        }
        files.killAt = std::numeric_limits<int>::max();
        return files.steps >= step;
    }

    FakeFileSystem files;
    FakeHost host;
    RunningPrograms running;
    FileTicks utc = 133'500'000'000'000'000;
    BackupContext context{files,
                          kRoots,
                          L"",
                          {L"", kRoots[0] + L"\\Mirelo"},
                          [this] { return running; },
                          [this] { return now(); }};
};
