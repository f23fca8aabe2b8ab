#include "fixes/cleanup/cleanup_plan.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "fixes/cleanup/backup_manifest.h"
#include "fixes/cleanup/temp_folder.h"
#include "tests/fixes/cleanup/staged_profile.h"

namespace {

constexpr FileTicks kNow = 133'500'000'000'000'000;

CleanupPlan planOf(FakeFileSystem& files, std::size_t manifestBytes = kLargestManifest) {
    return PlanCleanup(ListCleanupItems(files, kRoots, false), kRoots, kNow, manifestBytes);
}

}  // namespace

TEST(CleanupPlan, LeavesLinks) {
    FakeFileSystem files;
    const std::wstring suites = kRoots[1] + L"\\Corel\\CorelDRAW Graphics Suite ";
    for (const wchar_t* link :
         {L"X7\\Draw\\PreviewCache\\link", L"X8\\Draw\\PreviewCache", L"X9"}) {
        files.add(suites + link, "", EntryType::link);
        files.add(suites + link + L"\\Draw\\PreviewCache\\hidden.png", "x");
        files.add(suites + link + L"\\hidden.png", "x");
    }
    files.add(kRoots[2] + L"\\CDR1.tmp", "", EntryType::link);
    EXPECT_EQ(planOf(files).items.size(), 0U);
    EXPECT_EQ(ListCleanupItems(files, kRoots, false).unreadable.size(), 0U);
}

TEST(CleanupPlan, HidesNothingThatIsNewOrCannotBeSeen) {
    FakeFileSystem files;
    const std::wstring temp = kRoots[2] + L"\\";
    files.add(temp + L"CDR1.tmp", "no document").modified = kNow - kRecentTime;
    files.add(temp + L"CDR2.tmp", "no document").modified = kNow - kRecentTime + 1;
    files.add(temp + L"CDR3.tmp", "RIFF....CDRE").modified = kNow;
    files.add(temp + L"Corel\\used.log", "a log of errors").isInUse = true;
    files.add(kCache + L"a.zip", "PK\x03\x04 thumbnails are kept like that").modified = kNow;
    const CleanupPlan plan = planOf(files);
    ASSERT_EQ(plan.items.size(), 2U);
    EXPECT_EQ(plan.items[0].path + plan.items[1].path, temp + L"CDR1.tmp" + kCache + L"a.zip");
    EXPECT_EQ(plan.drawings, std::vector{temp + L"CDR3.tmp"});
    EXPECT_EQ(plan.recent, 1U);
    EXPECT_EQ(plan.unreadable, 1U);
}

TEST(CleanupPlan, TakesAFileOnceAndNoMoreThanAManifestHolds) {
    FakeFileSystem files;
    files.add(kRoots[1] + L"\\Temp\\Corel\\errors.log", "x");
    EXPECT_EQ(planOf(files).items.size(), 1U);
    for (int i = 0; i < 40; ++i)
        files.add(kRoots[2] + L"\\Corel\\" + std::wstring(200, L'\u4E2D') + decimal(i), "x");
    const auto items = planOf(files, 20'000).items;
    EXPECT_LE(WriteManifest(items, kNow).size(), 20'000U);
    EXPECT_GE(items.size(), 8U);
}

TEST(TempFolder, IsTrustedOnlyWhereItCanHoldNothingElse) {
    const ReservedFolders reserved{{kUser, kRoots[0], kRoots[1], L"D:\\Mine\\Temp\\Documents", L""},
                                   {L"C:\\Windows", L"C:\\Program Files"}};
    for (const wchar_t* temp :
         {L"C:\\Users\\Zo\u00eb\\Local\\Temp\\2", L"C:\\Users\\Zo\u00eb\\temp", L"D:\\TMP",
          L"D:\\a\\myTemp3", L"\\\\server\\share\\Temp"})
        EXPECT_EQ(WhyNotTemporary(temp, reserved), L"") << temp;
    for (const wchar_t* other :
         {L"", kUser.c_str(), kRoots[0].c_str(), L"c:\\users\\zo\u00eb\\local", L"C:",
          L"\\\\server\\temp", L"C:\\Users", L"D:\\Mine\\Temp", L"C:\\Windows\\Temp",
          L"D:\\Templates", L"D:\\Work\\7"})
        EXPECT_NE(WhyNotTemporary(other, reserved), L"") << other;
}

TEST(BackupManifest, IsJudgedEntryByEntry) {
    const FileStamp stamp{2, kNow, kNow, 32};
    const std::string whole = WriteManifest(
        {{{}, false, L"C:\\T\\Corel\\CDR1.tmp", L"TEMP\\corel\\CDR1.tmp", stamp}}, kNow);
    const struct {
        std::string from, to;
        std::size_t items;
    } changes[] = {
        {"\"TEMP", "\"NEW", 1},  // a later version may know more roots
        {": 2,", ": -5,", 0},
        {"\"modified\"", "\"changed\"", 0},
        {R"(TEMP\\corel)", R"(TEMP\\other)", 0},
        {R"(TEMP\\corel)", R"(TEMP\\..\\corel)", 0},
        {R"(TEMP\\corel\\CDR1.tmp)", R"(\\CDR1.tmp)", 0},
    };
    for (const auto& change : changes) {
        std::string text = whole;
        text.replace(text.find(change.from), change.from.size(), change.to);
        EXPECT_EQ(ReadManifest(text).items.size(), change.items) << text;
        EXPECT_EQ(ReadManifest(text).damaged, 1 - change.items) << text;
    }
    for (const wchar_t* path : {L"C:\\Windows\\a", L"C:\\Users\\Zo\u00eb\\Local\\..\\a", L"a"})
        EXPECT_EQ(RootAbove(path, kRoots), nullptr) << path;
}
