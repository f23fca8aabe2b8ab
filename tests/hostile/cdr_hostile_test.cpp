// Running copies of CorelDRAW as only Windows itself shows them.
#include <windows.h>

#include <gtest/gtest.h>
#include <psapi.h>

#include <string_view>

#include "cdr/instances_win.h"
#include "cdr/metrics_win.h"
#include "tests/cdr/practice_process_win.h"
#include "tests/hostile/imitation.h"

IMITATE("kernel32.dll", GetProcAddress);
IMITATE("user32.dll", IsWindowVisible);
IMITATE("user32.dll", GetGuiResources);
IMITATE("kernel32.dll", K32GetProcessMemoryInfo);

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
