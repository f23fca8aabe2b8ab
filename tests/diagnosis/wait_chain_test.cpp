#include "diagnosis/wait_chain.h"

#include <gtest/gtest.h>

using enum WaitObject;

TEST(WaitChain, SaysWhoWaitsForWhom) {
    constexpr std::uint32_t kPid = 4711;
    const auto threadOf = [](std::uint32_t pid, std::uint32_t id, const wchar_t* program = L"") {
        return WaitNode{thread, {}, pid, id, program, L""};
    };
    const auto a = [](WaitObject object, WaitStatus status = {}, const wchar_t* name = L"") {
        return WaitNode{object, status, 0, 0, L"", name};
    };
    const WaitNode main = threadOf(kPid, 1), second = threadOf(kPid, 4312);
    const WaitNode spooler = threadOf(2208, 7, L"splwow64.exe");
    const struct {
        WaitChain chain;
        std::vector<std::wstring> sentences;
        std::vector<std::uint32_t> named;
    } cases[] = {
        {{{main, a(mutex, {}, L"Lock"), spooler, a(com), threadOf(99, 4312)}, false},
         {L"Waits for thread 7 of splwow64.exe (PID 2208), which holds a mutex \"Lock\".",
          L"Thread 7 of splwow64.exe (PID 2208) waits for thread 4312 of another process (PID 99) "
          L"to answer a COM call."},
         {}},
        {{{main, a(mutex, WaitStatus::abandoned)}, false},
         {L"Waits for a mutex whose holder ended without a release."},
         {}},
        {{{main, a(mutex), a(mutex), second, second}, false}, {L"Waits for a mutex."}, {4312}},
        {{{main, a(criticalSection), second, a(sendMessage), main}, true},
         {L"Waits for thread 4312 of the same process, which holds a critical section.",
          L"Thread 4312 of the same process waits for the main thread to answer a window message.",
          L"Deadlock: these threads wait for each other in a circle, which does not end by "
          L"itself."},
         {4312}},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(DescribeWaits(c.chain, kPid), c.sentences);
        EXPECT_EQ(ThreadsNamed(c.chain, kPid), c.named);
    }
}
