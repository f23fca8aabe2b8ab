#include "fixes/cleanup_plan.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "base/text.h"
#include "fixes/backup_manifest.h"
#include "tests/fixes/staged_profile.h"

namespace {

CleanupPlan planOf(FakeFileSystem& files, const CleanupRoots& roots = kStagedRoots) {
    return PlanCleanup(ListCleanupItems(files, roots), roots);
}

void stage(FakeFileSystem& files) {
    for (const StagedFile& file : kStagedFiles)
        files.add(kStagedUser + L"\\" + file.path, "12345");
}

std::set<std::wstring> filesOf(const CleanupPlan& plan) {
    std::set<std::wstring> paths;
    for (const PlannedItem& item : plan.items)
        if (!item.isFolder) paths.insert(item.path);
    return paths;
}

}  // namespace

TEST(CleanupPlan, TakesWhatTheTableNamesAndNothingElse) {
    FakeFileSystem files;
    stage(files);
    const CleanupPlan plan = planOf(files);
    std::set<std::wstring> expected;
    for (const StagedFile& file : kStagedFiles)
        if (file.isCleaned) expected.insert(kStagedUser + L"\\" + file.path);
    EXPECT_EQ(filesOf(plan), expected);
    EXPECT_EQ(plan.total().files, kStagedCleaned);
    EXPECT_EQ(plan.total().bytes, kStagedCleaned * 5);
    EXPECT_EQ(plan.totals[static_cast<std::size_t>(CacheKind::crashReport)].files, 4U);
    EXPECT_EQ(plan.totals[static_cast<std::size_t>(CacheKind::temporaryFile)].files, 3U);
    EXPECT_EQ(plan.totals[static_cast<std::size_t>(CacheKind::thumbnailCache)].files, 4U);
}

TEST(CleanupPlan, RemovesFoldersFromTheInsideAndKeepsTheCachesOwn) {
    FakeFileSystem files;
    stage(files);
    std::vector<std::wstring> folders;
    for (const PlannedItem& item : planOf(files).items) {
        EXPECT_TRUE(item.isFolder || folders.empty()) << "a file after a folder";
        if (item.isFolder) folders.push_back(item.backupPath);
    }
    const std::wstring reports = LR"(LOCALAPPDATA\Microsoft\Windows\WER\)";
    const std::wstring preview =
        LR"(LOCALAPPDATA\Corel\CorelDRAW Graphics Suite X7\Draw\PreviewCache\)";
    const std::set<std::wstring> expected = {
        reports + LR"(ReportArchive\AppCrash_CorelDRW.exe_1a2b)",
        reports + LR"(ReportArchive\AppCrash_CorelDRW.exe_1a2b\sub)",
        reports + LR"(ReportQueue\AppHang_coreldrw.EXE_77)",
        LR"(APPDATA\Corel\Messages\540\EN)",
        preview + L"a",
        preview + LR"(a\b)",
    };
    EXPECT_EQ(std::set(folders.begin(), folders.end()), expected);
    for (std::size_t i = 0; i < folders.size(); ++i)
        for (std::size_t j = i + 1; j < folders.size(); ++j)
            EXPECT_FALSE(folders[j].starts_with(folders[i] + L"\\")) << "an outer folder first";
}

TEST(CleanupPlan, FollowsNoLinkAndTakesNone) {
    FakeFileSystem files;
    const std::wstring suites = kStagedRoots[1] + L"\\Corel\\CorelDRAW Graphics Suite ";
    files.add(suites + L"X7\\Draw\\PreviewCache\\link", "", EntryType::link);
    files.add(suites + L"X7\\Draw\\PreviewCache\\link\\hidden.png", "x");
    files.add(suites + L"X8\\Draw\\PreviewCache", "", EntryType::link);
    files.add(suites + L"X8\\Draw\\PreviewCache\\hidden.png", "x");
    files.add(suites + L"X9", "", EntryType::link);
    files.add(suites + L"X9\\Draw\\PreviewCache\\hidden.png", "x");
    files.add(kStagedRoots[2] + L"\\CDR1.tmp", "", EntryType::link);
    EXPECT_TRUE(planOf(files).items.empty());
}

TEST(CleanupPlan, LeavesNamesThatCannotBeWrittenDown) {
    FakeFileSystem files;
    const std::wstring cache = kStagedRoots[2] + L"\\Corel\\";
    files.add(cache + std::wstring{L'a', static_cast<wchar_t>(0xD83D)}, "x");
    files.add(cache + L"a:b", "x");
    files.add(cache + L"a\x01", "x");
    files.add(cache + L"fine. ", "x");
    EXPECT_EQ(filesOf(planOf(files)), std::set<std::wstring>{cache + L"fine. "});
}

TEST(CleanupPlan, TakesAFileOnceWhereRootsOverlap) {
    FakeFileSystem files;
    files.add(kStagedRoots[1] + L"\\Temp\\Corel\\errors.log", "x");
    EXPECT_EQ(planOf(files).items.size(), 1U);
    // Elsewhere the folder for temporary files is not the one of the profile: both are searched.
    files.add(L"D:\\Temp\\Corel\\errors.log", "x");
    EXPECT_EQ(planOf(files, {kStagedRoots[0], kStagedRoots[1], L"D:\\Temp"}).items.size(), 2U);
    EXPECT_TRUE(planOf(files, {}).items.empty());
}

TEST(CleanupPlan, MakesNoManifestThatIsTooLargeToRead) {
    FakeFileSystem files;
    stage(files);
    for (int i = 0; i < 40; ++i)
        files.add(kStagedRoots[2] + L"\\Corel\\" + std::wstring(200, L'\u4E2D') + decimal(i), "x");
    const CleanupListing listing = ListCleanupItems(files, kStagedRoots);
    const std::size_t all = PlanCleanup(listing, kStagedRoots).items.size();
    for (const std::size_t limit : {0U, 1'000U, 5'000U, 20'000U, 40'000U}) {
        Manifest manifest;
        for (const PlannedItem& item : PlanCleanup(listing, kStagedRoots, limit).items)
            manifest.entries.push_back({item, Progress::planned});
        EXPECT_LE(WriteManifest(manifest).json.size(), std::max<std::size_t>(limit, 256));
        EXPECT_LT(manifest.entries.size(), all);
        EXPECT_GE(manifest.entries.size(), limit / 2'500);
    }
}

TEST(CleanupPlan, AsksWithCountsSizesAndTheFolder) {
    FakeFileSystem files;
    stage(files);
    files.add(kStagedRoots[2] + L"\\CDR2.tmp", std::string(2048, 'x'));
    const std::wstring question = CleanupQuestion(planOf(files), L"C:\\B\\cleanup_1", false);
    for (const wchar_t* part :
         {L"Move 12 files (2.0 KB)", L"Crash reports: 4 files, 20 bytes\n",
          L"Temporary files: 4 files, 2.0 KB\n", L"Thumbnail caches: 4 files, 20 bytes\n",
          L"Backup folder: C:\\B\\cleanup_1\n", L"Continue?"}) {
        EXPECT_NE(question.find(part), std::wstring::npos) << question;
    }
    EXPECT_EQ(question.find(L"running"), std::wstring::npos);
    EXPECT_NE(CleanupQuestion(planOf(files), L"", true).find(L"CorelDRAW is running"),
              std::wstring::npos);
}
