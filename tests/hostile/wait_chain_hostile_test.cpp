// Wait chains, which Wine does not have.
#include <windows.h>

#include <gtest/gtest.h>
#include <wct.h>

#include <atomic>
#include <string_view>

#include "base/handle_win.h"
#include "diagnosis/wait_chain_win.h"
#include "tests/hostile/imitation.h"

IMITATED(GetProcAddress);

namespace {

struct Told {
    bool isOffered = true;
    bool isRefused = false;
    DWORD count = 3;
    std::atomic<int> openSessions = 0;
    KernelHandle answers{CreateEventW(nullptr, TRUE, TRUE, nullptr)};
} told;

HWCT open(DWORD, PWAITCHAINCALLBACK) {
    ++told.openSessions;
    return &told;
}

void closeSession(HWCT) {
    --told.openSessions;
}

BOOL get(HWCT, DWORD_PTR, DWORD flags, DWORD threadId, DWORD* count, WAITCHAIN_NODE_INFO* nodes,
         BOOL* isCircle) {
    WaitForSingleObject(told.answers.get(), INFINITE);
    EXPECT_EQ(flags, 7U) << "across processes, COM and critical sections included";
    EXPECT_EQ(*count, 16U);
    if (told.isRefused) return FALSE;
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
    const auto is = [](auto* function) {
        return reinterpret_cast<FARPROC>(reinterpret_cast<void (*)()>(function));
    };
    if (asked.find("WaitChain") == asked.npos) return GetProcAddressImitation.real(module, name);
    if (!told.isOffered || asked.starts_with("Register")) return nullptr;
    if (asked.starts_with("Open")) return is(open);
    return asked.starts_with("Close") ? is(closeSession) : is(get);
}

}  // namespace

TEST(HostileWaitChain, IsReadAsFarAsWindowsTellsIt) {
    constexpr unsigned kLongMs = 20000;
    const Staged offers(GetProcAddressImitation, lookUp);
    const WaitChain chain = ReadWaitChain(7, kLongMs);
    ASSERT_EQ(chain.nodes.size(), 3U);
    EXPECT_TRUE(chain.isCircle);
    EXPECT_EQ(chain.nodes[0].object, WaitObject::thread);
    EXPECT_EQ(chain.nodes[0].program, L"mirelo_hostile_tests.exe");
    EXPECT_EQ(chain.nodes[1].status, WaitStatus::abandoned);
    EXPECT_EQ(chain.nodes[1].name, std::wstring(128, L'm')) << "a name need not end";
    EXPECT_EQ(chain.nodes[2].threadId, 9U);

    told.count = 4000;
    EXPECT_EQ(ReadWaitChain(7, kLongMs).nodes.size(), 16U);
    told.isRefused = true;
    EXPECT_TRUE(ReadWaitChain(7, kLongMs).nodes.empty());
    told.isRefused = false;
    ResetEvent(told.answers.get());
    EXPECT_TRUE(ReadWaitChain(7, 10).nodes.empty()) << "waited for a call that does not return";
    SetEvent(told.answers.get());
    while (told.openSessions != 0)
        Sleep(1);
    told.isOffered = false;
    EXPECT_TRUE(ReadWaitChain(7, kLongMs).nodes.empty());
}
