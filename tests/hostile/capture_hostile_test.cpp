// Captures on a Windows whose functions fail, crash and block: whatever happens, the target goes
// on.
#include <windows.h>

#include <dbghelp.h>
#include <gtest/gtest.h>
#include <psapi.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <exception>
#include <functional>
#include <string>

#include "diagnosis/classify.h"
#include "diagnosis/stack_capture_win.h"
#include "diagnosis/suspended_thread_win.h"
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
IMITATE("dbghelp.dll", SymGetLineFromAddrW64);
IMITATE("dbghelp.dll", SymGetModuleInfoW64);
IMITATE("dbghelp.dll", SymInitialize);
IMITATE("dbghelp.dll", SymLoadModuleExW);
IMITATE("dbghelp.dll", SymRegisterCallback64);

namespace {

constexpr ULONGLONG kLimitMs = 20000;
constexpr const wchar_t* kNoContext = L"Failed to read thread context.";
constexpr const wchar_t* kWalkFailed =
    L"Stack walk failed. CDR may have recovered - capture again while it hangs.";

// How often the thread is held.
DWORD SuspendCount(DWORD threadId) {
    const KernelHandle thread(OpenThread(THREAD_SUSPEND_RESUME, FALSE, threadId));
    const DWORD count = SuspendThread(thread.get());
    ResumeThread(thread.get());
    return count;
}

BOOL Crash() {
    volatile int* volatile nowhere = nullptr;
    *nowhere = 1;
    return FALSE;
}

// All captures are of one hanging program, whose thread the tests hold once themselves: a resume
// that is missing shows as well as one too many. The debug-help library finds no module by itself.
class HostileCapture : public ::testing::Test {
  protected:
    static void SetUpTestSuite() { stage = new Stage; }
    static void TearDownTestSuite() {
        ResumeThread(stage->thread.get());
        delete stage;
    }
    void TearDown() override { ExpectToGoOn("at the end"); }

    static CaptureResult Capture() {
        return CaptureMainThreadStack(stage->target.pid, stage->target.mainThreadId);
    }

    static void ExpectToGoOn(const char* after) {
        EXPECT_EQ(SuspendCount(stage->target.mainThreadId), 1U) << after;
        const CaptureResult next = Capture();
        EXPECT_TRUE(next.ok) << after;
        EXPECT_EQ(SuspendCount(stage->target.mainThreadId), 1U) << after;
        EXPECT_EQ(FindSuspect(next.frames, kSystemFiles).module, L"slowfilter.cpg") << after;
    }

    struct Stage {
        PracticeProcess practice{L"plugin-sleep"};
        CdrInstance target = practice.listed();
        KernelHandle thread{OpenThread(THREAD_SUSPEND_RESUME, FALSE, target.mainThreadId)};
        DWORD held = SuspendThread(thread.get());
        PSYMBOL_REGISTERED_CALLBACK64 callback = nullptr;
        Staged<decltype(::SymInitialize)> initialize{
            SymInitializeImitation, [this](HANDLE process, PCSTR path, BOOL invade) {
                EXPECT_TRUE(invade);
                EXPECT_EQ(SuspendCount(target.mainThreadId), 1U) << "held while registering";
                return SymInitializeImitation.real(process, path, FALSE);
            }};
        Staged<decltype(::SymRegisterCallback64)> registered{
            SymRegisterCallback64Imitation,
            [this](HANDLE process, PSYMBOL_REGISTERED_CALLBACK64 function, ULONG64 context) {
                callback = function;
                return SymRegisterCallback64Imitation.real(process, function, context);
            }};
    };
    static inline Stage* stage = nullptr;
};

}  // namespace

TEST_F(HostileCapture, EndsAloneWhateverFails) {
    const auto walkCrashes = [](auto...) { return Crash(); };
    const struct {
        const char* what;
        const wchar_t* error;
        std::function<CaptureResult()> capture;
    } cases[] = {
        {"a crash while registering", kWalkFailed,
         [&] {
             const Staged crashes(SymInitializeImitation, [](auto...) { return Crash(); });
             return Capture();
         }},
        {"no context", kNoContext,
         [&] {
             const Staged fails(GetThreadContextImitation, [](auto...) { return FALSE; });
             return Capture();
         }},
        {"no frame", kWalkFailed,
         [&] {
             const Staged fails(StackWalk64Imitation, [](auto...) { return FALSE; });
             return Capture();
         }},
        {"a crash while walking, and in the clean-up after it", kWalkFailed,
         [&] {
             const Staged crashes(StackWalk64Imitation, walkCrashes);
             const Staged crashesToo(SymCleanupImitation, [](auto...) { return Crash(); });
             return Capture();
         }},
        {"a crash in a look-up", kWalkFailed,
         [&] {
             const Staged crashes(SymFromAddrWImitation, [](auto...) { return Crash(); });
             return Capture();
         }},
        {"an exception", kWalkFailed,
         [&] {
             const Staged throws(StackWalk64Imitation, [](auto...) -> BOOL { throw 5; });
             return Capture();
         }},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.capture().error, c.error) << c.what;
        ExpectToGoOn(c.what);
    }
}

TEST_F(HostileCapture, IsCutShortByTheWatchdog) {
    const DWORD self = GetCurrentThreadId();
    std::atomic<int> frames = 0;
    DWORD patienceMs = 0;
    // The watchdog's time is over as soon as a look-up is stuck.
    const Staged hurries(SleepConditionVariableSRWImitation,
                         [&](PCONDITION_VARIABLE changed, PSRWLOCK lock, DWORD ms, ULONG flags) {
                             const auto wait = [&](DWORD waitMs) {
                                 return SleepConditionVariableSRWImitation.real(changed, lock,
                                                                                waitMs, flags);
                             };
                             if (GetCurrentThreadId() == self || ms == INFINITE) return wait(ms);
                             patienceMs = ms;
                             while (frames == 0)
                                 wait(1);
                             return FALSE;
                         });
    const Staged blocks(SymFromAddrWImitation, [&](auto...) {
        ++frames;
        const ULONGLONG endMs = GetTickCount64() + kLimitMs;
        while (SuspendCount(stage->target.mainThreadId) > 1 && GetTickCount64() < endMs)
            SwitchToThread();
        return FALSE;
    });
    EXPECT_EQ(Capture().error, kWalkFailed);
    EXPECT_EQ(frames, 1) << "the stack of a running thread was walked on";
    EXPECT_LE(patienceMs, 10000U);
    EXPECT_GT(patienceMs, 9000U);
}

TEST_F(HostileCapture, DoesNotWaitForSymbolsWhileTheThreadStands) {
    const auto isGivenUp = [&] {
        return stage->callback(nullptr, CBA_DEFERRED_SYMBOL_LOAD_CANCEL, 0, 0) != FALSE;
    };
    ASSERT_TRUE(Capture().ok);
    ASSERT_NE(stage->callback, nullptr);
    const Staged walks(StackWalk64Imitation, [&](auto... arguments) {
        EXPECT_FALSE(isGivenUp());
        const Staged late(GetTickCount64Imitation,
                          [] { return GetTickCount64Imitation.real() + 2100; });
        EXPECT_TRUE(isGivenUp());
        EXPECT_FALSE(stage->callback(nullptr, CBA_DEFERRED_SYMBOL_LOAD_START, 0, 0));
        return StackWalk64Imitation.real(arguments...);
    });
    EXPECT_TRUE(Capture().ok);
    EXPECT_FALSE(isGivenUp());
}

TEST_F(HostileCapture, LeavesSymbolsOnOtherMachinesAlone) {
    // Every image of the target names \\...\...pdb.
    const Staged reads(ReadProcessMemoryImitation, [](HANDLE process, LPCVOID from, LPVOID to,
                                                      SIZE_T size, SIZE_T* read) {
        constexpr DWORD kEntryAt = 0x1000;
        constexpr DWORD kNameAt = 0x2000;
        IMAGE_DEBUG_DIRECTORY entry{};
        entry.Type = IMAGE_DEBUG_TYPE_CODEVIEW;
        entry.AddressOfRawData = kNameAt;
        const std::string name = "RSDS" + std::string(20, 'x') + "\\\\server";
        *read = size;
        switch (reinterpret_cast<ULONG_PTR>(from) & 0xFFFF) {
            case kEntryAt:
                std::memcpy(to, &entry, size);
                return TRUE;
            case kNameAt:
                std::memcpy(to, name.data(), size);
                return TRUE;
            default:
                break;
        }
        const BOOL done = ReadProcessMemoryImitation.real(process, from, to, size, read);
        if (size == sizeof(IMAGE_NT_HEADERS64))
            static_cast<IMAGE_NT_HEADERS64*>(to)
                ->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_DEBUG] = {kEntryAt,
                                                                               sizeof entry};
        return done;
    });
    int loads = 0;
    const Staged loading(
        SymLoadModuleExWImitation,
        [&](HANDLE, HANDLE, PCWSTR, PCWSTR, DWORD64 base, DWORD, PMODLOAD_DATA, DWORD flags) {
            ++loads;
            EXPECT_EQ(flags, 4U);
            return base;
        });
    Capture();
    EXPECT_GT(loads, 5);
}

TEST_F(HostileCapture, BlamesTheSameWhateverTheLibraryKnows) {
    const auto moduleWith = [](auto change) {
        return [change](HANDLE process, DWORD64 address, PIMAGEHLP_MODULEW64 module) {
            const BOOL done = SymGetModuleInfoW64Imitation.real(process, address, module);
            change(*module);
            return done;
        };
    };
    const std::wstring longPath = L"C:\\" + std::wstring(300, L'x') + L"\\slowfilter.cpg";
    const struct {
        const char* what;
        std::function<CaptureResult()> capture;
        const wchar_t* suspect;
        std::wstring imagePath;
    } cases[] = {
        {"names without extensions",
         [&] {
             const Staged drops(SymGetModuleInfoW64Imitation, moduleWith([](auto& module) {
                                    std::wstring name = module.ModuleName;
                                    name.resize(std::min(name.size(), name.find(L'.')));
                                    std::wcscpy(module.ModuleName, name.c_str());
                                }));
             return Capture();
         },
         L"slowfilter.cpg",
         {}},
        {"no symbols at all",
         [&] {
             const Staged nameless(SymFromAddrWImitation, [](auto...) { return FALSE; });
             const Staged lineless(SymGetLineFromAddrW64Imitation, [](auto...) { return FALSE; });
             return Capture();
         },
         L"slowfilter.cpg",
         {}},
        {"no modules",
         [&] {
             const Staged none(SymGetModuleInfoW64Imitation, [](auto...) { return FALSE; });
             const Staged nameless(SymFromAddrWImitation, [](auto...) { return FALSE; });
             return Capture();
         },
         L"",
         {}},
        {"a long path",
         [&] {
             const Staged names(K32GetModuleFileNameExWImitation,
                                [&](HANDLE process, HMODULE module, LPWSTR path, DWORD room) {
                                    const DWORD length = K32GetModuleFileNameExWImitation.real(
                                        process, module, path, room);
                                    if (!std::wstring_view(path, length).ends_with(L".cpg"))
                                        return length;
                                    longPath.copy(path, room);
                                    return std::min(room, static_cast<DWORD>(longPath.size()));
                                });
             const Staged loads(
                 SymLoadModuleExWImitation, [&](HANDLE process, HANDLE, PCWSTR path, PCWSTR,
                                                DWORD64 base, DWORD size, PMODLOAD_DATA, DWORD) {
                     EXPECT_EQ(path, L"\\\\?\\" + longPath);
                     const std::wstring file = PracticeProgram().parent_path() / L"slowfilter.cpg";
                     return SymLoadModuleExWImitation.real(process, nullptr, file.c_str(), nullptr,
                                                           base, size, nullptr, 0);
                 });
             const Staged cuts(SymGetModuleInfoW64Imitation, moduleWith([&](auto& module) {
                                   if (std::wstring_view(module.ImageName).ends_with(L".cpg"))
                                       longPath.copy(module.ImageName, 255);
                               }));
             return Capture();
         },
         L"slowfilter.cpg", longPath},
    };
    for (const auto& c : cases) {
        const CaptureResult capture = c.capture();
        EXPECT_TRUE(capture.ok) << c.what;
        const SuspectFrame suspect = FindSuspect(capture.frames, kSystemFiles);
        EXPECT_EQ(suspect.module, c.suspect) << c.what;
        EXPECT_TRUE(c.imagePath.empty() || suspect.frame.imagePath == c.imagePath) << c.what;
    }
}

// Run by the test below in a process of its own.
TEST(DISABLED_Mirelo, DiesWhileItHoldsTheThread) {
    DWORD pid = 0;
    DWORD threadId = 0;
    int way = 0;
    ASSERT_EQ(std::sscanf(std::getenv("MIRELO_VICTIM"), "%lu %lu %d", &pid, &threadId, &way), 3);
    // Instead of the system's box or debugger.
    SetUnhandledExceptionFilter([](EXCEPTION_POINTERS*) -> LONG {
        TerminateProcess(GetCurrentProcess(), 3);
        return EXCEPTION_EXECUTE_HANDLER;
    });
    const auto crash = [](void*) -> DWORD { return static_cast<DWORD>(Crash()); };
    const Staged dies(GetThreadContextImitation, [&](auto...) -> BOOL {
        EXPECT_EQ(SuspendCount(threadId), 2U);
        if (way == 0) return Crash();
        if (way == 1) std::terminate();
        const KernelHandle other(CreateThread(nullptr, 0, crash, nullptr, 0, nullptr));
        Sleep(INFINITE);
        return FALSE;
    });
    CaptureMainThreadStack(pid, threadId);
}

TEST_F(HostileCapture, SurvivesTheEndOfMirelo) {
    for (const char* way : {"0", "1", "2"}) {
        const std::string victim = std::to_string(stage->target.pid) + " " +
                                   std::to_string(stage->target.mainThreadId) + " " + way;
        SetEnvironmentVariableA("MIRELO_VICTIM", victim.c_str());
        char command[] =
            "mirelo --gtest_filter=DISABLED_Mirelo.* --gtest_also_run_disabled_tests --gtest_brief";
        wchar_t program[MAX_PATH] = {};
        GetModuleFileNameW(nullptr, program, MAX_PATH);
        STARTUPINFOA startup{};
        startup.cb = sizeof startup;
        PROCESS_INFORMATION started{};
        ASSERT_TRUE(CreateProcessA(std::filesystem::path(program).string().c_str(), command,
                                   nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                                   &started));
        const KernelHandle process(started.hProcess);
        const KernelHandle thread(started.hThread);
        EXPECT_EQ(WaitForSingleObject(process.get(), kLimitMs), WAIT_OBJECT_0) << way;
        DWORD exitCode = 0;
        GetExitCodeProcess(process.get(), &exitCode);
        EXPECT_EQ(exitCode, 3U) << way;
        TerminateProcess(process.get(), 1);
        ExpectToGoOn(way);
    }
}
