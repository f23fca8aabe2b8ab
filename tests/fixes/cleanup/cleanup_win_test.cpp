// Cleanup and restore on real files: whole profiles, links, files in use, two volumes, and
// processes that are killed at work. A few kills belong to every run of the tests; a hundred are
// asked for by a variable:
//     MIRELO_KILL_ROUNDS=100 mirelo_win_tests --gtest_filter=CleanupKills.*
#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <memory>
#include <optional>
#include <random>
#include <set>

#include "base/files/file_system_win.h"
#include "base/text.h"
#include "fixes/cleanup/backup_folders.h"
#include "fixes/cleanup/restore.h"
#include "tests/base/files/staged_folder_win.h"
#include "tests/fixes/cleanup/staged_profile.h"

namespace {

std::wstring variable(const wchar_t* name) {
    wchar_t value[1024] = L"";
    GetEnvironmentVariableW(name, value, 1024);
    return value;
}

using Snapshot = std::map<std::wstring, std::string>;

struct Profile {
    Profile(std::wstring userFolder, std::wstring tool)
        : user(std::move(userFolder)),
          toolFolder(std::move(tool)),
          roots{user + L"\\Roaming", user + L"\\Local", user + L"\\Local\\Temp"} {}

    /// Every third file is read-only; `extra` more thumbnails make the work longer.
    void stage(int extra = 0) const {
        int count = 0;
        const auto write = [&](const std::wstring& path) {
            std::string contents = utf8FromWide(path);
            contents.append(static_cast<std::size_t>(count % 20) * 997, 'x');
            WriteStaged(user + L"\\" + path, contents,
                        ++count % 3 == 0 ? FILE_ATTRIBUTE_READONLY : FILE_ATTRIBUTE_ARCHIVE);
        };
        for (const StagedFile& file : kStagedFiles)
            write(file.path);
        for (int i = 0; i < extra; ++i)
            write(LR"(Local\Corel\CorelDRAW Graphics Suite X7\Draw\PreviewCache\)" + decimal(i));
    }
    /// With a file system of its own each time: one keeps the last folders pinned.
    template <typename Act>
    auto act(const Act& act) const {
        WindowsFileSystem files({roots[0], roots[1], roots[2], parentFolder(toolFolder)});
        return act(BackupContext{
            files, roots, toolFolder, [] { return false; },
            [] {
                return BackupContext::Now{133'000'000'000'000'000, 133'000'000'000'000'000};
            }});
    }
    CleanupReport clean(const std::function<void()>& begun = [] {}) const {
        return act([&](const BackupContext& context) {
            const CleanupPlan plan = PlanCleanup(ListCleanupItems(context.files, roots), roots);
            const std::wstring backup =
                NewBackupFolder(context.files, toolFolder, kCleanupBackup, context.now().local);
            begun();
            return ExecuteCleanup(context, plan, backup);
        });
    }
    RestoreReport restore() const { return act(RestoreNewestBackup); }
    Snapshot snapshot() const {
        Snapshot seen = SnapshotOf(user);
        std::erase_if(seen,
                      [](const auto& item) { return item.first.starts_with(L"Roaming\\Mirelo"); });
        return seen;
    }

    std::wstring user;
    std::wstring toolFolder;
    CleanupRoots roots;
};

std::vector<std::wstring> toolFolders(const StagedFolder& stage) {
    std::vector<std::wstring> folders = {stage.path() + L"\\user\\Roaming\\Mirelo"};
    // Another volume, where the system has one that is known to be.
    if (IsThere(LR"(Z:\dev\shm)")) folders.push_back(LR"(Z:\dev\shm)");
    return folders;
}

// Every staged file is in its place or in a backup, whole. Gives the number of those that are away.
int expectNothingLost(const Profile& profile, const Snapshot& before) {
    const Snapshot now = SnapshotOf(profile.user);
    std::set<std::string> held;
    for (const auto& [path, text] : now)
        held.insert(text);
    for (const auto& [path, text] : SnapshotOf(profile.toolFolder))
        held.insert(text);
    int away = 0;
    for (const auto& [path, text] : before) {
        if (!text.starts_with("file")) continue;
        EXPECT_TRUE(held.contains(text)) << utf8FromWide(path);
        away += now.contains(path) ? 0 : 1;
    }
    return away;
}

constexpr wchar_t kChildAct[] = L"MIRELO_TEST_ACT";
constexpr wchar_t kChildUser[] = L"MIRELO_TEST_USER";
constexpr wchar_t kChildTool[] = L"MIRELO_TEST_TOOL";
constexpr wchar_t kChildParent[] = L"MIRELO_TEST_PARENT";

struct Signals {
    explicit Signals(const std::wstring& parent)
        : begun(CreateEventW(nullptr, FALSE, FALSE, (L"Local\\begun-" + parent).c_str())),
          finished(CreateEventW(nullptr, FALSE, FALSE, (L"Local\\finished-" + parent).c_str())) {}
    KernelHandle begun, finished;
};

double secondsNow() {
    LARGE_INTEGER count{}, frequency{};
    QueryPerformanceCounter(&count);
    QueryPerformanceFrequency(&frequency);
    return static_cast<double>(count.QuadPart) / static_cast<double>(frequency.QuadPart);
}

// One of the two acts, done over and over by processes that are killed at it.
class KilledAct {
  public:
    explicit KilledAct(const wchar_t* name) : name_(name) {}

    /// Kills after a share of the time that the act should take; without one it comes to its end,
    /// to learn that time. True when it was killed at work.
    bool run(const Profile& profile, std::optional<double> share = {}) {
        if (!start(profile)) return false;
        const double begun = secondsNow();
        if (share) {
            while (secondsNow() - begun < *share * seconds_) {
            }
            TerminateProcess(process_.get(), 9);
        } else {
            EXPECT_EQ(WaitForSingleObject(signals_.finished.get(), kLimitMs), WAIT_OBJECT_0);
            seconds_ = secondsNow() - begun;
        }
        WaitForSingleObject(process_.get(), kLimitMs);
        return share && WaitForSingleObject(signals_.finished.get(), 0) != WAIT_OBJECT_0;
    }
    /// The machine has other work too, so the time that is expected follows what is met.
    void expectLater() { seconds_ *= 1.5; }
    void expectSooner() { seconds_ *= 0.7; }
    /// Lets it come to its end, to learn how long it takes.
    void runWhole(const Profile& profile) {
        if (!start(profile)) return;
        const double begun = secondsNow();
        EXPECT_EQ(WaitForSingleObject(signals_.finished.get(), kLimitMs), WAIT_OBJECT_0);
        seconds_ = secondsNow() - begun;
        WaitForSingleObject(process_.get(), kLimitMs);
    }

  private:
    static constexpr DWORD kLimitMs = 60'000;

    bool start(const Profile& profile) {
        SetEnvironmentVariableW(kChildAct, name_);
        SetEnvironmentVariableW(kChildUser, profile.user.c_str());
        SetEnvironmentVariableW(kChildTool, profile.toolFolder.c_str());
        SetEnvironmentVariableW(kChildParent, parent_.c_str());
        wchar_t self[MAX_PATH] = L"";
        GetModuleFileNameW(nullptr, self, MAX_PATH);
        process_ = StartProgram(L"\"" + std::wstring(self) +
                                L"\" --gtest_also_run_disabled_tests --gtest_brief=1"
                                L" --gtest_filter=DISABLED_CleanupChild.Runs");
        SetEnvironmentVariableW(kChildAct, nullptr);
        const HANDLE either[] = {signals_.begun.get(), process_.get()};
        const bool hasBegun =
            process_ && WaitForMultipleObjects(2, either, FALSE, kLimitMs) == WAIT_OBJECT_0;
        EXPECT_TRUE(hasBegun) << "the child never began";
        return hasBegun;
    }

    const wchar_t* name_;
    const std::wstring parent_ = decimalUnsigned(GetCurrentProcessId());
    Signals signals_{parent_};
    KernelHandle process_;
    double seconds_ = 0;
};

}  // namespace

TEST(DISABLED_CleanupChild, Runs) {
    const std::wstring act = variable(kChildAct);
    if (act.empty()) GTEST_SKIP() << "runs as the child of another test";
    const Profile profile(variable(kChildUser), variable(kChildTool));
    const Signals signals(variable(kChildParent));
    const auto begun = [&] { SetEvent(signals.begun.get()); };
    if (act == L"clean") {
        profile.clean(begun);
    } else {
        begun();
        profile.restore();
    }
    SetEvent(signals.finished.get());
}

TEST(CleanupKills, LoseNothingAndRestoreFinishes) {
    const int asked = _wtoi(variable(L"MIRELO_KILL_ROUNDS").c_str());
    const int rounds = asked > 0 ? asked : 4;
    const StagedFolder stage;
    std::vector<std::unique_ptr<StagedFolder>> tools;
    for (const std::wstring& below : toolFolders(stage))
        tools.push_back(std::make_unique<StagedFolder>(below));
    const std::wstring user = stage.path() + L"\\user";
    constexpr int kMore = 24;
    constexpr int kAll = static_cast<int>(kStagedCleaned) + kMore;
    Profile(user, L"").stage(kMore);
    const Snapshot before = Profile(user, tools[0]->path()).snapshot();

    struct Work {
        KilledAct act;
        int awayAtStart;
        int kills = 0, midway = 0;
    };
    // A rename and a copy take very different times, so each volume has its own two acts.
    for (const auto& tool : tools) {
        const Profile profile(user, tool->path());
        Work cleaning{KilledAct(L"clean"), 0}, restoring{KilledAct(L"restore"), kAll};
        const auto kill = [&](Work& work, double share) {
            const bool isAtWork = work.act.run(profile, share);
            const int away = expectNothingLost(profile, before);
            if (!isAtWork) return work.act.expectSooner();
            if (away == work.awayAtStart) work.act.expectLater();
            ++work.kills;
            if (away > 0 && away < kAll) ++work.midway;
        };
        const auto expectAllBack = [&] {
            profile.restore();
            EXPECT_EQ(DifferenceOf(profile.snapshot(), before), "");
            EXPECT_EQ(SnapshotOf(BackupsFolder(profile.toolFolder)).size(), 0U);
        };
        cleaning.act.run(profile);
        restoring.act.run(profile);
        expectAllBack();

        // Counted are those that leave some files away and some in place. The others, at the list
        // and the folders or when all was done, must lose nothing either.
        const int perVolume = rounds / static_cast<int>(tools.size());
        unsigned seed = 0;
        while (std::min(cleaning.midway, restoring.midway) < perVolume && !HasFailure()) {
            SCOPED_TRACE(++seed);
            ASSERT_LT(seed, 20U + 6U * static_cast<unsigned>(perVolume))
                << "the kills fall beside the work";
            std::mt19937 random(seed);
            std::uniform_real_distribution<double> share(0.0, 1.0);
            kill(cleaning, share(random));
            // Half of the time the way back from that is cut as well.
            if (seed % 2 == 0) {
                restoring.act.run(profile, share(random) * share(random));
                expectNothingLost(profile, before);
            }
            expectAllBack();

            EXPECT_EQ(profile.clean().failures.size(), 0U);
            kill(restoring, share(random));
            expectAllBack();
        }
        std::cout << utf8FromWide(tool->path()) << ": " << cleaning.kills << " kills in cleanup, "
                  << cleaning.midway << " of them between the first and the last file; "
                  << restoring.kills << " in restore, " << restoring.midway << " between\n";
    }
}

TEST(CleanupOnWindows, BringsAProfileBackOnEveryVolumeAndLeavesLinksAndFilesInUse) {
    const StagedFolder stage;
    const std::wstring victims = stage.path() + L"\\victims\\Draw\\PreviewCache";
    WriteStaged(victims + L"\\a.png", "victim");
    const Profile home(stage.path() + L"\\user", L"");
    home.stage();
    const std::wstring suite = home.roots[1] + L"\\Corel\\CorelDRAW Graphics Suite ";
    ASSERT_TRUE(MakeFolderLink(suite + L"X8", stage.path() + L"\\victims"));
    ASSERT_TRUE(MakeFolderLink(suite + L"X7\\Draw\\PreviewCache\\link", victims));
    ASSERT_TRUE(MakeFileLink(home.roots[2] + L"\\CDR99.tmp", victims + L"\\a.png"));
    const Snapshot before = home.snapshot();
    for (const std::wstring& below : toolFolders(stage)) {
        const StagedFolder tool(below);
        const Profile profile(home.user, tool.path());
        const std::wstring used = suite + L"X7\\Draw\\PreviewCache\\one.png";
        {
            const FileHandle user(
                CreateFileW(used.c_str(), GENERIC_READ, 7, nullptr, OPEN_EXISTING, 0, nullptr));
            const CleanupReport report = profile.clean();
            // Where the system shows a link to a file as a file, it is met when it would move.
            for (const FileFailure& failure : report.failures)
                EXPECT_EQ(failure.reason.outcome, FileOutcome::link);
            EXPECT_EQ(report.kinds[static_cast<std::size_t>(CacheKind::thumbnailCache)].inUse, 1U);
        }
        for (const StagedFile& file : kStagedFiles) {
            const std::wstring path = profile.user + L"\\" + file.path;
            EXPECT_EQ(IsThere(path), !file.isCleaned || path == used) << utf8FromWide(path);
        }
        EXPECT_EQ(ReadStaged(victims + L"\\a.png"), "victim");
        EXPECT_TRUE(IsThere(suite + L"X7\\Draw\\PreviewCache\\link"));
        // The table's own folders stay, what was below them is gone.
        const std::wstring queue = profile.roots[1] + L"\\Microsoft\\Windows\\WER\\ReportQueue";
        EXPECT_TRUE(IsThere(queue) && !IsThere(queue + L"\\AppHang_coreldrw.EXE_77"));
        EXPECT_TRUE(profile.restore().isEmptied);
        EXPECT_EQ(DifferenceOf(profile.snapshot(), before), "");
    }
}
