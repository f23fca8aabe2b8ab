#include "cdr/instances_win.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <vector>

#include "cdr/metrics_win.h"
#include "cdr/responsiveness_win.h"
#include "cdr/version_string_win.h"
#include "tests/cdr/practice_process_win.h"

namespace {

constexpr unsigned kShortMs = 200;
constexpr unsigned kLongMs = 20000;

// The practice program under another file name, in a folder of its own for as long as it lives.
struct RenamedProgram {
    explicit RenamedProgram(const wchar_t* fileName)
        : folder(std::filesystem::temp_directory_path() /
                 (L"mirelo-test-" + std::to_wstring(GetCurrentProcessId()))),
          path(folder / fileName) {
        std::filesystem::create_directories(folder);
        std::filesystem::copy_file(PracticeProgram(), path);
    }
    RenamedProgram(const RenamedProgram&) = delete;
    RenamedProgram& operator=(const RenamedProgram&) = delete;
    ~RenamedProgram() {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }

    const std::filesystem::path folder, path;
};

std::wstring TitleOf(WindowHandle window) {
    wchar_t title[128] = {};
    GetWindowTextW(static_cast<HWND>(window), title, 128);
    return title;
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
    const PracticeProcess shouting(L"responsive", upper.path);
    EXPECT_EQ(shouting.listed().pid, shouting.pid());
    EXPECT_EQ(shouting.listed().exePath, upper.path.wstring());

    for (const wchar_t* other : {L"CorelDRW64.exe", L"MyCorelDRW.exe"}) {
        const RenamedProgram renamed(other);
        const PracticeProcess practice(L"responsive", renamed.path);
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
    const CdrMetrics hung = ReadMetrics(practice.pid(), window);
    EXPECT_TRUE(hung.ok);
    EXPECT_FALSE(hung.responsive);
    // Without a process nothing is asked of the window.
    const CdrMetrics unread = ReadMetrics(0, window);
    EXPECT_FALSE(unread.ok);
    EXPECT_TRUE(unread.responsive);

    practice.signal(L"release");
    EXPECT_TRUE(IsWindowResponsive(window, kLongMs));
    practice.end();
    EXPECT_FALSE(IsWindowResponsive(window, kLongMs));
    EXPECT_FALSE(IsWindowResponsive(nullptr, kLongMs));
}

TEST(ReadMetrics, MeasuresARunningProcess) {
    constexpr std::size_t kMegabytes = 64;
    const CdrMetrics before = ReadMetrics(GetCurrentProcessId(), nullptr);
    const std::vector<char> touched(kMegabytes << 20, 'x');
    const CdrMetrics after = ReadMetrics(GetCurrentProcessId(), nullptr);
    EXPECT_TRUE(after.ok);
    EXPECT_TRUE(after.responsive);
    EXPECT_GE(after.workingSetMB, before.workingSetMB + kMegabytes / 2);
    EXPECT_LT(after.workingSetMB, before.workingSetMB + kMegabytes * 2);
}

TEST(VersionString, IsEmptyWhereThereIsNone) {
    const std::wstring program = PracticeProgram().wstring();
    EXPECT_EQ(ReadVersionString(program, L"CompanyName"), L"Mirelo practice");
    EXPECT_EQ(ReadVersionString(program, L"Unheard"), L"");
    EXPECT_EQ(ReadVersionString(PlainPracticeProgram().wstring(), L"ProductVersion"), L"");
    EXPECT_EQ(ReadVersionString(program + L".none", L"ProductVersion"), L"");
}
