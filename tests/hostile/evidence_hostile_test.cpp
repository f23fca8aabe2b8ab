// Evidence on a Windows that offers wait chains, which Wine does not, and one that fails.
#include <windows.h>

#include <dbghelp.h>
#include <gtest/gtest.h>
#include <wct.h>

#include <string_view>

#include "base/handle_win.h"
#include "diagnosis/evidence_sensors_win.h"
#include "diagnosis/stack_capture_win.h"
#include "diagnosis/wait_chain_win.h"
#include "tests/cdr/practice_process_win.h"
#include "tests/hostile/imitation.h"

IMITATE("kernel32.dll", GetProcAddress);
IMITATE("kernel32.dll", GetThreadContext);
IMITATE("dbghelp.dll", StackWalk64);
IMITATE("dbghelp.dll", SymFromAddrW);

namespace {

constexpr unsigned kLongMs = 20000;

struct Told {
    DWORD count = 3;
    KernelHandle answers{CreateEventW(nullptr, TRUE, TRUE, nullptr)};
    KernelHandle closed{CreateEventW(nullptr, FALSE, FALSE, nullptr)};
} told;

BOOL chainOf(HWCT, DWORD_PTR, DWORD flags, DWORD threadId, DWORD* count, WAITCHAIN_NODE_INFO* nodes,
             BOOL* isCircle) {
    WaitForSingleObject(told.answers.get(), INFINITE);
    EXPECT_EQ(flags, 7U) << "across processes, COM and critical sections included";
    for (DWORD i = 0; i < *count; ++i) {
        nodes[i].ObjectType = WctThreadType;
        nodes[i].ThreadObject = {GetCurrentProcessId(), threadId + i, 0, 0};
    }
    nodes[1].ObjectType = WctMutexType;
    nodes[1].ObjectStatus = WctStatusAbandoned;
    std::fill_n(nodes[1].LockObject.ObjectName, WCT_OBJNAME_LENGTH, L'm');
    *count = told.count;
    *isCircle = TRUE;
    return TRUE;
}

FARPROC lookUp(HMODULE module, LPCSTR name) {
    const std::string_view asked = IS_INTRESOURCE(name) ? "" : name;
    const auto found = [](auto* function) {
        return reinterpret_cast<FARPROC>(reinterpret_cast<void (*)()>(function));
    };
    if (asked == "OpenThreadWaitChainSession")
        return found(+[](DWORD, PWAITCHAINCALLBACK) -> HWCT { return &told; });
    if (asked == "CloseThreadWaitChainSession")
        return found(+[](HWCT) { SetEvent(told.closed.get()); });
    if (asked == "GetThreadWaitChain") return found(chainOf);
    return GetProcAddressImitation.real(module, name);
}

}  // namespace

TEST(HostileEvidence, ReadsWaitChainsAsFarAsWindowsTellsThem) {
    EXPECT_TRUE(ReadWaitChain(7, kLongMs).nodes.empty()) << "not offered";
    const Staged offers(GetProcAddressImitation, lookUp);
    const WaitChain chain = ReadWaitChain(7, kLongMs);
    ASSERT_EQ(chain.nodes.size(), 3U);
    EXPECT_TRUE(chain.isCircle);
    EXPECT_EQ(chain.nodes[0].program, L"mirelo_hostile_tests.exe");
    EXPECT_EQ(chain.nodes[1].status, WaitStatus::abandoned);
    EXPECT_EQ(chain.nodes[1].name, std::wstring(128, L'm')) << "a name need not end";
    EXPECT_EQ(chain.nodes[2].threadId, 9U);
    EXPECT_EQ(WaitForSingleObject(told.closed.get(), 0), WAIT_OBJECT_0);

    told.count = 4000;
    EXPECT_EQ(ReadWaitChain(7, kLongMs).nodes.size(), 16U);
    ResetEvent(told.closed.get());
    ResetEvent(told.answers.get());
    EXPECT_TRUE(ReadWaitChain(7, 10).nodes.empty()) << "waited for a call that does not return";
    SetEvent(told.answers.get());
    EXPECT_EQ(WaitForSingleObject(told.closed.get(), kLongMs), WAIT_OBJECT_0);
}

TEST(HostileEvidence, LetsEveryThreadGo) {
    const PracticeProcess practice(L"lock-held");
    const CdrInstance target = practice.listed();
    const auto threads = SystemEvidence().threadsOf(target.pid);
    const auto capture = [&] {
        EXPECT_TRUE(CaptureMainThreadStack(target.pid, target.mainThreadId).ok);
    };
    const auto stacks = [&] {
        const auto walked = CaptureThreadStacks(target.pid, threads, kLongMs);
        EXPECT_EQ(practice.heldThreads(), 0);
        return walked.size();
    };
    const auto crash = [](auto...) -> BOOL {
        volatile int* volatile nowhere = nullptr;
        *nowhere = 1;
        return FALSE;
    };
    capture();
    EXPECT_TRUE(CaptureThreadStacks(target.pid, threads, 0).empty());
    {
        const Staged fails(GetThreadContextImitation, [](HANDLE, CONTEXT*) { return FALSE; });
        EXPECT_EQ(stacks(), 0U);
    }
    {
        const Staged crashes(StackWalk64Imitation, crash);
        EXPECT_EQ(stacks(), 0U);
    }
    EXPECT_EQ(stacks(), 0U) << "what a crash left of the registration is not to be trusted";
    capture();
    {
        const Staged crashes(SymFromAddrWImitation, crash);
        EXPECT_EQ(stacks(), 0U);
    }
    capture();
    EXPECT_EQ(stacks(), threads.size());
}
