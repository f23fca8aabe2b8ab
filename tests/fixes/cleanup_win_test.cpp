// Cleanup and restore on real files: whole profiles, links, files in use, two volumes, and
// processes that are killed on the way.
#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <set>

#include "base/text.h"
#include "fixes/backup_folders.h"
#include "fixes/file_system_win.h"
#include "fixes/restore.h"
#include "tests/fixes/staged_folder_win.h"
#include "tests/fixes/staged_profile.h"

namespace {

// Passes everything on and kills its own process at a step: before the call or after it.
class KillingFileSystem final : public FileSystem {
  public:
    KillingFileSystem(FileSystem& files, int killAt) : files_(files), killAt_(killAt) {}

    FolderListing list(const std::wstring& folder) override { return files_.list(folder); }
    Inspection inspect(const std::wstring& path) override { return files_.inspect(path); }
    std::optional<std::string> read(const std::wstring& path, std::uint64_t limit) override {
        return files_.read(path, limit);
    }
    FileResult compare(const std::wstring& left, const std::wstring& right) override {
        return files_.compare(left, right);
    }
    FileResult createFolder(const std::wstring& folder) override {
        return between([&] { return files_.createFolder(folder); });
    }
    FileResult removeFolder(const std::wstring& folder) override {
        return between([&] { return files_.removeFolder(folder); });
    }
    FileResult writeNew(const std::wstring& path, std::string_view bytes) override {
        return between([&] { return files_.writeNew(path, bytes); });
    }
    FileResult overwriteByte(const std::wstring& path, std::uint64_t offset, char byte) override {
        return between([&] { return files_.overwriteByte(path, offset, byte); });
    }
    FileResult rename(const std::wstring& from, const std::wstring& to,
                      const FileStamp* expected) override {
        return between([&] { return files_.rename(from, to, expected); });
    }
    FileResult copy(const std::wstring& from, const std::wstring& to,
                    const FileStamp& expected) override {
        return between([&] { return files_.copy(from, to, expected); });
    }
    FileResult remove(const std::wstring& path, const FileStamp* expected) override {
        return between([&] { return files_.remove(path, expected); });
    }
    FileResult setStamp(const std::wstring& path, const FileStamp& stamp) override {
        return between([&] { return files_.setStamp(path, stamp); });
    }

  private:
    template <typename Call>
    FileResult between(const Call& call) {
        step();
        const FileResult result = call();
        step();
        return result;
    }
    void step() {
        if (++steps_ == killAt_) TerminateProcess(GetCurrentProcess(), 9);
    }

    FileSystem& files_;
    int killAt_;
    int steps_ = 0;
};

struct Profile {
    Profile(std::wstring userFolder, std::wstring tool)
        : user(std::move(userFolder)),
          toolFolder(std::move(tool)),
          roots{user + L"\\Roaming", user + L"\\Local", user + L"\\Local\\Temp"},
          files({roots[0], roots[1], roots[2], ParentFolder(toolFolder)}) {}

    void stage() const {
        int count = 0;
        for (const StagedFile& file : kStagedFiles) {
            std::string contents = utf8FromWide(file.path);
            contents.append(static_cast<std::size_t>(count) * 997, 'x');
            WriteStaged(user + L"\\" + file.path, contents,
                        ++count % 3 == 0 ? FILE_ATTRIBUTE_READONLY : FILE_ATTRIBUTE_ARCHIVE);
        }
    }
    BackupWorld world(FileSystem& system) const {
        return {system, roots, toolFolder, [] { return false; },
                [] {
                    return BackupWorld::Now{133'000'000'000'000'000, 133'000'000'000'000'000};
                }};
    }
    CleanupReport clean(FileSystem& system) const {
        const CleanupPlan plan = PlanCleanup(ListCleanupItems(system, roots), roots);
        return ExecuteCleanup(
            world(system), plan,
            NewBackupFolder(system, toolFolder, kCleanupBackup, 133'000'000'000'000'000));
    }
    std::map<std::wstring, std::string> snapshot() const {
        auto seen = SnapshotOf(user, false);
        std::erase_if(seen,
                      [](const auto& item) { return item.first.starts_with(L"Roaming\\Mirelo"); });
        return seen;
    }

    std::wstring user;
    std::wstring toolFolder;
    CleanupRoots roots;
    mutable WindowsFileSystem files;
};

// Every staged file is in its place or in a backup, whole.
void expectNothingLost(const Profile& profile, const std::map<std::wstring, std::string>& before) {
    std::multiset<std::string> held;
    for (const auto& [path, text] : SnapshotOf(profile.user, false))
        held.insert(text);
    for (const auto& [path, text] : SnapshotOf(profile.toolFolder, false))
        held.insert(text);
    for (const auto& [path, text] : before)
        EXPECT_TRUE(!text.starts_with("file") || held.contains(text)) << utf8FromWide(path);
}

constexpr wchar_t kChildAct[] = L"MIRELO_TEST_ACT";
constexpr wchar_t kChildStep[] = L"MIRELO_TEST_STEP";
constexpr wchar_t kChildUser[] = L"MIRELO_TEST_USER";
constexpr wchar_t kChildTool[] = L"MIRELO_TEST_TOOL";

std::wstring variable(const wchar_t* name) {
    wchar_t value[1024] = L"";
    GetEnvironmentVariableW(name, value, 1024);
    return value;
}

// Lets a process of its own clean up or restore, with a kill at the given step.
void runKilled(const Profile& profile, const wchar_t* act, int step) {
    SetEnvironmentVariableW(kChildAct, act);
    SetEnvironmentVariableW(kChildStep, decimal(step).c_str());
    SetEnvironmentVariableW(kChildUser, profile.user.c_str());
    SetEnvironmentVariableW(kChildTool, profile.toolFolder.c_str());
    wchar_t self[MAX_PATH] = L"";
    GetModuleFileNameW(nullptr, self, MAX_PATH);
    const int code = RunToEnd(L"\"" + std::wstring(self) +
                              L"\" --gtest_also_run_disabled_tests --gtest_brief=1"
                              L" --gtest_filter=*DISABLED_CleanupChild.Runs");
    SetEnvironmentVariableW(kChildAct, nullptr);
    ASSERT_TRUE(code == 9 || code == 0) << code;
}

std::vector<std::wstring> toolFolders(const StagedFolder& stage) {
    std::vector<std::wstring> folders = {stage.path() + L"\\Roaming\\Mirelo"};
    // Another volume, where the system has one that is known to be.
    if (IsThere(LR"(Z:\dev\shm)")) folders.push_back(LR"(Z:\dev\shm)");
    return folders;
}

}  // namespace

TEST(DISABLED_CleanupChild, Runs) {
    const std::wstring act = variable(kChildAct);
    if (act.empty()) GTEST_SKIP() << "runs as the child of another test";
    const Profile profile(variable(kChildUser), variable(kChildTool));
    KillingFileSystem files(profile.files, _wtoi(variable(kChildStep).c_str()));
    if (act == L"clean")
        profile.clean(files);
    else
        RestoreNewestBackup(profile.world(files));
}

TEST(CleanupOnWindows, LosesNothingInAHundredKilledRuns) {
    // Every run ends as it began, so all can share the profile; they take turns on the volumes.
    const StagedFolder stage;
    std::vector<std::unique_ptr<StagedFolder>> tools;
    for (const std::wstring& below : toolFolders(stage))
        tools.push_back(std::make_unique<StagedFolder>(below));
    std::map<std::wstring, std::string> before;
    for (unsigned seed = 1; seed <= 100 && !HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        const Profile profile(stage.path() + L"\\user", tools[seed % tools.size()]->path());
        if (seed == 1) {
            profile.stage();
            before = profile.snapshot();
        }
        runKilled(profile, L"clean", static_cast<int>(random() % 150) + 1);
        expectNothingLost(profile, before);
        runKilled(profile, L"restore", static_cast<int>(random() % 120) + 1);
        expectNothingLost(profile, before);
        RestoreNewestBackup(profile.world(profile.files));
        EXPECT_EQ(DifferenceOf(profile.snapshot(), before), "");
        EXPECT_EQ(SnapshotOf(BackupsFolder(profile.toolFolder), false).size(), 0U);
    }
}

TEST(CleanupOnWindows, MovesAProfileAndBringsItBackOnEveryVolume) {
    const StagedFolder stage;
    for (const std::wstring& below : toolFolders(stage)) {
        const StagedFolder tool(below);
        const Profile profile(stage.path() + L"\\user", tool.path());
        profile.stage();
        const auto before = SnapshotOf(profile.user, false);
        const CleanupReport report = profile.clean(profile.files);
        EXPECT_EQ(report.failures.size(), 0U);
        for (const StagedFile& file : kStagedFiles)
            EXPECT_EQ(IsThere(profile.user + L"\\" + file.path), !file.isCleaned)
                << utf8FromWide(file.path);
        // The table's own folders stay, what was below them is gone.
        EXPECT_TRUE(IsThere(profile.roots[1] + L"\\Microsoft\\Windows\\WER\\ReportQueue"));
        EXPECT_FALSE(IsThere(profile.roots[1] +
                             L"\\Microsoft\\Windows\\WER\\ReportQueue\\AppHang_coreldrw.EXE_77"));
        const RestoreReport restored = RestoreNewestBackup(profile.world(profile.files));
        EXPECT_EQ(restored.restored.files, kStagedCleaned);
        EXPECT_TRUE(restored.isEmptied);
        EXPECT_EQ(DifferenceOf(SnapshotOf(profile.user, false), before), "");
    }
}

TEST(CleanupOnWindows, SkipsFilesInUseAndLinks) {
    const StagedFolder stage;
    const Profile profile(stage.path() + L"\\user", stage.path() + L"\\user\\Roaming\\Mirelo");
    profile.stage();
    const std::wstring suite = profile.roots[1] + L"\\Corel\\CorelDRAW Graphics Suite ";
    const std::wstring victims = stage.path() + L"\\victims";
    WriteStaged(victims + L"\\Draw\\PreviewCache\\a.png", "victim");
    ASSERT_TRUE(MakeFolderLink(suite + L"X8", victims));
    ASSERT_TRUE(MakeFolderLink(suite + L"X7\\Draw\\PreviewCache\\link", victims));
    ASSERT_TRUE(
        MakeFileLink(profile.roots[2] + L"\\CDR99.tmp", victims + L"\\Draw\\PreviewCache\\a.png"));
    const auto before = profile.snapshot();
    {
        const FileHandle user(CreateFileW((suite + L"X7\\Draw\\PreviewCache\\one.png").c_str(),
                                          GENERIC_READ, 7, nullptr, OPEN_EXISTING, 0, nullptr));
        const CleanupReport report = profile.clean(profile.files);
        const auto& thumbnails = report.kinds[static_cast<std::size_t>(CacheKind::thumbnailCache)];
        EXPECT_EQ(thumbnails.inUse, 1U);
        EXPECT_EQ(thumbnails.moved.files, 3U);
    }
    EXPECT_EQ(ReadStaged(victims + L"\\Draw\\PreviewCache\\a.png"), "victim");
    EXPECT_TRUE(IsThere(suite + L"X7\\Draw\\PreviewCache\\link"));
    EXPECT_TRUE(IsThere(suite + L"X7\\Draw\\PreviewCache\\one.png"));
    RestoreNewestBackup(profile.world(profile.files));
    EXPECT_EQ(DifferenceOf(profile.snapshot(), before), "");
}

// A volume with less room than the staged files need, named by a variable: filling one up takes
// rights that a test does not have.
TEST(CleanupOnWindows, StopsWhenTheDiskOfTheBackupIsFull) {
    const std::wstring small = variable(L"MIRELO_TEST_SMALL_VOLUME");
    if (small.empty()) GTEST_SKIP() << "no small volume was named";
    const StagedFolder stage;
    const StagedFolder tool(small);
    const Profile profile(stage.path() + L"\\user", tool.path());
    profile.stage();
    const auto before = profile.snapshot();
    const CleanupReport report = profile.clean(profile.files);
    EXPECT_TRUE(report.isDiskFull || report.start.outcome == FileOutcome::diskFull);
    expectNothingLost(profile, before);
    RestoreNewestBackup(profile.world(profile.files));
    EXPECT_EQ(DifferenceOf(profile.snapshot(), before), "");
}
