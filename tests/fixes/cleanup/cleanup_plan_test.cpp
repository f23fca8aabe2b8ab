#include "fixes/cleanup/cleanup_plan.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "fixes/cleanup/backup_manifest.h"
#include "fixes/cleanup/temp_folder.h"
#include "fixes/cleanup/user_work.h"
#include "tests/fixes/cleanup/staged_profile.h"

namespace {

using Paths = std::set<std::wstring>;
constexpr FileTicks kNow = 133'500'000'000'000'000;

CleanupPlan planOf(FakeFileSystem& files, const CleanupRoots& roots = kRoots,
                   std::size_t manifestBytes = kLargestManifest) {
    return PlanCleanup(ListCleanupItems(files, roots, false), roots, kNow, manifestBytes);
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
    const std::wstring suites = kRoots[1] + L"\\Corel\\CorelDRAW Graphics Suite ";
    for (const wchar_t* link :
         {L"X7\\Draw\\PreviewCache\\link", L"X8\\Draw\\PreviewCache", L"X9"}) {
        files.add(suites + link, "", EntryType::link);
        files.add(suites + link + L"\\hidden.png", "x");
    }
    files.add(suites + L"X9\\Draw\\PreviewCache\\hidden.png", "x");
    files.add(kRoots[2] + L"\\CDR1.tmp", "", EntryType::link);
    const std::wstring cache = kRoots[2] + L"\\Corel\\";
    for (const std::wstring& name :
         {std::wstring{L'a', static_cast<wchar_t>(0xD83D)}, std::wstring(L"a:b"),
          std::wstring(L"a\x01"), std::wstring(L"a."), std::wstring(L"a ")})
        files.add(cache + name, "x");
    files.add(cache + L"fine.a", "x");
    EXPECT_EQ(pathsOf(planOf(files)), Paths{cache + L"fine.a"});
    EXPECT_EQ(ListCleanupItems(files, kRoots, false).unreadable.size(), 0U);
    files.find(kRoots[2])->type = EntryType::link;
    EXPECT_GT(ListCleanupItems(files, kRoots, false).unreadable.size(), 0U);
}

TEST(CleanupPlan, HidesNoDrawingAndNothingThatIsNewOrCannotBeSeen) {
    const struct {
        const wchar_t* name;
        const char* contents;
        FileTicks age;
        bool isNamed, isMoved;
    } cases[] = {
        {L"CDR1.tmp", "RIFF....CDRE", kRecentTime, true, false},
        {L"CDR2.tmp", "PK\x03\x04 a container", kRecentTime, true, false},
        {L"CDR3.tmp", "RIFF....CDRE", 1, true, false},
        {L"CDR4.tmp", "no document at all", kRecentTime, false, true},
        {L"CDR5.tmp", "no document at all", kRecentTime - 1, false, false},
        {L"CDR6.tmp", "no document at all", 0, false, false},
        {L"Corel\\plan.cdr_", "x", kRecentTime, true, false},
        {L"Corel\\Backup_of_a.tmp", "x", kRecentTime, true, false},
        {L"Corel\\auto-backup 1", "x", kRecentTime, true, false},
        {L"Corel\\brand.cpl", "x", kRecentTime, false, false},
        {L"Corel\\deep\\a.log", "a log of errors", kRecentTime, false, true},
        {L"Corel\\used.log", "a log of errors", kRecentTime, false, false},
    };
    FakeFileSystem files;
    Paths named, moved;
    for (const auto& c : cases) {
        const std::wstring path = kRoots[2] + L"\\" + c.name;
        files.add(path, c.contents).modified = kNow - c.age;
        if (c.isNamed) named.insert(path);
        if (c.isMoved) moved.insert(path);
    }
    files.find(kRoots[2] + L"\\Corel\\used.log")->isInUse = true;
    files.add(kCache + L"a.zip", "PK\x03\x04 thumbnails are kept like that").modified = kNow;
    moved.insert({kRoots[2] + L"\\Corel\\deep", kCache + L"a.zip"});
    const CleanupPlan plan = planOf(files);
    EXPECT_EQ(Paths(plan.drawings.begin(), plan.drawings.end()), named);
    EXPECT_EQ(pathsOf(plan), moved);
    EXPECT_EQ(plan.recent, 2U);
    EXPECT_EQ(plan.unreadable, 1U);
    for (const wchar_t* name : {L"a.CDRT", L"a.gms", L"a.cdws", L"a.cpl", L"a.pfb", L"a.mirelobak"})
        EXPECT_TRUE(IsUserWork(name)) << name;
    EXPECT_FALSE(IsUserWork(L"cdr.png"));
}

TEST(CleanupPlan, TakesAFileOnceAndNoMoreThanAManifestHolds) {
    FakeFileSystem files;
    files.add(kRoots[1] + L"\\Temp\\Corel\\errors.log", "x");
    EXPECT_EQ(planOf(files).items.size(), 1U);
    // Elsewhere the folder for temporary files is not the one of the profile: both are searched.
    files.add(L"D:\\Temp\\Corel\\errors.log", "x");
    EXPECT_EQ(planOf(files, {kRoots[0], kRoots[1], L"D:\\Temp", L""}).items.size(), 2U);
    EXPECT_TRUE(planOf(files, {}).items.empty());
    for (int i = 0; i < 40; ++i)
        files.add(kRoots[2] + L"\\Corel\\" + std::wstring(200, L'\u4E2D') + decimal(i), "x");
    for (const std::size_t limit : {0U, 1'000U, 5'000U, 20'000U, 40'000U}) {
        const auto items = planOf(files, kRoots, limit).items;
        EXPECT_LE(WriteManifest(items, kNow).size(), std::max<std::size_t>(limit, 256));
        EXPECT_GE(items.size(), limit / 2'500);
    }
}

TEST(TempFolder, IsTrustedOnlyWhereItCanHoldNothingElse) {
    const ReservedFolders reserved{{kUser, kRoots[0], kRoots[1], L"D:\\Mine\\Temp\\Documents", L""},
                                   {L"C:\\Windows", L"C:\\Program Files"}};
    for (const std::wstring& temp :
         {kRoots[2], kRoots[2] + L"\\2", std::wstring(L"D:\\TMP"), std::wstring(L"D:\\a\\myTemp3"),
          std::wstring(L"\\\\server\\share\\Temp"), kUser + L"\\temp"})
        EXPECT_EQ(WhyNotTemporary(temp, reserved), L"") << utf8FromWide(temp);
    for (const std::wstring& other :
         {std::wstring(), std::wstring(L"C:"), std::wstring(L"\\\\server\\temp"),
          std::wstring(L"\\\\server"), std::wstring(L"C:\\Users"), kUser, kRoots[0],
          lowered(kRoots[1]), std::wstring(L"D:\\Mine\\Temp"), std::wstring(L"C:\\Windows"),
          std::wstring(L"C:\\Windows\\Temp"), std::wstring(L"C:\\Program Files\\a\\Temp"),
          std::wstring(L"D:\\Work"), std::wstring(L"D:\\Templates"), std::wstring(L"D:\\Work\\7")})
        EXPECT_NE(WhyNotTemporary(other, reserved), L"") << utf8FromWide(other);
}

TEST(BackupManifest, ComesBackAsItWasWrittenAndJudgesEntryByEntry) {
    Stage stage;
    const auto items = stage.plan().items;
    const std::string json = WriteManifest(items, kNow);
    const Manifest manifest = ReadManifest(json);
    EXPECT_EQ(manifest.damaged, 0U);
    ASSERT_EQ(manifest.items.size(), items.size());
    for (std::size_t i = 0; i < items.size(); ++i) {
        const PlannedItem &read = manifest.items[i], &written = items[i];
        EXPECT_TRUE(read.isFolder == written.isFolder && read.path == written.path &&
                    read.backupPath == written.backupPath && read.stamp == written.stamp);
    }

    // As earlier versions wrote it, and with what no version writes.
    const auto read = [](const std::string& change, const std::string& to) {
        std::string text = R"({"format": "mirelo-cleanup-backup", "version": 1, "entries": [
            {"state": "M", "type": "file", "kind": "temporary-file", "size": 2,
             "created": "2026-03-13T11:02:39.9733386Z", "modified": "2026-03-13T11:02:39.9733386Z",
             "attributes": 32, "path": "C:\\T\\Corel\\CDR1.tmp", "backup": "TEMP\\corel\\CDR1.tmp"}
        ]})";
        const std::size_t at = text.find(change);
        return ReadManifest(text.replace(at, change.size(), to));
    };
    EXPECT_EQ(read("TEMP", "NEW").items.size(), 1U) << "a later version may know more roots";
    const char* const changes[][2] = {
        {"\"size\": 2", "\"size\": -5"},
        {"\"size\": 2", "\"size\": 5.5"},
        {"\"size\": 2", "\"size\": 1e300"},
        {"\"size\": 2", "\"size\": \"2\""},
        {"32", "4294967296"},
        {"\"file\"", "\"link\""},
        {"\"modified\"", "\"changed\""},
        {R"(TEMP\\corel)", R"(TEMP\\other)"},
        {R"(TEMP\\corel\\CDR1.tmp)", "TEMP"},
        {R"(TEMP\\corel)", R"(TEMP\\..\\corel)"},
        {R"(TEMP\\corel\\CDR1.tmp)", R"(\\CDR1.tmp)"},
    };
    for (const auto& [from, to] : changes)
        EXPECT_EQ(read(from, to).damaged, 1U) << to;
    for (const wchar_t* path : {L"C:\\Windows\\a", L"C:\\Users\\Zo\u00eb\\Local\\..\\a", L"a"})
        EXPECT_EQ(RootAbove(path, kRoots), nullptr) << path;
    EXPECT_EQ(RootAbove(lowered(kRoots[2]) + L"\\a", kRoots), &kRoots[2]);
}
