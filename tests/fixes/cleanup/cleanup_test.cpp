// The cleanup and its way back on a file system that dies at every step.
#include "fixes/cleanup/cleanup.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "fixes/cleanup/backup_manifest.h"
#include "tests/fixes/cleanup/staged_profile.h"

namespace {

const std::wstring kTaken = kRoots[2] + L"\\CDR1F3.tmp";

bool holds(const std::wstring& text, const std::wstring& part) {
    return text.find(part) != std::wstring::npos;
}

}  // namespace

class CleanupOnBothVolumes : public testing::TestWithParam<const std::wstring*> {};
INSTANTIATE_TEST_SUITE_P(, CleanupOnBothVolumes, testing::Values(&kNear, &kFar));

TEST_P(CleanupOnBothVolumes, MovesThePlanAndRestoreBringsItBack) {
    Stage stage(*GetParam());
    const auto before = stage.profile();
    const std::wstring backup = stage.newBackup();
    EXPECT_TRUE(holds(stage.press(CleanUp), L"[Cleanup] [OK] 13 files (779 bytes) moved to " +
                                                backup + L"\n[Cleanup] The disk gains no room"));
    // Emptied folders are gone, those that the table itself names stay.
    EXPECT_EQ(stage.plan().items.size(), 0U);
    EXPECT_NE(stage.files.find(kRoots[0] + L"\\Corel\\Messages\\540"), nullptr);
    for (const StagedFile& file : kStagedFiles)
        EXPECT_EQ(stage.files.find(stagedPath(file)) == nullptr, file.isCleaned) << file.path;
    EXPECT_EQ(stage.restore(), L"[Restore] [OK] 13 files (779 bytes) put back from " + backup +
                                   L"; the empty backup was removed\n");
    EXPECT_EQ(stage.files.find(backup), nullptr);
    EXPECT_EQ(stage.restore(), L"[Restore] There is no backup to restore.\n");
    EXPECT_EQ(differenceOf(stage.profile(), before), "");
}

TEST_P(CleanupOnBothVolumes, LosesNothingWhereverItIsKilled) {
    bool killed = true;
    for (int step = 1; killed; ++step) {
        Stage stage(*GetParam());
        const auto before = stage.profile();
        const auto contents = stage.contents();
        killed = stage.isKilled(step, [&] { stage.clean(); });
        ASSERT_TRUE(std::ranges::includes(stage.contents(), contents)) << "at step " << step;
        // A second cleanup in between must not bury what the first one moved.
        if (step % 3 == 0) stage.clean();
        for (int i = 0; i < 3; ++i)
            stage.restore();
        ASSERT_EQ(differenceOf(stage.profile(), before), "") << "killed at step " << step;
        ASSERT_TRUE(stage.backups().empty());
    }
}

TEST_P(CleanupOnBothVolumes, RestoreFinishesWhereverItIsKilled) {
    // The cleanup is whole, or was killed on its way.
    for (const int cleanupStep : {std::numeric_limits<int>::max(), 25, 40}) {
        bool killed = true;
        for (int step = 1; killed; ++step) {
            Stage stage(*GetParam());
            const auto before = stage.profile();
            const auto contents = stage.contents();
            stage.isKilled(cleanupStep, [&] { stage.clean(); });
            killed = stage.isKilled(step, [&] { stage.restore(); });
            ASSERT_TRUE(std::ranges::includes(stage.contents(), contents)) << "at step " << step;
            // Killed once more, a little further on.
            stage.isKilled(step % 7 + 1, [&] { stage.restore(); });
            stage.restore();
            ASSERT_EQ(differenceOf(stage.profile(), before), "") << "killed at step " << step;
            ASSERT_TRUE(stage.backups().empty()) << "killed at step " << step;
        }
    }
}

TEST(Cleanup, SkipsWhatIsInUseOrHasChangedAndNamesWhatIsRefused) {
    Stage stage;
    const CleanupPlan plan = stage.plan();
    stage.files.find(kCache + L"one.png")->isInUse = true;
    stage.files.find(kCache + L"a\\b\\\u4E2D\U0001F600'")->contents[0] = 'X';
    stage.files.find(kCache + L"a\\b\\\u4E2D\U0001F600'")->modified += 1;
    stage.files.find(kRoots[0] + L"\\Corel\\Messages\\540\\EN\\cache.dat")->contents += "new";
    stage.files.find(kRoots[1] + L"\\CrashDumps")->type = EntryType::link;
    const CleanupReport report = ExecuteCleanup(stage.host.host(), stage.context, plan, L"B");
    EXPECT_FALSE(report.start.isDone());
    const std::wstring backup = stage.newBackup();
    std::wstring text;
    for (const auto& line : CleanupLines(
             ExecuteCleanup(stage.host.host(), stage.context, plan, backup), backup, {2, 3000}))
        text += line + L"\n";
    const std::wstring dump = L"[Cleanup] Failed to move " + kRoots[1] + L"\\CrashDumps\\CorelDRW";
    EXPECT_EQ(text, dump + L".exe(1).4711.dmp: a link stands on the way to it\n" + dump +
                        L".exe.4711.dmp: a link stands on the way to it\n"
                        L"[Cleanup] Crash reports: 4 files moved, 318 bytes\n"
                        L"[Cleanup] Temporary files: 2 files moved, 52 bytes; 1 in use, skipped\n"
                        L"[Cleanup] Thumbnail caches: 2 files moved, 146 bytes; 2 in use, skipped\n"
                        L"[Cleanup] [WARN] 8 files (516 bytes) moved to " +
                        backup +
                        L"; 5 left in place\n[Cleanup] The disk gains no room until you delete the "
                        L"backup folder; older backups hold 2 files (2.9 KB).\n");
}

TEST(Cleanup, KeepsNoBackupWhenNothingCouldBeMovedAndItsListWhenAnythingLiesInIt) {
    Stage stage;
    stage.files.addFolder(kRoots[2] + L"\\Corel\\an empty folder");
    const CleanupPlan plan = stage.plan();
    for (const PlannedItem& item : plan.items)
        stage.files.find(item.path)->isInUse = !item.isFolder;
    const auto before = stage.profile();
    const std::wstring backup = stage.newBackup();
    ExecuteCleanup(stage.host.host(), stage.context, plan, backup);
    EXPECT_EQ(differenceOf(stage.profile(), before), "");
    EXPECT_TRUE(stage.backups().empty());

    const std::wstring list = backup + L"\\manifest.json", held = backup + L"\\files\\TEMP\\x";
    stage.files.add(list, "[]");
    stage.files.add(held, "x");
    EXPECT_FALSE(RemoveEmptiedBackup(stage.files, backup));
    EXPECT_NE(stage.files.find(list), nullptr);
    EXPECT_NE(stage.files.find(held), nullptr);
}

TEST(Cleanup, StopsAtAFullDiskWithNothingHalfDone) {
    // 0: not even the list; then a little more each time, until all of it fits.
    bool isWhole = false;
    for (std::uint64_t room = 0; !isWhole; room += 61) {
        Stage stage(kFar);
        const auto before = stage.profile();
        const CleanupPlan plan = stage.plan();
        stage.files.freeOnD = room;
        const std::wstring report = stage.press(CleanUp);
        isWhole = holds(report, L"[OK]");
        EXPECT_EQ(
            holds(report, L"Failed to") && holds(report, L"disk is full") !=
                                               holds(report, L"disk of the backup folder is full"),
            !isWhole);
        const auto isInPlace = [&](const PlannedItem& item) {
            return !item.isFolder && stage.files.find(item.path) != nullptr;
        };
        const auto moved = std::ranges::count_if(plan.items, std::not_fn(isInPlace));
        const auto firstLeft = std::ranges::find_if(plan.items, isInPlace) - plan.items.begin();
        const auto folders = std::ranges::count_if(plan.items, &PlannedItem::isFolder);
        EXPECT_EQ(moved, isWhole ? firstLeft : firstLeft + folders) << "went on";
        for (const auto& [path, node] : stage.files.snapshot(kFar))
            EXPECT_FALSE(path.ends_with(L"part") || path.ends_with(L".new"));
        stage.restore();
        ASSERT_EQ(differenceOf(stage.profile(), before), "") << room;
    }
}

TEST(Cleanup, AsksWithFoldersSizesAndWhatItMeans) {
    Stage stage;
    stage.running = {true, true};
    stage.context.tempDoubt = L"why";
    stage.host.consents = false;
    stage.files.add(stage.newBackup() + L"\\files\\x", std::string(2048, 'x'));
    for (int i = 0; i < 8; ++i)
        stage.files.add(kRoots[0] + L"\\Corel\\Messages\\" + decimal(i) + L"\\x", "x");
    const std::wstring report = stage.press(CleanUp);
    EXPECT_TRUE(holds(report, L"[WARN] " + kRoots[2] + L" is not taken for a folder of temporary"));
    EXPECT_TRUE(holds(report, L"PHOTO-PAINT is running"));
    EXPECT_TRUE(holds(report, L"Cancelled, nothing was moved."));
    ASSERT_EQ(stage.host.questions.size(), 1U);
    const std::wstring& question = stage.host.questions[0];
    for (const std::wstring& part :
         {std::wstring(L"Thumbnail caches: 3 files, "),
          std::wstring(L"Temporary files: 10 files, "), L"\n  " + kRoots[1] + L"\\CrashDumps\n",
          L"\n  " + kRoots[1] + L"\\Temp\\Corel\n", std::wstring(L"\n  and 4 more folders\n"),
          L"Backup folder: " + kNear + L"\\backups\\cleanup_",
          std::wstring(L"older backups hold 1 file (2.0 KB)"),
          std::wstring(L"CorelDRAW is running")})
        EXPECT_TRUE(holds(question, part)) << utf8FromWide(question);
    EXPECT_FALSE(holds(question, L"PHOTO-PAINT\\PreviewCache"));
}

TEST(Cleanup, GivesASignOfLife) {
    Stage stage;
    for (int i = 0; i < 300; ++i)
        stage.files.add(kCache + decimal(i), "x");
    std::vector<std::wstring> told;
    ActionHost host = stage.host.host();
    host.setStatus = [&](std::wstring text) { told.push_back(std::move(text)); };
    stage.context.now = [&] {
        stage.utc += kTicksPerSecond;
        return BackupContext::Now{stage.utc, stage.utc};
    };
    CleanUp(host, stage.context);
    EXPECT_EQ(told, (std::vector<std::wstring>{L"Cleaning up: 32 of 313 files",
                                               L"Cleaning up: 160 of 313 files",
                                               L"Cleaning up: 288 of 313 files", L""}));
}

TEST(Restore, JudgesEachFileAndPassesABackupThatCanGiveNothingMore) {
    Stage stage;
    const auto before = stage.profile();
    const std::wstring first = stage.newBackup();
    stage.clean();
    stage.files.add(kTaken, "~\\Local\\Temp\\CDR1F3.tmX").modified = before.at(kTaken).modified;
    const std::wstring linked = kRoots[1] + L"\\Microsoft\\Windows\\WER\\ReportQueue";
    stage.files.find(linked)->type = EntryType::link;
    const std::wstring torn = first + LR"(\files\LOCALAPPDATA\CrashDumps\CorelDRW.exe.4711.dmp)";
    stage.files.find(torn)->contents += "x";
    const std::wstring text =
        L"[Restore] Failed to put back " + linked +
        L"\\AppHang_coreldrw.EXE_77\\Report.wer: a link stands on the way to it\n"
        L"[Restore] Failed to put back " +
        kRoots[1] +
        L"\\CrashDumps\\CorelDRW.exe.4711.dmp: it has changed meanwhile\n"
        L"[Restore] [WARN] Stays in the backup, something else is in its place: " +
        kTaken + L"\n";
    EXPECT_EQ(stage.restore(), text + L"[Restore] [WARN] 10 files (640 bytes) put back from " +
                                   first + L"; 3 files stay there\n");
    // It can give nothing more, and an older one can.
    const std::wstring older = kRoots[0] + L"\\Mirelo\\backups\\cleanup_2020-01-01_00-00-00";
    const std::wstring oldHome = kRoots[2] + L"\\Corel\\a.dat";
    stage.files.add(older + LR"(\files\TEMP\Corel\a.dat)", "old");
    PlannedItem item{{}, false, oldHome, LR"(TEMP\Corel\a.dat)", {3, 1, 2, 0x20}};
    stage.files.add(older + L"\\manifest.json", WriteManifest({item}, 1));
    const std::wstring passed = text + L"[Restore] [WARN] Passed over " + first +
                                L", it can give nothing more: 3 files stay there.\n";
    EXPECT_EQ(stage.restore(), passed + L"[Restore] [OK] 1 file (3 bytes) put back from " + older +
                                   L"; the empty backup was removed\n");
    EXPECT_EQ(stage.files.find(oldHome)->stamp(), item.stamp);
    EXPECT_EQ(stage.restore(), passed + L"[Restore] [WARN] Nothing was put back.\n");
    EXPECT_EQ(stage.files.find(kTaken)->contents, "~\\Local\\Temp\\CDR1F3.tmX");
    EXPECT_EQ(stage.files.snapshot(linked).size(), 0U) << "something went through the link";
    EXPECT_NE(stage.files.find(first + LR"(\files\TEMP\CDR1F3.tmp)"), nullptr);
    EXPECT_NE(stage.files.find(torn), nullptr);
}

TEST(Restore, NamesBothPathsWhereTheFolderIsNoneOfTodays) {
    Stage stage;
    stage.files.add(L"D:\\Temp\\Corel\\a.dat", "elsewhere");
    stage.context.roots[2] = L"D:\\Temp";
    const auto before = stage.files.snapshot(L"D:");
    const std::wstring backup = stage.newBackup();
    stage.clean();
    // Remote Desktop hosts number the folder of each session.
    stage.context.roots[2] = kRoots[2] + L"\\2";
    const std::wstring stored = backup + LR"(\files\TEMP\Corel\a.dat)";
    EXPECT_TRUE(holds(stage.restore(),
                      L"its folder is none of today's: D:\\Temp\\Corel\\a.dat, "
                      L"kept as " +
                          stored + L"\n[Restore] [WARN] 12 files"));
    EXPECT_NE(stage.files.find(stored), nullptr);
    stage.context.roots[2] = L"D:\\Temp";
    EXPECT_TRUE(holds(stage.restore(), L"[Restore] [OK] 1 file"));
    EXPECT_EQ(stage.files.find(L"D:\\Temp\\Corel\\a.dat")->stamp(),
              before.at(L"D:\\Temp\\Corel\\a.dat").stamp());
    // What lies below another of today's folders goes back where it was.
    stage.clean();
    stage.context.roots[2] = kRoots[2] + L"\\2";
    stage.restore();
    EXPECT_NE(stage.files.find(kTaken), nullptr);
}

TEST(Restore, SaysWhyAListOrAFolderCannotBeUsed) {
    for (const char* list :
         {"", "{\"format\": \"mirelo-cleanup-backup\", \"version\": 1, \"entr",
          R"({"format": "other", "version": 1, "entries": []})",
          R"({"format": "mirelo-cleanup-backup", "version": 2, "entries": []})"}) {
        Stage stage;
        const std::wstring older = stage.newBackup();
        stage.clean();
        stage.files.add(kCache + L"new.png", "new");
        const std::wstring newer = stage.newBackup();
        stage.clean();
        const std::wstring manifest = newer + L"\\manifest.json";
        stage.files.remove(manifest, nullptr);
        if (*list != '\0') stage.files.add(manifest, list);
        const std::wstring report = stage.restore();
        EXPECT_TRUE(report.starts_with(L"[Restore] [WARN] Passed over " + newer + L": its list is"))
            << utf8FromWide(report);
        EXPECT_TRUE(holds(report, L"[OK] 13 files"));
        EXPECT_EQ(stage.files.snapshot(newer).size(), *list == '\0' ? 7U : 8U);
    }
    Stage stage;
    stage.clean();
    stage.files.find(kNear + L"\\backups")->type = EntryType::link;
    EXPECT_EQ(stage.restore(), L"[Restore] Failed to look for backups in " + kNear +
                                   L"\\backups: a link stands on the way to it\n"
                                   L"[Restore] [WARN] Nothing was put back.\n");
}

TEST(BackupFolders, AreOrderedByDateAndNumberOverBothHomes) {
    FakeFileSystem files;
    const BackupHomes homes{kNear, kRoots[0] + L"\\Mirelo"};
    const FileTicks now = 133'500'000'000'000'000;
    const std::wstring today = L"cleanup_" + datedName(now);
    const std::wstring local = kNear + L"\\backups\\", roaming = homes.roaming + L"\\backups\\";
    EXPECT_EQ(NewBackupFolder(files, homes, kCleanupBackup, now), local + today);
    for (const wchar_t* suffix : {L"-9", L"-2", L"", L"-x", L"-", L"x", L"-1234567"})
        files.addFolder(local + today + suffix);
    files.addFolder(roaming + today + L"-10");
    files.add(local + L"cleanup_2999-01-01_00-00-00", "a file");
    const std::vector<std::wstring> expected = {roaming + today + L"-10", local + today + L"-9",
                                                local + today + L"-2", local + today};
    EXPECT_EQ(ListBackups(files, homes, kCleanupBackup).folders, expected);
    // The clock was set back by a day: the new backup still is the newest.
    const FileTicks yesterday = now - 86'400 * kTicksPerSecond;
    EXPECT_EQ(NewBackupFolder(files, homes, kCleanupBackup, yesterday), local + today + L"-11");
}
