// Whatever fails, crashes and blocks in a capture, the target goes on.
#include <windows.h>

#include <dbghelp.h>
#include <gtest/gtest.h>
#include <process.h>
#include <wct.h>

#include <atomic>
#include <cstdlib>
#include <memory>
#include <sstream>
#include <string_view>
#include <tuple>

#include "diagnosis/classify.h"
#include "diagnosis/evidence_sensors_win.h"
#include "diagnosis/stack_capture_win.h"
#include "diagnosis/system_files_win.h"
#include "diagnosis/wait_chain_win.h"
#include "tests/cdr/practice_process_win.h"
#include "tests/hostile/imitation.h"

IMITATE("kernel32.dll", GetProcAddress);
IMITATE("kernel32.dll", GetProcessIdOfThread);
IMITATE("kernel32.dll", GetThreadContext);
IMITATE("kernel32.dll", GetTickCount64);
IMITATE("kernel32.dll", OpenProcess);
IMITATE("kernel32.dll", ReadProcessMemory);
IMITATE("kernel32.dll", SleepConditionVariableSRW);
IMITATE("kernel32.dll", SuspendThread);
IMITATE("dbghelp.dll", StackWalk64);
IMITATE("dbghelp.dll", SymCleanup);
IMITATE("dbghelp.dll", SymFromAddrW);
IMITATE("dbghelp.dll", SymInitialize);
IMITATE("dbghelp.dll", SymLoadModuleExW);
IMITATE("dbghelp.dll", SymRegisterCallback64);

namespace {

constexpr DWORD kLimitMs = 20000;
constexpr const wchar_t* kWalkFailed =
    L"Stack walk failed. CDR may have recovered - capture again while it hangs.";

// All captures are of one hanging program, whose thread the test holds once itself: a resume that
// is missing shows as well as one too many. The debug-help library finds no module by itself.
struct HostileCapture : testing::Test {
    static void SetUpTestSuite() { all = std::make_unique<All>(); }
    static void TearDownTestSuite() { all.reset(); }
    void TearDown() override { expectToGoOn(); }

    static CaptureResult capture() {
        return CaptureMainThreadStack(all->target.pid, all->target.mainThreadId);
    }

    static void expectToGoOn() {
        EXPECT_EQ(SuspendCount(all->target.mainThreadId), 1U);
        const CaptureResult next = capture();
        EXPECT_EQ(FindSuspect(next.frames, kSystemFiles).module, L"slowfilter.cpg") << next.error;
        EXPECT_EQ(SuspendCount(all->target.mainThreadId), 1U);
    }

    struct All {
        PracticeProcess practice{L"plugin-sleep"};
        CdrInstance target = practice.listed();
        KernelHandle thread{OpenThread(THREAD_SUSPEND_RESUME, FALSE, target.mainThreadId)};
        DWORD before = SuspendThread(thread.get());
        PSYMBOL_REGISTERED_CALLBACK64 callback = nullptr;
        Staged<decltype(SymInitialize)> initialize{
            SymInitializeImitation, [this](HANDLE process, PCSTR path, BOOL) {
                EXPECT_EQ(SuspendCount(target.mainThreadId), 1U) << "held while registering";
                return SymInitializeImitation.real(process, path, FALSE);
            }};
        Staged<decltype(SymRegisterCallback64)> registered{
            SymRegisterCallback64Imitation,
            [this](HANDLE, auto function, ULONG64) { return (callback = function) != nullptr; }};

        ~All() { ResumeThread(thread.get()); }
    };
    static inline std::unique_ptr<All> all;
};

}  // namespace

TEST_F(HostileCapture, EndsAloneWhateverFails) {
    constexpr const wchar_t* kNoProcess =
        L"Cannot open the CDR process (insufficient rights). Make sure CDR and this tool run as "
        L"the same user.";
    constexpr const wchar_t* kNoThread =
        L"Cannot access the CDR main thread. It may be protected by security software - try "
        L"whitelisting Mirelo.";
    constexpr const wchar_t* kNotHeld = L"Failed to suspend the thread, please retry.";
    const auto expectError = [](const wchar_t* error, auto& imitation, auto instead) {
        {
            const Staged crashesToo(SymCleanupImitation, crashes);
            const Staged failing(imitation, instead);
            EXPECT_EQ(capture().error, error);
        }
        expectToGoOn();
    };
    expectError(kWalkFailed, SymInitializeImitation, crashes);  // not yet registered
    expectError(kNoProcess, OpenProcessImitation, [](auto...) { return HANDLE(); });
    expectError(kNoThread, GetProcessIdOfThreadImitation, fails);
    expectError(kNotHeld, SuspendThreadImitation, [](auto) { return DWORD(-1); });
    expectError(L"Failed to read thread context.", GetThreadContextImitation, fails);
    expectError(kWalkFailed, StackWalk64Imitation, fails);
    expectError(kWalkFailed, StackWalk64Imitation, crashes);
    expectError(kWalkFailed, StackWalk64Imitation, [](auto...) -> BOOL { throw 5; });
    expectError(kWalkFailed, SymFromAddrWImitation, crashes);
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
                             do
                                 windows.real(changed, lock, 1, flags);
                             while (lookUps == 0);
                             return FALSE;
                         });
    const Staged blocks(SymFromAddrWImitation, [&](auto...) {
        if (++lookUps > 1) return FALSE;
        const ULONGLONG endMs = GetTickCount64() + kLimitMs;
        while (SuspendCount(all->target.mainThreadId) > 1 && GetTickCount64() < endMs)
            SwitchToThread();
        return FALSE;
    });
    EXPECT_EQ(capture().error, kWalkFailed);
    EXPECT_EQ(lookUps, 1) << "the stack of a running thread was walked on";
    EXPECT_EQ((patienceMs + 999) / 1000, 10U);
}

TEST_F(HostileCapture, DoesNotWaitForSymbolsWhileTheThreadStands) {
    const auto isGivenUp = [] {
        return all->callback(nullptr, CBA_DEFERRED_SYMBOL_LOAD_CANCEL, 0, 0) != FALSE;
    };
    expectToGoOn();
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
    // Every image of the target names a symbol file of \\\\server.
    const auto read = [](HANDLE process, LPCVOID from, LPVOID to, SIZE_T size, SIZE_T* done) {
        const IMAGE_DEBUG_DIRECTORY entry{0, 0, 0, 0, IMAGE_DEBUG_TYPE_CODEVIEW, 0, 0x2000, 0};
        const std::string name = "RSDS" + std::string(20, 'x') + "\\\\server";
        const ULONG_PTR offset = reinterpret_cast<ULONG_PTR>(from) & 0xFFFF;
        if (offset == 0x1000) from = &entry;
        if (offset == 0x2000) from = name.data();
        if (offset == 0x1000 || offset == 0x2000) process = GetCurrentProcess();
        const BOOL isRead = ReadProcessMemoryImitation.real(process, from, to, size, done);
        if (size == sizeof(IMAGE_NT_HEADERS64))
            static_cast<IMAGE_NT_HEADERS64*>(to)->OptionalHeader.DataDirectory[6] = {0x1000, 28};
        return isRead;
    };
    const Staged reads(ReadProcessMemoryImitation, read);
    int loads = 0;
    const Staged loading(SymLoadModuleExWImitation, [&](auto... arguments) {
        ++loads;
        EXPECT_EQ(std::get<7>(std::tie(arguments...)), 4U);
        return DWORD64(1);
    });
    capture();
    EXPECT_GT(loads, 5);
}

// Run by the test below in a process of its own.
TEST(DISABLED_Mirelo, DiesWhileItHoldsTheThread) {
    DWORD pid = 0, threadId = 0, way = 0;
    std::istringstream(std::getenv("MIRELO_VICTIM")) >> pid >> threadId >> way;
    // Instead of the system's box or debugger.
    SetUnhandledExceptionFilter([](EXCEPTION_POINTERS*) -> LONG {
        TerminateProcess(GetCurrentProcess(), 3);
        return EXCEPTION_EXECUTE_HANDLER;
    });
    const Staged dies(GetThreadContextImitation, [&](auto...) -> BOOL {
        if (SuspendCount(threadId) != 2) std::exit(9);
        if (way == 0) return crashes();
        if (way == 1) std::terminate();
        const auto inThread = [](void*) -> DWORD { return static_cast<DWORD>(crashes()); };
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
        expectToGoOn();
    }
}

TEST(Capture, KnowsWhatTookTheBaseOfWhatWasUnloaded) {
    PracticeProcess practice(L"late-plugin");
    const CdrInstance target = practice.listed();
    const auto suspect = [&] {
        return FindSuspect(CaptureMainThreadStack(target.pid, target.mainThreadId).frames,
                           kSystemFiles);
    };
    const SuspectFrame early = suspect();
    EXPECT_EQ(early.module, L"screenhook");
    EXPECT_EQ(early.frame.imagePath, PracticeProgram().replace_filename(L"screenhook.dll"));
    practice.signal(L"next");
    ASSERT_TRUE(practice.await(L"ready2"));
    const SuspectFrame late = suspect();
    EXPECT_EQ(late.module, L"slowfilter.cpg");
    EXPECT_EQ(late.frame.function, L"ApplySlowFilter");
    EXPECT_EQ(late.frame.address >> 16, early.frame.address >> 16) << "not the same base";

    practice.end();
    EXPECT_FALSE(CaptureMainThreadStack(target.pid, target.mainThreadId).ok);
}

TEST(HostileEvidence, ReadsWaitChainsAsFarAsWindowsTellsThem) {
    static DWORD toldCount = 3;
    const auto chainOf = [](HWCT, DWORD_PTR, DWORD flags, DWORD threadId, DWORD* count,
                            WAITCHAIN_NODE_INFO* nodes, BOOL* isCircle) -> BOOL {
        EXPECT_EQ(flags, 7U) << "across processes, COM and critical sections included";
        for (DWORD i = 0; i < *count; ++i) {
            nodes[i].ObjectType = WctThreadType;
            nodes[i].ThreadObject = {GetCurrentProcessId(), threadId + i, 0, 0};
        }
        nodes[1].ObjectType = WctMutexType;
        nodes[1].ObjectStatus = WctStatusAbandoned;
        std::fill_n(nodes[1].LockObject.ObjectName, WCT_OBJNAME_LENGTH, L'm');
        nodes[1].LockObject.Timeout.QuadPart = -1;
        *count = toldCount;
        return *isCircle = TRUE;
    };
    const Staged offers(GetProcAddressImitation, [&](HMODULE module, LPCSTR name) {
        const std::string_view asked = IS_INTRESOURCE(name) ? "" : name;
        if (asked == "OpenThreadWaitChainSession")
            return procedure(+[](DWORD, PWAITCHAINCALLBACK) -> HWCT { return &toldCount; });
        if (asked == "CloseThreadWaitChainSession") return procedure(+[](HWCT) {});
        if (asked == "GetThreadWaitChain") return procedure(+chainOf);
        return GetProcAddressImitation.real(module, name);
    });
    const WaitChain chain = ReadWaitChain(7, kLimitMs);
    ASSERT_EQ(chain.nodes.size(), 3U);
    EXPECT_TRUE(chain.isCircle);
    EXPECT_EQ(chain.nodes[0].program, L"mirelo_hostile_tests.exe");
    EXPECT_EQ(chain.nodes[1].status, WaitStatus::abandoned);
    EXPECT_EQ(chain.nodes[1].name, std::wstring(128, L'm')) << "a name need not end";
    toldCount = 4000;
    EXPECT_EQ(ReadWaitChain(7, kLimitMs).nodes.size(), 16U);
}

TEST(HostileEvidence, LetsEveryThreadGo) {
    const PracticeProcess practice(L"lock-held");
    const CdrInstance target = practice.listed();
    const auto threads = SystemEvidence().threadsOf(target.pid);
    const auto capture = [&] { CaptureMainThreadStack(target.pid, target.mainThreadId); };
    const auto stacks = [&] {
        const auto walked = CaptureThreadStacks(target.pid, threads, kLimitMs);
        EXPECT_EQ(practice.heldThreads(), 0);
        return walked.size();
    };
    capture();
    EXPECT_TRUE(CaptureThreadStacks(target.pid, threads, 0).empty());
    {
        const Staged crashing(StackWalk64Imitation, crashes);
        EXPECT_EQ(stacks(), 0U);
    }
    EXPECT_EQ(stacks(), 0U) << "what a crash left of the registration is not to be trusted";
    capture();
    EXPECT_EQ(stacks(), threads.size());
}
