#include "fixes/cleanup/cleanup.h"

#include <gtest/gtest.h>

#include <algorithm>

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
    EXPECT_EQ(stage.plan().items.size(), 0U);
    for (const StagedFile& file : kStagedFiles)
        EXPECT_EQ(stage.files.find(stagedPath(file)) == nullptr, file.isCleaned) << file.path;
    EXPECT_EQ(stage.restore(), L"[Restore] [OK] 13 files (779 bytes) put back from " + backup +
                                   L"; the empty backup was removed\n");
    EXPECT_EQ(stage.restore(), L"[Restore] There is no backup to restore.\n");
    EXPECT_TRUE(stage.profile() == before);
}

TEST_P(CleanupOnBothVolumes, LosesNothingWhereverItAndItsWayBackAreKilled) {
    bool killed = true;
    for (int step = 1; killed; ++step) {
        Stage stage(*GetParam());
        const auto before = stage.profile();
        const auto contents = stage.contents();
        killed = stage.isKilled(step, [&] {
            stage.clean();
            stage.restore();
        });
        ASSERT_TRUE(std::ranges::includes(stage.contents(), contents)) << "at step " << step;
        // A second cleanup in between must not bury what the first one moved.
        if (step % 3 == 0) stage.clean();
        stage.isKilled(step % 7 + 1, [&] { stage.restore(); });
        for (int i = 0; i < 3; ++i)
            stage.restore();
        ASSERT_TRUE(stage.profile() == before) << "killed at step " << step;
        ASSERT_TRUE(stage.backups().empty()) << "killed at step " << step;
    }
}

TEST(Cleanup, SkipsWhatIsInUseOrHasChangedAndNamesWhatIsRefused) {
    Stage stage;
    const CleanupPlan plan = stage.plan();
    stage.files.find(kCache + L"one.png")->isInUse = true;
    stage.files.find(kCache + L"a\\b\\\u4E2D\U0001F600'")->modified += 1;
    stage.files.find(kRoots[0] + L"\\Corel\\Messages\\540\\EN\\cache.dat")->contents += "new";
    stage.files.find(kRoots[1] + L"\\CrashDumps")->type = EntryType::link;
    const std::wstring backup = stage.newBackup();
    std::wstring text;
    for (const auto& line :
         CleanupLines(ExecuteCleanup(stage.host.host(), stage.context, plan, backup), backup, {}))
        text += line + L"\n";
    EXPECT_TRUE(holds(text, L"[Cleanup] Failed to move " + kRoots[1] +
                                L"\\CrashDumps\\CorelDRW.exe.4711.dmp: a link stands on"));
    for (const wchar_t* line :
         {L"[Cleanup] Crash reports: 4 files moved, 318 bytes\n",
          L"[Cleanup] Temporary files: 2 files moved, 52 bytes; 1 in use, skipped\n",
          L"[Cleanup] Thumbnail caches: 2 files moved, 146 bytes; 2 in use, skipped\n",
          L"[Cleanup] [WARN] 8 files (516 bytes) moved to ", L"; 5 left in place\n"})
        EXPECT_TRUE(holds(text, line)) << utf8FromWide(text);
}

TEST(Cleanup, KeepsTheListOfABackupInWhichAnythingLies) {
    Stage stage;
    const std::wstring backup = stage.newBackup();
    stage.files.add(backup + L"\\manifest.json", "[]");
    stage.files.add(backup + L"\\files\\TEMP\\x", "x");
    EXPECT_FALSE(RemoveEmptiedBackup(stage.files, backup));
    EXPECT_EQ(stage.files.snapshot(backup).size(), 4U);
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
        EXPECT_NE(holds(report, L"disk is full") || holds(report, L"backup folder is full"),
                  isWhole);
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
        ASSERT_TRUE(stage.profile() == before) << room;
    }
}

TEST(Cleanup, AsksWithFoldersSizesAndWhatItMeans) {
    Stage stage;
    stage.running = {true, true};
    stage.context.tempDoubt = L"why";
    stage.host.consents = false;
    const std::wstring report = stage.press(CleanUp);
    for (const wchar_t* part : {L"is not taken for a folder of temporary",
                                L"PHOTO-PAINT is running", L"Cancelled, nothing was moved."})
        EXPECT_TRUE(holds(report, part)) << part;
    const std::wstring& question = stage.host.questions.at(0);
    // Of the temporary files only those outside the folder that is not trusted.
    for (const std::wstring& part :
         {L"\n  " + kRoots[1] + L"\\CrashDumps\n",
          L"Backup folder: " + kNear + L"\\backups\\cleanup_",
          std::wstring(L"Temporary files: 2 files, "), std::wstring(L"CorelDRAW is running")})
        EXPECT_TRUE(holds(question, part)) << utf8FromWide(question);
    EXPECT_FALSE(holds(question, L"PHOTO-PAINT\\PreviewCache"));
}

TEST(Restore, JudgesEachFileAndPassesABackupThatCanGiveNothingMore) {
    Stage stage;
    const std::wstring first = stage.newBackup();
    const FileTicks modified = stage.files.find(kTaken)->modified;
    stage.clean();
    // Work of the same size and time has taken the place of one.
    const std::string work = "~\\Local\\Temp\\CDR1F3.tmX";
    stage.files.add(kTaken, work).modified = modified;
    const std::wstring linked = kRoots[1] + L"\\Microsoft\\Windows\\WER\\ReportQueue";
    stage.files.find(linked)->type = EntryType::link;
    const std::wstring torn = first + LR"(\files\LOCALAPPDATA\CrashDumps\CorelDRW.exe.4711.dmp)";
    stage.files.find(torn)->contents += "x";
    const std::wstring report = stage.restore();
    for (const wchar_t* part :
         {L"77\\Report.wer: a link stands on the way", L"4711.dmp: it has changed meanwhile",
          L"something else is in its place: ", L"[WARN] 10 files (640 bytes) put back from ",
          L"; 3 files stay there\n"})
        EXPECT_TRUE(holds(report, part)) << utf8FromWide(report);
    // It can give nothing more, and an older one can.
    const std::wstring older = kRoots[0] + L"\\Mirelo\\backups\\cleanup_2020-01-01_00-00-00";
    PlannedItem item{{}, false, kRoots[2] + L"\\Corel\\a.dat", LR"(TEMP\Corel\a.dat)", {}};
    item.stamp = {3, 1, 2, 0x20};
    stage.files.add(older + LR"(\files\TEMP\Corel\a.dat)", "old");
    stage.files.add(older + L"\\manifest.json", WriteManifest({item}, 1));
    const std::wstring passed = stage.restore();
    EXPECT_TRUE(holds(passed, L"Passed over " + first + L", it can give nothing more: 3 files"));
    EXPECT_TRUE(holds(passed, L"[OK] 1 file (3 bytes) put back from " + older));
    EXPECT_EQ(stage.files.find(item.path)->stamp(), item.stamp);
    EXPECT_TRUE(holds(stage.restore(), L"[WARN] Nothing was put back."));
    EXPECT_EQ(stage.files.find(kTaken)->contents, work);
    EXPECT_EQ(stage.files.snapshot(linked).size(), 0U) << "something went through the link";
    EXPECT_NE(stage.files.find(first + LR"(\files\TEMP\CDR1F3.tmp)"), nullptr);
    EXPECT_NE(stage.files.find(torn), nullptr);
}

TEST(Restore, NamesBothPathsWhereTheFolderIsNoneOfTodays) {
    Stage stage;
    const std::wstring home = L"D:\\Temp\\Corel\\a.dat";
    const FileStamp stamp = stage.files.add(home, "elsewhere").stamp();
    stage.context.roots[2] = L"D:\\Temp";
    const std::wstring stored = stage.newBackup() + LR"(\files\TEMP\Corel\a.dat)";
    stage.clean();
    // Remote Desktop hosts number the folder of each session.
    stage.context.roots[2] = kRoots[2] + L"\\2";
    EXPECT_TRUE(holds(stage.restore(), L"its folder is none of today's: " + home + L", kept as " +
                                           stored + L"\n[Restore] [WARN] 12 files"));
    EXPECT_NE(stage.files.find(stored), nullptr);
    stage.context.roots[2] = L"D:\\Temp";
    stage.restore();
    EXPECT_EQ(stage.files.find(home)->stamp(), stamp);
}

TEST(Restore, PassesABackupWhoseListCannotBeUsed) {
    for (const char* list :
         {"{\"format\": \"mirelo-cleanup-backup\", \"version\": 1, \"entr",
          R"({"format": "mirelo-cleanup-backup", "version": 2, "entries": []})"}) {
        Stage stage;
        stage.clean();
        stage.files.add(kCache + L"new.png", "new");
        const std::wstring newer = stage.newBackup();
        stage.clean();
        const std::wstring manifest = newer + L"\\manifest.json";
        stage.files.find(manifest)->contents = list;
        const std::wstring report = stage.restore();
        EXPECT_TRUE(holds(report, L"[WARN] Passed over " + newer + L": its list is")) << list;
        EXPECT_TRUE(holds(report, L"[OK] 13 files"));
        EXPECT_EQ(stage.files.snapshot(newer).size(), 8U);
    }
}

TEST(BackupFolders, AreOrderedByDateAndNumberOverBothHomes) {
    FakeFileSystem files;
    const BackupHomes homes{kNear, kRoots[0] + L"\\Mirelo"};
    const FileTicks now = 133'500'000'000'000'000;
    const std::wstring today = L"cleanup_" + datedName(now);
    const std::wstring local = kNear + L"\\backups\\", roaming = homes.roaming + L"\\backups\\";
    EXPECT_EQ(NewBackupFolder(files, homes, kCleanupBackup, now), local + today);
    for (const wchar_t* suffix : {L"-9", L"-2", L"", L"-x", L"-", L"-1234567"})
        files.addFolder(local + today + suffix);
    files.addFolder(roaming + today + L"-10");
    files.add(local + L"cleanup_2999-01-01_00-00-00", "a file");
    EXPECT_EQ(ListBackups(files, homes, kCleanupBackup).folders,
              (std::vector{roaming + today + L"-10", local + today + L"-9", local + today + L"-2",
                           local + today}));
    // The clock was set back by a day: the new backup still is the newest.
    const FileTicks yesterday = now - 86'400 * kTicksPerSecond;
    EXPECT_EQ(NewBackupFolder(files, homes, kCleanupBackup, yesterday), local + today + L"-11");
}
