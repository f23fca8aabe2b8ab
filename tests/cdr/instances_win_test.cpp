#include "cdr/instances_win.h"

#include <windows.h>

#include <gtest/gtest.h>
#include <tlhelp32.h>

#include <algorithm>

#include "cdr/responsiveness_win.h"
#include "cdr/version_string_win.h"
#include "tests/cdr/practice_process_win.h"

namespace {

constexpr unsigned kShortMs = 200;
constexpr unsigned kLongMs = 20000;

// The practice program under another file name, in a folder of its own for as long as it lives.
class RenamedProgram {
  public:
    explicit RenamedProgram(const wchar_t* fileName)
        : folder_(std::filesystem::temp_directory_path() /
                  (L"mirelo-test-" + std::to_wstring(GetCurrentProcessId()))),
          path_(folder_ / fileName) {
        std::filesystem::create_directories(folder_);
        std::filesystem::copy_file(PracticeProgram(), path_);
    }
    RenamedProgram(const RenamedProgram&) = delete;
    RenamedProgram& operator=(const RenamedProgram&) = delete;
    ~RenamedProgram() {
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
        std::filesystem::remove(folder_, ignored);
    }

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

  private:
    std::filesystem::path folder_;
    std::filesystem::path path_;
};

std::wstring TitleOf(WindowHandle window) {
    wchar_t title[128] = {};
    GetWindowTextW(static_cast<HWND>(window), title, 128);
    return title;
}

// Whatever else runs under the name meanwhile is left out.
std::vector<DWORD> ListedAmong(const std::vector<DWORD>& pids) {
    std::vector<DWORD> listed;
    for (const CdrInstance& instance : EnumerateCdrInstances()) {
        if (std::find(pids.begin(), pids.end(), instance.pid) != pids.end())
            listed.push_back(instance.pid);
    }
    return listed;
}

std::vector<DWORD> InSnapshotOrder(const std::vector<DWORD>& pids) {
    std::vector<DWORD> ordered;
    const FileHandle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    PROCESSENTRY32W entry{};
    entry.dwSize = sizeof entry;
    for (BOOL more = Process32FirstW(snapshot.get(), &entry); more;
         more = Process32NextW(snapshot.get(), &entry)) {
        if (std::find(pids.begin(), pids.end(), entry.th32ProcessID) != pids.end())
            ordered.push_back(entry.th32ProcessID);
    }
    return ordered;
}

}  // namespace

TEST(Instances, AreReadWhole) {
    const PracticeProcess practice(L"responsive");
    const CdrInstance instance = practice.listed();
    ASSERT_EQ(instance.pid, practice.pid());
    EXPECT_EQ(instance.exePath, PracticeProgram().wstring());
    EXPECT_EQ(instance.version, L"25.0.0.230");
    EXPECT_EQ(TitleOf(instance.mainWindow), L"CorelDRAW (practice) - responsive");
    EXPECT_EQ(instance.mainThreadId,
              GetWindowThreadProcessId(static_cast<HWND>(instance.mainWindow), nullptr));
}

TEST(Instances, AreKnownByTheWholeNameInAnyCase) {
    const RenamedProgram upper(L"CORELDRW.EXE");
    const PracticeProcess shouting(L"responsive", upper.path());
    EXPECT_EQ(shouting.listed().pid, shouting.pid());
    EXPECT_EQ(shouting.listed().exePath, upper.path().wstring());

    for (const wchar_t* other : {L"CorelDRW64.exe", L"MyCorelDRW.exe"}) {
        const RenamedProgram renamed(other);
        const PracticeProcess practice(L"responsive", renamed.path());
        EXPECT_EQ(practice.listed().pid, 0U) << other;
    }
}

TEST(Instances, NeedAWindowButNoVersion) {
    const PracticeProcess splash(L"splash");
    EXPECT_EQ(splash.listed().pid, 0U);

    const PracticeProcess plain(L"responsive", PlainPracticeProgram());
    EXPECT_EQ(plain.listed().pid, plain.pid());
    EXPECT_EQ(plain.listed().exePath, PlainPracticeProgram().wstring());
    EXPECT_EQ(ShownVersion(plain.listed()), L"(unknown)");
}

TEST(Instances, ComeInTheOrderOfTheSystemsSnapshot) {
    const PracticeProcess one(L"responsive");
    const PracticeProcess two(L"responsive");
    const PracticeProcess three(L"responsive", PlainPracticeProgram());
    const std::vector<DWORD> pids = {three.pid(), two.pid(), one.pid()};
    EXPECT_EQ(ListedAmong(pids).size(), 3U);
    EXPECT_EQ(ListedAmong(pids), InSnapshotOrder(pids));
}

TEST(Instances, AreListedUnreadWhenTheyCannotBeOpened) {
    const PracticeProcess practice(L"responsive");
    Forbid(practice.process());
    const CdrInstance instance = practice.listed();
    EXPECT_EQ(instance.pid, practice.pid());
    EXPECT_NE(instance.mainThreadId, 0U);
    EXPECT_EQ(instance.exePath, L"");
    EXPECT_EQ(instance.version, L"");
}

TEST(Responsiveness, IsWhatTheWindowAnswersInTime) {
    PracticeProcess practice(L"own-code");
    const WindowHandle window = practice.listed().mainWindow;
    ASSERT_NE(window, nullptr);
    EXPECT_FALSE(IsWindowResponsive(window, kShortMs));
    practice.signal(L"release");
    EXPECT_TRUE(IsWindowResponsive(window, kLongMs));
    practice.end();
    EXPECT_FALSE(IsWindowResponsive(window, kLongMs));
    EXPECT_FALSE(IsWindowResponsive(nullptr, kLongMs));
}

TEST(VersionString, IsEmptyWhereThereIsNone) {
    const std::wstring program = PracticeProgram().wstring();
    EXPECT_EQ(ReadVersionString(program, L"CompanyName"), L"Mirelo practice");
    EXPECT_EQ(ReadVersionString(program, L"Unheard"), L"");
    EXPECT_EQ(ReadVersionString(PlainPracticeProgram().wstring(), L"ProductVersion"), L"");
    EXPECT_EQ(ReadVersionString(program + L".none", L"ProductVersion"), L"");
}
