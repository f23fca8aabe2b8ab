#include "fixes/cleanup/cleanup_plan.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "base/text.h"
#include "fixes/cleanup/backup_manifest.h"
#include "tests/fixes/cleanup/staged_profile.h"

namespace {

using Paths = std::set<std::wstring>;

CleanupPlan planOf(FakeFileSystem& files, const CleanupRoots& roots = kStagedRoots) {
    return PlanCleanup(ListCleanupItems(files, roots), roots);
}

Paths pathsOf(const CleanupPlan& plan) {
    Paths paths;
    for (const PlannedItem& item : plan.items)
        paths.insert(item.path);
    return paths;
}

}  // namespace

TEST(CleanupPlan, LeavesLinksAndNamesThatCannotBeWrittenDown) {
    FakeFileSystem files;
    const std::wstring suites = kStagedRoots[1] + L"\\Corel\\CorelDRAW Graphics Suite ";
    for (const wchar_t* link :
         {L"X7\\Draw\\PreviewCache\\link", L"X8\\Draw\\PreviewCache", L"X9"}) {
        files.add(suites + link, "", EntryType::link);
        files.add(suites + link + L"\\hidden.png", "x");
    }
    files.add(suites + L"X9\\Draw\\PreviewCache\\hidden.png", "x");
    files.add(kStagedRoots[2] + L"\\CDR1.tmp", "", EntryType::link);
    const std::wstring cache = kStagedRoots[2] + L"\\Corel\\";
    for (const std::wstring& name :
         {std::wstring{L'a', static_cast<wchar_t>(0xD83D)}, std::wstring(L"a:b"),
          std::wstring(L"a\x01"), std::wstring(L"a."), std::wstring(L"a ")})
        files.add(cache + name, "x");
    files.add(cache + L"fine.a", "x");
    EXPECT_EQ(pathsOf(planOf(files)), Paths{cache + L"fine.a"});
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
    for (int i = 0; i < 40; ++i)
        files.add(kStagedRoots[2] + L"\\Corel\\" + std::wstring(200, L'\u4E2D') + decimal(i), "x");
    const CleanupListing listing = ListCleanupItems(files, kStagedRoots);
    for (const std::size_t limit : {0U, 1'000U, 5'000U, 20'000U, 40'000U}) {
        Manifest manifest;
        for (const PlannedItem& item : PlanCleanup(listing, kStagedRoots, limit).items)
            manifest.entries.push_back({item, Progress::planned});
        EXPECT_LE(WriteManifest(manifest).json.size(), std::max<std::size_t>(limit, 256));
        EXPECT_GE(manifest.entries.size(), limit / 2'500);
    }
}

TEST(CleanupPlan, AsksWithCountsSizesAndTheFolder) {
    FakeFileSystem files;
    for (const StagedFile& file : kStagedFiles)
        files.add(kStagedUser + L"\\" + file.path, "12345");
    files.add(kStagedRoots[2] + L"\\CDR2.tmp", std::string(2048, 'x'));
    EXPECT_EQ(CleanupQuestion(planOf(files), L"C:\\B\\cleanup_1", true),
              L"Move 12 files (2.0 KB) of CorelDRAW into a backup folder?\n\n"
              L"  Crash reports: 4 files, 20 bytes\n"
              L"  Temporary files: 4 files, 2.0 KB\n"
              L"  Thumbnail caches: 4 files, 20 bytes\n\n"
              L"Backup folder: C:\\B\\cleanup_1\n"
              L"Documents, workspaces, macros, palettes and styles stay where they are. 'Restore' "
              L"brings everything back.\n\n"
              L"CorelDRAW is running: files that it has in use are skipped. It is better to close "
              L"it first.\n\n"
              L"Continue?");
}
