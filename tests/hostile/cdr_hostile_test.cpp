// Running copies of CorelDRAW as only Windows itself shows them.
#include <windows.h>

#include <gtest/gtest.h>
#include <psapi.h>
#include <tlhelp32.h>

#include <string>
#include <string_view>

#include "cdr/instances_win.h"
#include "cdr/metrics_win.h"
#include "cdr/responsiveness_win.h"
#include "fixes/cleanup/cleanup_win.h"
#include "tests/cdr/practice_process_win.h"
#include "tests/hostile/imitation.h"

IMITATE("advapi32.dll", GetTokenInformation);
IMITATE("advapi32.dll", OpenProcessToken);
IMITATE("kernel32.dll", GetProcAddress);
IMITATE("kernel32.dll", K32GetProcessMemoryInfo);
IMITATE("kernel32.dll", Process32NextW);
IMITATE("kernel32.dll", ProcessIdToSessionId);
IMITATE("kernel32.dll", QueryFullProcessImageNameW);
IMITATE("user32.dll", GetGuiResources);
IMITATE("user32.dll", IsWindowVisible);

TEST(Instances, AreKnownByTheirNameAndReadAsFarAsTheyMayBe) {
    EXPECT_EQ(PracticeProcess(L"splash").listed().pid, 0U);
    const PracticeProcess practice(L"responsive");
    std::wstring name = L"CORELDRW.EXE";
    const Staged renames(Process32NextWImitation, [&](HANDLE snapshot, PROCESSENTRY32W* entry) {
        const BOOL isThere = Process32NextWImitation.real(snapshot, entry);
        if (entry->th32ProcessID == practice.pid()) wcscpy(entry->szExeFile, name.c_str());
        return isThere;
    });
    EXPECT_EQ(practice.listed().exePath, PracticeProgram().wstring());
    EXPECT_EQ(practice.listed().version, L"25.0.0.230");
    EXPECT_TRUE(IsWindowResponsive(practice.listed().mainWindow, 20000));
    const Staged closed(QueryFullProcessImageNameWImitation, fails);
    EXPECT_NE(practice.listed().mainWindow, nullptr);
    EXPECT_EQ(practice.listed().exePath + practice.listed().version, L"");
    name = L"CorelDRW64.exe";
    EXPECT_EQ(practice.listed().pid, 0U);
}

TEST(HostileInstances, AreFoundByTheSystemsCopyOfTheirHungWindow) {
    static HWND window = nullptr;
    const PracticeProcess practice(L"plugin-sleep");
    window = static_cast<HWND>(practice.listed().mainWindow);
    const Staged hides(IsWindowVisibleImitation, [](HWND asked) {
        return asked == window ? FALSE : IsWindowVisibleImitation.real(asked);
    });
    const Staged copies(GetProcAddressImitation, [](HMODULE module, LPCSTR name) {
        if (IS_INTRESOURCE(name) || std::string_view(name) != "GhostWindowFromHungWindow")
            return GetProcAddressImitation.real(module, name);
        return procedure(+[](HWND asked) { return asked == window ? asked : nullptr; });
    });
    EXPECT_EQ(practice.listed().mainWindow, window);
}

TEST(HostileInstances, OfAnotherUserDoNotCount) {
    const PracticeProcess practice(L"responsive");
    UserFolders user;
    const auto isRunning = [context = user.context()] { return context.running().coreldraw; };
    EXPECT_TRUE(isRunning());
    // Its user is asked for first, then this program's.
    bool isTheirs = false;
    const Staged tells(
        GetTokenInformationImitation, [&](HANDLE token, auto kind, void* buffer, auto... sizes) {
            const BOOL isTold = GetTokenInformationImitation.real(token, kind, buffer, sizes...);
            isTheirs = !isTheirs;
            if (isTheirs) ++*GetSidSubAuthority(static_cast<TOKEN_USER*>(buffer)->User.Sid, 0);
            return isTold;
        });
    EXPECT_FALSE(isRunning());
    const Staged isElevated(OpenProcessTokenImitation, fails);
    EXPECT_TRUE(isRunning());
    const Staged apart(ProcessIdToSessionIdImitation, [](DWORD process, DWORD* session) {
        *session = process;
        return TRUE;
    });
    EXPECT_FALSE(isRunning());
}

TEST(HostileMetrics, ComeFromTheRightCounters) {
    DWORD gdi = 0;
    const Staged counts(GetGuiResourcesImitation,
                        [&](HANDLE, DWORD which) { return which == GR_GDIOBJECTS ? gdi : 7777; });
    const Staged measures(K32GetProcessMemoryInfoImitation, [](HANDLE, auto* basic, DWORD) -> BOOL {
        auto& counters = *reinterpret_cast<PROCESS_MEMORY_COUNTERS_EX*>(basic);
        counters.WorkingSetSize = 1048575;
        counters.PagefileUsage = 3 << 20;
        counters.PrivateUsage = (5ULL << 32) + 1048575;
        return TRUE;
    });
    for (const std::wstring level :
         {L"8000 (OK)", L"8001 (Warning (near handle limit))",
          L"9000 (Warning (near handle limit))", L"9001 (Critical (crash likely))"}) {
        gdi = std::stoul(level);
        EXPECT_EQ(MetricsLine(ReadMetrics(GetCurrentProcessId(), nullptr)),
                  L"[Dashboard] GDI handles: " + level +
                      L"  Working set: 0 MB  Private: 20480 MB  Responsive: yes");
    }
}
