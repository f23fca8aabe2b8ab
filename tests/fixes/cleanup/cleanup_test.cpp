#include "fixes/cleanup/cleanup.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "fixes/cleanup/backup_manifest.h"
#include "tests/fixes/cleanup/staged_profile.h"

TEST(Cleanup, MovesThePlanAndRestoreBringsItBack) {
    Stage stage(kFar);
    const std::wstring backup = stage.newBackup();
    EXPECT_TRUE(holds(stage.press(CleanUp), L"[Cleanup] [OK] 13 files (779 bytes) moved to " +
                                                backup + L"\n[Cleanup] The disk gains no room"));
    for (const StagedFile& file : kStagedFiles)
        EXPECT_EQ(stage.files.find(stagedPath(file)) == nullptr, file.isCleaned) << file.path;
    EXPECT_EQ(stage.restore(), L"[Restore] [OK] 13 files (779 bytes) put back from " + backup +
                                   L"; the empty backup was removed\n");
    EXPECT_EQ(stage.restore(), L"[Restore] There is no backup to restore.\n");
}

class CleanupOnBothVolumes : public testing::TestWithParam<const std::wstring*> {};
INSTANTIATE_TEST_SUITE_P(, CleanupOnBothVolumes, testing::Values(&kNear, &kFar));

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
        stage.restore();
        stage.restore();
        ASSERT_TRUE(stage.profile() == before) << "killed at step " << step;
        ASSERT_TRUE(holds(stage.restore(), L"There is no backup")) << "killed at step " << step;
    }
}

TEST(Cleanup, StopsAtAFullDiskWithNothingHalfDone) {
    bool isWhole = false;
    for (std::uint64_t room = 0; !isWhole; room += 61) {
        Stage stage(kFar);
        const auto before = stage.profile();
        const CleanupPlan plan = stage.plan();
        stage.files.freeOnD = room;
        const std::wstring report = stage.press(CleanUp);
        isWhole = holds(report, L"[OK]");
        EXPECT_NE(holds(report, L" is full"), isWhole);
        const auto isMoved = [&](const PlannedItem& item) {
            return !item.isFolder && stage.files.find(item.path) == nullptr;
        };
        EXPECT_TRUE(std::ranges::is_partitioned(plan.items, isMoved)) << "went on";
        stage.restore();
        ASSERT_TRUE(stage.profile() == before) << room;
    }
}

TEST(Cleanup, AsksWithFoldersSizesAndWhatItMeans) {
    Stage stage;
    stage.running = {true, true};
    stage.context.tempDoubt = L"why";
    stage.host.consents = false;
    expectParts(stage.press(CleanUp),
                {L"is not taken for a folder of temporary", L"PHOTO-PAINT is running",
                 L"Cancelled, nothing was moved."});
    const std::wstring& question = stage.host.questions.at(0);
    expectParts(question, {L"\n  " + kRoots[1] + L"\\CrashDumps\n",
                           L"Backup folder: " + kNear + L"\\backups\\cleanup_",
                           L"Temporary files: 2 files, ", L"CorelDRAW is running"});
    EXPECT_FALSE(holds(question, L"PHOTO-PAINT\\PreviewCache"));
}

TEST(Restore, JudgesEachFileAndPassesABackupThatCanGiveNothingMore) {
    Stage stage;
    const std::wstring first = stage.newBackup(), taken = kRoots[2] + L"\\CDR1F3.tmp";
    const FileTicks modified = stage.files.find(taken)->modified;
    stage.files.find(kCache + L"one.png")->isInUse = true;
    expectParts(stage.press(CleanUp),
                {L"[Cleanup] Thumbnail caches: 3 files moved, 218 bytes; 1 in use, skipped\n",
                 L"[Cleanup] [WARN] 12 files (712 bytes) moved to ", L"; 1 left in place\n"});
    // Work of the same size and time has taken the place of one.
    const std::string work = "~\\Local\\Temp\\CDR1F3.tmX";
    stage.files.add(taken, work).modified = modified;
    const std::wstring linked = kRoots[1] + L"\\Microsoft\\Windows\\WER\\ReportQueue";
    stage.files.find(linked)->type = EntryType::link;
    const std::wstring torn = first + LR"(\files\LOCALAPPDATA\CrashDumps\CorelDRW.exe.4711.dmp)";
    stage.files.find(torn)->contents += "x";
    expectParts(stage.restore(),
                {L"77\\Report.wer: a link stands on the way", L"4711.dmp: it has changed meanwhile",
                 L"something else is in its place: ", L"[WARN] 9 files (573 bytes) put back from ",
                 L"; 3 files stay there\n"});
    const std::wstring older = kRoots[0] + L"\\Mirelo\\backups\\cleanup_2020-01-01_00-00-00";
    PlannedItem item{{}, false, kRoots[2] + L"\\Corel\\a.dat", LR"(TEMP\Corel\a.dat)", {}};
    item.stamp = {3, 1, 2, 0x20};
    stage.files.add(older + LR"(\files\TEMP\Corel\a.dat)", "old");
    stage.files.add(older + L"\\manifest.json", WriteManifest({item}, 1));
    expectParts(stage.restore(), {L"Passed over " + first + L", it can give nothing more: 3 files",
                                  L"[OK] 1 file (3 bytes) put back from " + older});
    EXPECT_EQ(stage.files.find(item.path)->stamp(), item.stamp);
    expectParts(stage.restore(), {L"[WARN] Nothing was put back."});
    EXPECT_EQ(stage.files.find(taken)->contents, work);
    EXPECT_EQ(stage.files.snapshot(linked).size(), 0U) << "something went through the link";
}

TEST(Restore, NamesBothPathsWhereTheFolderIsNoneOfTodays) {
    Stage stage;
    const std::wstring home = L"D:\\Temp\\Corel\\a.dat";
    const FileStamp stamp = stage.files.add(home, "elsewhere").stamp();
    stage.context.roots[2] = L"D:\\Temp";
    const std::wstring stored = stage.newBackup() + LR"(\files\TEMP\Corel\a.dat)";
    stage.clean();
    stage.context.roots[2] = kRoots[2] + L"\\2";
    expectParts(stage.restore(), {L"its folder is none of today's: " + home + L", kept as " +
                                  stored + L"\n[Restore] [WARN] 12 files"});
    stage.context.roots[2] = L"D:\\Temp";
    stage.restore();
    EXPECT_EQ(stage.files.find(home)->stamp(), stamp);
}

TEST(Restore, PassesABackupWhoseListCannotBeUsed) {
    for (const char* list : {"{\"format\": \"mirelo-cleanup-backup\", \"version\": 1, \"entr",
                             R"({"format": "mirelo-cleanup-backup", "version": 2})"}) {
        Stage stage;
        stage.clean();
        stage.files.add(kCache + L"new.png", "new");
        const std::wstring newer = stage.newBackup();
        stage.clean();
        stage.files.find(newer + L"\\manifest.json")->contents = list;
        expectParts(stage.restore(),
                    {L"[WARN] Passed over " + newer + L": its list is", L"[OK] 13 files"});
        EXPECT_EQ(stage.files.snapshot(newer).size(), 8U);
    }
}

TEST(Restore, BringsTheNewestBackFirstAlsoAfterTheClockWasSetBack) {
    Stage stage;
    for (int i = 0; i < 12; ++i) {
        stage.files.add(kCache + decimal(i), "x");
        stage.clean();
        stage.utc -= i == 1 ? 86'400 * kTicksPerSecond : 0;
        if (i % 2 == 0) std::swap(stage.context.homes.local, stage.context.homes.roaming);
    }
    for (int i = 12; i-- > 0;) {
        stage.restore();
        EXPECT_NE(stage.files.find(kCache + decimal(i)), nullptr) << i;
    }
}
