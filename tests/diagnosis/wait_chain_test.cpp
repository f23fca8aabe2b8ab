// Wait chains as Windows tells them, and what is made of them.
#include "diagnosis/wait_chain.h"

#include <gtest/gtest.h>

namespace {

using enum WaitObject;

constexpr std::uint32_t kPid = 4711;

WaitNode Thread(std::uint32_t id, std::uint32_t pid = kPid, const wchar_t* program = L"") {
    return {thread, WaitStatus::other, pid, id, program, L""};
}

WaitNode Object(WaitObject object, WaitStatus status = WaitStatus::other,
                const wchar_t* name = L"") {
    return {object, status, 0, 0, L"", name};
}

struct Case {
    std::vector<WaitNode> nodes;
    bool isCircle;
    std::vector<std::wstring> sentences;
};

}  // namespace

TEST(WaitChain, SaysWhoWaitsForWhom) {
    const WaitNode main = Thread(1);
    const WaitNode spooler = Thread(7, 2208, L"splwow64.exe");
    const Case cases[] = {
        {{}, false, {}},
        {{main}, false, {}},
        {{main, Object(criticalSection), Thread(4312)},
         false,
         {L"Waits for thread 4312 of the same process, which holds a critical section."}},
        {{main, Object(mutex, WaitStatus::other, L"Lock"), spooler},
         false,
         {L"Waits for thread 7 of splwow64.exe (PID 2208), which holds a mutex \"Lock\"."}},
        {{main, Object(sendMessage), Thread(2), Object(alpc), Thread(0, 2208, L"splwow64.exe")},
         false,
         {L"Waits for thread 2 of the same process to answer a window message.",
          L"Thread 2 of the same process waits for splwow64.exe (PID 2208) to answer a local "
          L"procedure call."}},
        {{main, Object(com), Thread(9, 99)},
         false,
         {L"Waits for thread 9 of another process (PID 99) to answer a COM call."}},
        {{main, Object(processEnd), Thread(0, 99), Object(threadEnd)},
         false,
         {L"Waits for another process (PID 99) to end.",
          L"Another process (PID 99) waits for the end of another thread."}},
        {{main, Object(comActivation), spooler, Object(unknown), Thread(5, 2208, L"splwow64.exe")},
         false,
         {L"Waits for thread 7 of splwow64.exe (PID 2208) to start a COM object.",
          L"Thread 7 of splwow64.exe (PID 2208) waits for thread 5 of splwow64.exe (PID 2208)."}},
        {{main, Object(mutex, WaitStatus::abandoned)},
         false,
         {L"Waits for a mutex whose holder ended without a release."}},
        {{main, Object(criticalSection, WaitStatus::notOwned)},
         false,
         {L"Waits for a critical section that no thread holds."}},
        {{main, Object(networkFile)}, false, {L"Waits for a file on the network."}},
        {{main, Object(unknown)}, false, {}},
        {{main, Object(static_cast<WaitObject>(77)), Thread(2)}, false, {}},
        {{Object(mutex), Object(mutex), main, Thread(2)}, false, {}},
        {{main, Object(criticalSection), Thread(2), Object(criticalSection), main},
         true,
         {L"Waits for thread 2 of the same process, which holds a critical section.",
          L"Thread 2 of the same process waits for the main thread, which holds a critical "
          L"section.",
          L"Deadlock: these threads wait for each other in a circle, which does not end by "
          L"itself."}},
    };
    for (const Case& c : cases)
        EXPECT_EQ(DescribeWaits({c.nodes, c.isCircle}, kPid), c.sentences);
}

TEST(WaitChain, NamesTheThreadsToLookAt) {
    const WaitNode object = Object(criticalSection);
    const WaitChain chain{{Thread(1), object, Thread(5), object, Thread(0), object, Thread(8, 2208),
                           object, Thread(3), object, Thread(5), object, Thread(1)},
                          true};
    EXPECT_EQ(ThreadsNamed(chain, kPid), (std::vector<std::uint32_t>{5, 3}));
}
