// Captures on a Windows whose functions fail, crash and block: whatever happens, the target goes
// on.
#include <windows.h>

#include <dbghelp.h>
#include <gtest/gtest.h>
#include <process.h>
#include <psapi.h>

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <sstream>
#include <string>
#include <tuple>

#include "diagnosis/classify.h"
#include "diagnosis/stack_capture_win.h"
#include "diagnosis/system_files_win.h"
#include "tests/cdr/practice_process_win.h"
#include "tests/hostile/imitation.h"

IMITATE("kernel32.dll", GetThreadContext);
IMITATE("kernel32.dll", GetTickCount64);
IMITATE("kernel32.dll", K32GetModuleFileNameExW);
IMITATE("kernel32.dll", ReadProcessMemory);
IMITATE("kernel32.dll", SleepConditionVariableSRW);
IMITATE("dbghelp.dll", StackWalk64);
IMITATE("dbghelp.dll", SymCleanup);
IMITATE("dbghelp.dll", SymFromAddrW);
IMITATE("dbghelp.dll", SymGetModuleInfoW64);
IMITATE("dbghelp.dll", SymInitialize);
IMITATE("dbghelp.dll", SymLoadModuleExW);
IMITATE("dbghelp.dll", SymRegisterCallback64);

namespace {

constexpr DWORD kLimitMs = 20000;
constexpr const wchar_t* kWalkFailed =
    L"Stack walk failed. CDR may have recovered - capture again while it hangs.";

const auto fail = [](auto...) { return FALSE; };
const auto crash = [](auto...) -> BOOL {
    volatile int* volatile nowhere = nullptr;
    *nowhere = 1;
    return FALSE;
};

template <typename Function, typename Instead>
std::shared_ptr<void> staged(Imitation<Function>& imitation, Instead instead) {
    return std::make_shared<Staged<Function>>(imitation, instead);
}

// All captures are of one hanging program, whose thread the test holds once itself: a resume that
// is missing shows as well as one too many. The debug-help library finds no module by itself.
class HostileCapture : public ::testing::Test {
  protected:
    static void SetUpTestSuite() { all = std::make_unique<All>(); }
    static void TearDownTestSuite() { all.reset(); }
    void TearDown() override { expectToGoOn("at the end"); }

    static CaptureResult capture() {
        return CaptureMainThreadStack(all->target.pid, all->target.mainThreadId);
    }

    static void expectToGoOn(const char* after) {
        EXPECT_EQ(SuspendCount(all->target.mainThreadId), 1U) << after;
        const CaptureResult next = capture();
        EXPECT_EQ(next.error, L"") << after;
        EXPECT_EQ(FindSuspect(next.frames, kSystemFiles).module, L"slowfilter.cpg") << after;
        EXPECT_EQ(SuspendCount(all->target.mainThreadId), 1U) << after;
    }

    struct All {
        PracticeProcess practice{L"plugin-sleep"};
        CdrInstance target = practice.listed();
        KernelHandle thread{OpenThread(THREAD_SUSPEND_RESUME, FALSE, target.mainThreadId)};
        DWORD before = SuspendThread(thread.get());
        PSYMBOL_REGISTERED_CALLBACK64 callback = nullptr;
        std::shared_ptr<void> initialize =
            staged(SymInitializeImitation, [this](HANDLE process, PCSTR path, BOOL invade) {
                EXPECT_TRUE(invade);
                EXPECT_EQ(SuspendCount(target.mainThreadId), 1U) << "held while registering";
                return SymInitializeImitation.real(process, path, FALSE);
            });
        std::shared_ptr<void> registered =
            staged(SymRegisterCallback64Imitation, [this](HANDLE, auto function, ULONG64) {
                callback = function;
                return TRUE;
            });

        ~All() { ResumeThread(thread.get()); }
    };
    static inline std::unique_ptr<All> all;
};

}  // namespace

TEST_F(HostileCapture, EndsAloneWhateverFails) {
    const struct {
        const char* what;
        const wchar_t* error;
        std::function<std::shared_ptr<void>()> fault;
    } cases[] = {
        {"a crash while registering", kWalkFailed,
         [] { return staged(SymInitializeImitation, crash); }},
        {"no context", L"Failed to read thread context.",
         [] { return staged(GetThreadContextImitation, fail); }},
        {"no frame", kWalkFailed, [] { return staged(StackWalk64Imitation, fail); }},
        {"a crash while walking", kWalkFailed, [] { return staged(StackWalk64Imitation, crash); }},
        {"a crash in a look-up", kWalkFailed, [] { return staged(SymFromAddrWImitation, crash); }},
        {"an exception", kWalkFailed,
         [] { return staged(StackWalk64Imitation, [](auto...) -> BOOL { throw 5; }); }},
    };
    for (const auto& c : cases) {
        {
            const auto crashesToo = staged(SymCleanupImitation, crash);
            const auto fault = c.fault();
            EXPECT_EQ(capture().error, c.error) << c.what;
        }
        expectToGoOn(c.what);
    }
}

TEST_F(HostileCapture, IsCutShortByTheWatchdog) {
    const DWORD self = GetCurrentThreadId();
    std::atomic<int> lookUps = 0;
    DWORD patienceMs = 0;
    // The watchdog's time is over as soon as a look-up is stuck.
    const Staged hurries(SleepConditionVariableSRWImitation,
                         [&](auto* changed, auto* lock, DWORD ms, ULONG flags) {
                             auto& windows = SleepConditionVariableSRWImitation;
                             if (GetCurrentThreadId() == self || ms == INFINITE)
                                 return windows.real(changed, lock, ms, flags);
                             patienceMs = ms;
                             while (lookUps == 0)
                                 windows.real(changed, lock, 1, flags);
                             return FALSE;
                         });
    const Staged blocks(SymFromAddrWImitation, [&](auto...) {
        ++lookUps;
        const ULONGLONG endMs = GetTickCount64() + kLimitMs;
        while (SuspendCount(all->target.mainThreadId) > 1 && GetTickCount64() < endMs)
            SwitchToThread();
        return FALSE;
    });
    EXPECT_EQ(capture().error, kWalkFailed);
    EXPECT_EQ(lookUps, 1) << "the stack of a running thread was walked on";
    EXPECT_LE(patienceMs, 10000U);
    EXPECT_GT(patienceMs, 9000U);
}

TEST_F(HostileCapture, DoesNotWaitForSymbolsWhileTheThreadStands) {
    const auto isGivenUp = [] {
        return all->callback(nullptr, CBA_DEFERRED_SYMBOL_LOAD_CANCEL, 0, 0) != FALSE;
    };
    expectToGoOn("before");
    const Staged walks(StackWalk64Imitation, [&](auto... arguments) {
        EXPECT_FALSE(isGivenUp());
        const Staged late(GetTickCount64Imitation,
                          [] { return GetTickCount64Imitation.real() + 2100; });
        EXPECT_TRUE(isGivenUp());
        EXPECT_FALSE(all->callback(nullptr, CBA_DEFERRED_SYMBOL_LOAD_START, 0, 0));
        return StackWalk64Imitation.real(arguments...);
    });
    EXPECT_TRUE(capture().ok);
    EXPECT_FALSE(isGivenUp());
}

TEST_F(HostileCapture, LeavesSymbolsOnOtherMachinesAlone) {
    // Every image of the target names a symbol file of \\server.
    const auto read = [](HANDLE process, LPCVOID from, LPVOID to, SIZE_T size, SIZE_T* done) {
        IMAGE_DEBUG_DIRECTORY entry{};
        entry.Type = IMAGE_DEBUG_TYPE_CODEVIEW;
        entry.AddressOfRawData = 0x2000;
        const std::string name = "RSDS" + std::string(20, 'x') + "\\\\server";
        const ULONG_PTR offset = reinterpret_cast<ULONG_PTR>(from) & 0xFFFF;
        *done = size;
        if (offset == 0x1000) return std::memcpy(to, &entry, size) != nullptr ? TRUE : FALSE;
        if (offset == 0x2000) return std::memcpy(to, name.data(), size) != nullptr ? TRUE : FALSE;
        const BOOL isRead = ReadProcessMemoryImitation.real(process, from, to, size, done);
        if (size == sizeof(IMAGE_NT_HEADERS64))
            static_cast<IMAGE_NT_HEADERS64*>(to)->OptionalHeader.DataDirectory[6] = {0x1000, 28};
        return isRead;
    };
    const Staged reads(ReadProcessMemoryImitation, read);
    int loads = 0;
    const Staged loading(SymLoadModuleExWImitation, [&](auto&&... arguments) {
        ++loads;
        EXPECT_EQ(std::get<7>(std::tie(arguments...)), 4U);
        return std::get<4>(std::tie(arguments...));
    });
    capture();
    EXPECT_GT(loads, 5);
}

TEST_F(HostileCapture, BlamesTheSameWhateverTheLibraryKnows) {
    const std::wstring longPath = L"C:\\" + std::wstring(300, L'x') + L"\\slowfilter.cpg";
    const std::wstring realPath = PracticeProgram().parent_path() / L"slowfilter.cpg";
    const Staged nameless(SymFromAddrWImitation, fail);
    // No record of the library has room for such a path, and extensions are dropped.
    const Staged names(K32GetModuleFileNameExWImitation, [&](HANDLE process, HMODULE module,
                                                             LPWSTR path, DWORD room) {
        const DWORD length = K32GetModuleFileNameExWImitation.real(process, module, path, room);
        if (std::wstring_view(path, length) != realPath) return length;
        return static_cast<DWORD>(longPath.copy(path, room));
    });
    const Staged loads(SymLoadModuleExWImitation, [&](HANDLE process, HANDLE file, PCWSTR path,
                                                      PCWSTR, auto... others) {
        EXPECT_EQ(path, L"\\\\?\\" + longPath);
        return SymLoadModuleExWImitation.real(process, file, realPath.c_str(), nullptr, others...);
    });
    {
        const Staged cuts(SymGetModuleInfoW64Imitation, [&](auto... arguments) {
            const BOOL isKnown = SymGetModuleInfoW64Imitation.real(arguments...);
            IMAGEHLP_MODULEW64& module = *std::get<2>(std::tie(arguments...));
            if (module.ImageName != realPath) return isKnown;
            std::wmemcpy(module.ModuleName, L"slowfilter", 11);
            longPath.copy(module.ImageName, 255);
            return isKnown;
        });
        const SuspectFrame suspect = FindSuspect(capture().frames, kSystemFiles);
        EXPECT_EQ(suspect.module, L"slowfilter.cpg");
        EXPECT_EQ(suspect.frame.imagePath, longPath);
    }
    const Staged none(SymGetModuleInfoW64Imitation, fail);
    const SuspectFrame unknown = FindSuspect(capture().frames, kSystemFiles);
    EXPECT_EQ(unknown.category, FrameCategory::thirdParty);
    EXPECT_EQ(unknown.module, L"");
}

// Run by the test below in a process of its own.
TEST(DISABLED_Mirelo, DiesWhileItHoldsTheThread) {
    std::istringstream victim(std::getenv("MIRELO_VICTIM"));
    DWORD pid = 0, threadId = 0, way = 0;
    victim >> pid >> threadId >> way;
    // Instead of the system's box or debugger.
    SetUnhandledExceptionFilter([](EXCEPTION_POINTERS*) -> LONG {
        TerminateProcess(GetCurrentProcess(), 3);
        return EXCEPTION_EXECUTE_HANDLER;
    });
    const Staged dies(GetThreadContextImitation, [&](auto...) -> BOOL {
        if (SuspendCount(threadId) != 2) std::exit(9);
        if (way == 0) return crash();
        if (way == 1) std::terminate();
        const auto inThread = [](void*) -> DWORD { return static_cast<DWORD>(crash()); };
        const KernelHandle other(CreateThread(nullptr, 0, inThread, nullptr, 0, nullptr));
        WaitForSingleObject(GetCurrentProcess(), kLimitMs);
        return FALSE;
    });
    CaptureMainThreadStack(pid, threadId);
}

TEST_F(HostileCapture, SurvivesTheEndOfMirelo) {
    for (const char* way : {"0", "1", "2"}) {
        const std::string victim = "MIRELO_VICTIM=" + std::to_string(all->target.pid) + " " +
                                   std::to_string(all->target.mainThreadId) + " " + way;
        _putenv(victim.c_str());
        EXPECT_EQ(_spawnl(_P_WAIT, _pgmptr, "mirelo", "--gtest_also_run_disabled_tests",
                          "--gtest_filter=DISABLED_Mirelo.*", nullptr),
                  3);
        expectToGoOn(way);
    }
}
