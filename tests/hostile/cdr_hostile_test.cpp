// Running copies of CorelDRAW as only Windows itself shows them.
#include <windows.h>

#include <gtest/gtest.h>
#include <psapi.h>
#include <tlhelp32.h>

#include <cwchar>
#include <string>
#include <string_view>

#include "cdr/instances_win.h"
#include "cdr/metrics_win.h"
#include "cdr/responsiveness_win.h"
#include "tests/cdr/practice_process_win.h"
#include "tests/hostile/imitation.h"

IMITATE("kernel32.dll", GetProcAddress);
IMITATE("user32.dll", GetGuiResources);
IMITATE("user32.dll", IsWindowVisible);
IMITATE("kernel32.dll", K32GetProcessMemoryInfo);
IMITATE("kernel32.dll", Process32NextW);
IMITATE("kernel32.dll", QueryFullProcessImageNameW);

TEST(Instances, AreKnownByTheirNameAndReadAsFarAsTheyMayBe) {
    EXPECT_EQ(PracticeProcess(L"splash").listed().pid, 0U);
    const PracticeProcess plain(L"responsive", PlainPracticeProgram());
    EXPECT_EQ(plain.listed().exePath, PlainPracticeProgram().wstring());
    EXPECT_EQ(plain.listed().version, L"");

    const PracticeProcess practice(L"responsive");
    const wchar_t* name = L"CORELDRW.EXE";
    const Staged renames(Process32NextWImitation, [&](HANDLE snapshot, PROCESSENTRY32W* entry) {
        const BOOL isThere = Process32NextWImitation.real(snapshot, entry);
        if (entry->th32ProcessID == practice.pid()) std::wcscpy(entry->szExeFile, name);
        return isThere;
    });
    const CdrInstance instance = practice.listed();
    EXPECT_EQ(instance.exePath, PracticeProgram().wstring());
    EXPECT_EQ(instance.version, L"25.0.0.230");
    wchar_t title[64] = {};
    GetWindowTextW(static_cast<HWND>(instance.mainWindow), title, 64);
    EXPECT_EQ(title, std::wstring(L"CorelDRAW (practice) - responsive"));
    {
        const Staged closed(QueryFullProcessImageNameWImitation, [](auto...) { return FALSE; });
        EXPECT_EQ(practice.listed().mainWindow, instance.mainWindow);
        EXPECT_EQ(practice.listed().exePath + practice.listed().version, L"");
    }
    for (const wchar_t* other : {L"CorelDRW64.exe", L"MyCorelDRW.exe"}) {
        name = other;
        EXPECT_EQ(practice.listed().pid, 0U) << other;
    }
}

TEST(Responsiveness, IsWhatTheWindowAnswersInTime) {
    constexpr unsigned kShortMs = 200;
    constexpr unsigned kLongMs = 20000;
    PracticeProcess practice(L"own-code");
    const WindowHandle window = practice.listed().mainWindow;
    EXPECT_FALSE(IsWindowResponsive(window, kShortMs));
    EXPECT_FALSE(ReadMetrics(practice.pid(), window).responsive);
    practice.signal(L"release");
    EXPECT_TRUE(IsWindowResponsive(window, kLongMs));
    const DWORD pid = practice.pid();
    const KernelHandle held(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, pid));
    practice.end();
    EXPECT_FALSE(IsWindowResponsive(window, kLongMs));
    EXPECT_FALSE(IsWindowResponsive(nullptr, kLongMs));
    const CdrMetrics gone = ReadMetrics(pid, window);
    EXPECT_TRUE(!gone.ok && gone.responsive) << "without a process nothing is asked of the window";
}

TEST(HostileInstances, AreFoundByTheSystemsCopyOfTheirHungWindow) {
    static HWND window = nullptr;
    const PracticeProcess practice(L"plugin-sleep");
    window = static_cast<HWND>(practice.listed().mainWindow);
    ASSERT_NE(window, nullptr);
    const Staged hides(IsWindowVisibleImitation, [](HWND asked) {
        return asked == window ? FALSE : IsWindowVisibleImitation.real(asked);
    });
    EXPECT_EQ(practice.listed().pid, 0U) << "hidden, and the system shows no copy";
    const Staged copies(GetProcAddressImitation, [](HMODULE module, LPCSTR name) {
        if (IS_INTRESOURCE(name) || std::string_view(name) != "GhostWindowFromHungWindow")
            return GetProcAddressImitation.real(module, name);
        HWND (*const ghostOf)(HWND) = [](HWND asked) { return asked == window ? asked : nullptr; };
        return reinterpret_cast<FARPROC>(reinterpret_cast<void (*)()>(ghostOf));
    });
    EXPECT_EQ(practice.listed().mainWindow, window);
}

TEST(HostileMetrics, ComeFromTheRightCounters) {
    DWORD gdi = 0;
    const Staged counts(GetGuiResourcesImitation, [&](HANDLE process, DWORD which) {
        EXPECT_EQ(GetProcessId(process), GetCurrentProcessId());
        return which == GR_GDIOBJECTS ? gdi : 7777;
    });
    const Staged measures(K32GetProcessMemoryInfoImitation,
                          [](HANDLE, PPROCESS_MEMORY_COUNTERS basic, DWORD size) -> BOOL {
                              auto& counters =
                                  *reinterpret_cast<PROCESS_MEMORY_COUNTERS_EX*>(basic);
                              EXPECT_EQ(size, 80U);
                              EXPECT_EQ(counters.cb, 80U);
                              counters.WorkingSetSize = 1048575;
                              counters.PagefileUsage = 3 << 20;
                              counters.PrivateUsage = (5ULL << 32) + 1048575;
                              return TRUE;
                          });
    const struct {
        DWORD gdi;
        const wchar_t* level;
    } cases[] = {{8000, L"8000 (OK)"},
                 {8001, L"8001 (Warning (near handle limit))"},
                 {9000, L"9000 (Warning (near handle limit))"},
                 {9001, L"9001 (Critical (crash likely))"}};
    for (const auto& c : cases) {
        gdi = c.gdi;
        EXPECT_EQ(MetricsLine(ReadMetrics(GetCurrentProcessId(), nullptr)),
                  L"[Dashboard] GDI handles: " + std::wstring(c.level) +
                      L"  Working set: 0 MB  Private: 20480 MB  Responsive: yes");
    }
    const Staged fails(K32GetProcessMemoryInfoImitation, [](auto...) { return FALSE; });
    const CdrMetrics unread = ReadMetrics(GetCurrentProcessId(), nullptr);
    EXPECT_TRUE(unread.ok);
    EXPECT_EQ(unread.workingSetMB + unread.privateMB, 0U);
}
