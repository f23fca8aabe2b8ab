// The cleanup and its way back on a file system that dies at every step.
#include "fixes/cleanup/cleanup.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "base/text.h"
#include "fixes/cleanup/backup_folders.h"
#include "fixes/cleanup/restore.h"
#include "tests/fixes/cleanup/staged_profile.h"

namespace {

using Snapshot = std::map<std::wstring, FakeFileSystem::Node>;

// Where the tool folder lies: beside the profile, where a rename reaches it, or on another drive.
const std::wstring kNear = kStagedRoots[0] + L"\\Mirelo";
const std::wstring kFar = L"D:\\Mirelo";

std::wstring joined(const std::vector<std::wstring>& lines) {
    std::wstring text;
    for (const std::wstring& line : lines)
        text += line + L"\n";
    return text;
}

struct Stage {
    explicit Stage(std::wstring toolFolder = kNear)
        : context{files, kStagedRoots, std::move(toolFolder), [] { return false; },
                  [this] {
                      return BackupContext::Now{utc, utc + 36'000'000'000};
                  }} {
        for (const StagedFile& file : kStagedFiles)
            files.add(kStagedUser + L"\\" + file.path, utf8FromWide(file.path));
        files.find(kStagedRoots[2] + L"\\CDR1F3.tmp")->attributes = 0x23;
        files.find(kStagedRoots[0] + L"\\Corel\\Messages\\540\\EN")->attributes = 0x2;
        files.addFolder(parentFolder(context.toolFolder));
    }

    CleanupPlan plan() { return PlanCleanup(ListCleanupItems(files, kStagedRoots), kStagedRoots); }
    std::wstring newBackup() {
        return NewBackupFolder(files, context.toolFolder, kCleanupBackup, context.now().local);
    }
    CleanupReport clean() { return ExecuteCleanup(context, plan(), newBackup()); }
    std::wstring restore() { return joined(RestoreLines(RestoreNewestBackup(context))); }
    std::vector<std::wstring> backups() {
        return ListBackups(files, context.toolFolder, kCleanupBackup);
    }
    /// Without the tool's own folder, and with folder times only for those that a cleanup removes.
    Snapshot profile() {
        Snapshot seen = files.snapshot(kStagedUser);
        std::erase_if(seen, [](const auto& item) { return item.first.starts_with(kNear); });
        for (auto& [path, node] : seen) {
            if (node.type == EntryType::folder && !isRemovable(path))
                node.created = node.modified = 0;
        }
        return seen;
    }
    static bool isRemovable(const std::wstring& path) {
        return path.find(L"_CorelDRW") != std::wstring::npos ||
               path.find(L"AppHang") != std::wstring::npos || path.ends_with(L"\\EN") ||
               path.find(L"PreviewCache\\a") != std::wstring::npos;
    }
    /// The contents of all files of the profile and of the backups, however they are called.
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
        bool killed = false;
        try {
            act();
        } catch (const Killed&) {
            killed = true;
        }
        files.killAt = std::numeric_limits<int>::max();
        utc += 60 * kTicksPerSecond;
        return killed;
    }
    void loseNotes() {
        for (const std::wstring& backup : backups()) {
            auto* list =
                files.find(BackupsFolder(context.toolFolder) + L"\\" + backup + L"\\manifest.json");
            if (list == nullptr) continue;
            std::string& text = list->contents;
            for (std::size_t at = 0; (at = text.find("\"state\": \"M", at)) != std::string::npos;)
                text[at + 10] = 'P';
        }
    }

    FakeFileSystem files;
    FileTicks utc = 133'500'000'000'000'000;
    BackupContext context;
};

}  // namespace

class CleanupOnBothVolumes : public testing::TestWithParam<const std::wstring*> {};
INSTANTIATE_TEST_SUITE_P(, CleanupOnBothVolumes, testing::Values(&kNear, &kFar));

TEST_P(CleanupOnBothVolumes, MovesThePlanAndRestoreBringsItBack) {
    Stage stage(*GetParam());
    const Snapshot before = stage.profile();
    const std::wstring backup = stage.newBackup();
    const CleanupReport report = stage.clean();
    // Emptied folders are gone, those that the table itself names stay.
    EXPECT_EQ(stage.plan().items.size(), 0U);
    EXPECT_NE(stage.files.find(kStagedRoots[0] + L"\\Corel\\Messages\\540"), nullptr);
    EXPECT_NE(stage.files.find(kStagedRoots[1] + L"\\Microsoft\\Windows\\WER\\ReportQueue"),
              nullptr);
    for (const StagedFile& file : kStagedFiles)
        EXPECT_EQ(stage.files.find(kStagedUser + L"\\" + file.path) == nullptr, file.isCleaned);
    EXPECT_EQ(CleanupLines(report, backup).back(),
              L"[Cleanup] [OK] 11 files (643 bytes) moved to " + backup);
    EXPECT_EQ(stage.restore(), L"[Restore] [OK] 11 files (643 bytes) put back from " + backup +
                                   L"; the empty backup was removed\n");
    EXPECT_EQ(stage.files.find(backup), nullptr);
    EXPECT_EQ(stage.restore(), L"[Restore] There is no backup to restore.\n");
    EXPECT_EQ(DifferenceOf(stage.profile(), before), "");
}

TEST_P(CleanupOnBothVolumes, LosesNothingWhereverItIsKilled) {
    bool killed = true;
    for (int step = 1; killed; ++step) {
        Stage stage(*GetParam());
        const Snapshot before = stage.profile();
        const std::multiset<std::string> contents = stage.contents();
        killed = stage.isKilled(step, [&] { stage.clean(); });
        ASSERT_TRUE(std::ranges::includes(stage.contents(), contents)) << "at step " << step;

        // The moves may be on the disk, what the manifest notes about them not; and a second
        // cleanup in between must not bury what the first one moved.
        if (step % 2 == 0) stage.loseNotes();
        if (step % 3 == 0) stage.clean();
        for (int i = 0; i < 3; ++i)
            stage.restore();
        ASSERT_EQ(DifferenceOf(stage.profile(), before), "") << "killed at step " << step;
        ASSERT_TRUE(stage.backups().empty());
    }
}

TEST_P(CleanupOnBothVolumes, RestoreFinishesWhereverItIsKilled) {
    // The cleanup is whole, or was killed on its way.
    for (const int cleanupStep : {std::numeric_limits<int>::max(), 25, 40}) {
        bool killed = true;
        for (int step = 1; killed; ++step) {
            Stage stage(*GetParam());
            const Snapshot before = stage.profile();
            const std::multiset<std::string> contents = stage.contents();
            stage.isKilled(cleanupStep, [&] { stage.clean(); });
            killed = stage.isKilled(step, [&] { stage.restore(); });
            ASSERT_TRUE(std::ranges::includes(stage.contents(), contents)) << "at step " << step;
            // Killed once more, a little further on.
            stage.isKilled(step % 7 + 1, [&] { stage.restore(); });
            stage.restore();
            ASSERT_EQ(DifferenceOf(stage.profile(), before), "") << "killed at step " << step;
            ASSERT_TRUE(stage.backups().empty()) << "killed at step " << step;
        }
    }
}

TEST(Cleanup, SkipsWhatIsInUseOrHasChangedAndNamesWhatIsRefused) {
    Stage stage;
    const std::wstring suite = kStagedRoots[1] + L"\\Corel\\CorelDRAW Graphics Suite X7\\";
    const CleanupPlan plan = stage.plan();
    stage.files.find(suite + L"Draw\\PreviewCache\\one.png")->isInUse = true;
    stage.files.find(suite + L"PHOTO-PAINT\\PreviewCache\\three.png")->contents += "new";
    stage.files.find(kStagedRoots[1] + L"\\CrashDumps")->type = EntryType::link;
    const std::wstring backup = stage.newBackup();
    const auto lines = CleanupLines(ExecuteCleanup(stage.context, plan, backup), backup);
    const std::vector<std::wstring> expected = {
        L"[Cleanup] Failed to move " + kStagedRoots[1] +
            L"\\CrashDumps\\CorelDRW.exe.4711.dmp: a link stands on the way to it",
        L"[Cleanup] Crash reports: 3 files moved, 237 bytes",
        L"[Cleanup] Temporary files: 3 files moved, 87 bytes",
        L"[Cleanup] Thumbnail caches: 2 files moved, 142 bytes; 2 in use, skipped",
        L"[Cleanup] [WARN] 8 files (466 bytes) moved to " + backup + L"; 3 left in place",
    };
    EXPECT_EQ(joined(lines), joined(expected));
}

TEST(Cleanup, KeepsNoBackupWhenNothingCouldBeMoved) {
    Stage stage;
    stage.files.addFolder(kStagedRoots[2] + L"\\Corel\\an empty folder");
    const CleanupPlan plan = stage.plan();
    for (const PlannedItem& item : plan.items)
        stage.files.find(item.path)->isInUse = !item.isFolder;
    const Snapshot before = stage.profile();
    ExecuteCleanup(stage.context, plan, stage.newBackup());
    EXPECT_EQ(DifferenceOf(stage.profile(), before), "");
    EXPECT_TRUE(stage.backups().empty());
}

TEST(Cleanup, StopsAtAFullDiskWithNothingHalfDone) {
    // 0: not even the list; then a little more each time, until all of it fits.
    bool isWhole = false;
    for (std::uint64_t room = 0; !isWhole; room = room * 5 / 4 + 5) {
        Stage stage(kFar);
        const Snapshot before = stage.profile();
        stage.files.freeOnD = room;
        const CleanupReport report = stage.clean();
        isWhole = report.start.isDone() && !report.isDiskFull;
        const auto lines = CleanupLines(report, L"B");
        const auto isTold = [](const std::wstring& line) {
            return line.find(L"Failed to") != std::wstring::npos &&
                   line.find(L"disk") != std::wstring::npos;
        };
        EXPECT_EQ(std::ranges::any_of(lines, isTold), !isWhole) << joined(lines);
        for (const auto& [path, node] : stage.files.snapshot(kFar))
            EXPECT_FALSE(path.ends_with(L"part") || path.ends_with(L".new"));
        RestoreNewestBackup(stage.context);
        ASSERT_EQ(DifferenceOf(stage.profile(), before), "") << room;
    }
}

TEST(Restore, LeavesWhatIsNewerInPlaceAndSaysSo) {
    Stage stage;
    const std::wstring backup = stage.newBackup();
    stage.clean();
    const std::wstring taken = kStagedRoots[2] + L"\\CDR1F3.tmp";
    const std::wstring linked = kStagedRoots[1] + L"\\Microsoft\\Windows\\WER\\ReportQueue";
    stage.files.add(taken, "newer");
    stage.files.find(linked)->type = EntryType::link;
    for (const wchar_t* sum : {L"9 files (548 bytes)", L"0 files (0 bytes)"}) {
        EXPECT_EQ(stage.restore(),
                  L"[Restore] Failed to put back " + linked +
                      L"\\AppHang_coreldrw.EXE_77\\Report.wer: a link stands on the way to it\n"
                      L"[Restore] [WARN] Stays in the backup, something newer is in its place: " +
                      taken + L"\n[Restore] [WARN] " + sum + L" put back from " + backup +
                      L"; 2 files stay there\n");
    }
    EXPECT_EQ(stage.files.find(taken)->contents, "newer");
    EXPECT_EQ(stage.files.snapshot(linked).size(), 0U) << "something went through the link";
    EXPECT_NE(stage.files.find(backup + LR"(\files\TEMP\CDR1F3.tmp)"), nullptr);
}

TEST(Restore, TakesTheNewestBackupThatHoldsSomething) {
    Stage stage;
    const std::wstring first = stage.newBackup();
    stage.clean();
    stage.files.add(kStagedRoots[2] + L"\\CDR2.tmp", "second");
    stage.clean();
    // One that a kill left without a list, and folders of somebody else.
    for (const wchar_t* other :
         {L"cleanup_2999-01-01_00-00-00", L"cleanup_2999-01-01", L"settings_2999-01-01_00-00-00"})
        stage.files.addFolder(kNear + L"\\backups\\" + other);
    EXPECT_EQ(RestoreNewestBackup(stage.context).backupFolder, first + L"-2");
    EXPECT_EQ(RestoreNewestBackup(stage.context).backupFolder, first);
    EXPECT_EQ(stage.files.snapshot(kNear + L"\\backups").size(), 2U);
}

TEST(Restore, TouchesNothingWhenTheListIsDamagedOrGone) {
    for (const bool isGone : {false, true}) {
        Stage stage;
        const std::wstring backup = stage.newBackup();
        stage.clean();
        const std::wstring manifest = backup + L"\\manifest.json";
        if (isGone)
            stage.files.remove(manifest, nullptr);
        else
            stage.files.find(manifest)->contents.resize(500);
        const auto before = stage.files.snapshot(L"C:");
        EXPECT_TRUE(
            stage.restore().starts_with(L"[Restore] Failed: the list of the backup " + backup));
        EXPECT_EQ(DifferenceOf(stage.files.snapshot(L"C:"), before), "");
    }
}

TEST(Restore, KeepsABackupThatHoldsMoreThanItsList) {
    Stage stage;
    const std::wstring mine = stage.newBackup() + L"\\files\\mine.txt";
    stage.clean();
    stage.files.add(mine, "mine");
    EXPECT_TRUE(stage.restore().ends_with(L"holds files that are not in its list and was kept\n"));
    EXPECT_NE(stage.files.find(mine), nullptr);
    EXPECT_EQ(stage.restore(), L"[Restore] There is no backup to restore.\n");
}

TEST(BackupFolders, AreOrderedByDateAndNumber) {
    FakeFileSystem files;
    const FileTicks now = 133'500'000'000'000'000;
    const std::wstring today = datedName(now);
    const std::wstring backups = kNear + L"\\backups\\";
    EXPECT_EQ(NewBackupFolder(files, kNear, kCleanupBackup, now), backups + L"cleanup_" + today);
    for (const wchar_t* suffix : {L"-9", L"-10", L"-2", L"", L"-x", L"-", L"x", L"-1234567"})
        files.addFolder(backups + L"cleanup_" + today + suffix);
    files.add(backups + L"cleanup_2999-01-01_00-00-00", "a file");
    const std::vector<std::wstring> expected = {L"cleanup_" + today + L"-10",
                                                L"cleanup_" + today + L"-9",
                                                L"cleanup_" + today + L"-2", L"cleanup_" + today};
    EXPECT_EQ(ListBackups(files, kNear, kCleanupBackup), expected);
    // The clock was set back by a day: the new backup still is the newest.
    const FileTicks yesterday = now - 86'400 * kTicksPerSecond;
    EXPECT_EQ(NewBackupFolder(files, kNear, kCleanupBackup, yesterday),
              backups + L"cleanup_" + today + L"-11");
}
