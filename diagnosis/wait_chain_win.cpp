#include "diagnosis/wait_chain_win.h"

#include <windows.h>

#include <wct.h>

#include <algorithm>
#include <iterator>

#include "base/deadline_win.h"
#include "base/handle_win.h"

namespace {

// Of the system's header, where the compiler's has fewer.
constexpr DWORD kMostNodes = 16;
constexpr DWORD kAcrossProcesses = 0x1 | 0x2 | 0x4;  // also for COM and for critical sections

template <typename Function>
Function* lookUp(HMODULE library, const char* name) {
    if (library == nullptr) return nullptr;
    return reinterpret_cast<Function*>(reinterpret_cast<void (*)()>(GetProcAddress(library, name)));
}

// Looked up by name: not every Windows offers them.
struct WaitChainCalls {
    HMODULE library = GetModuleHandleW(L"advapi32.dll");
    decltype(&OpenThreadWaitChainSession) open =
        lookUp<decltype(OpenThreadWaitChainSession)>(library, "OpenThreadWaitChainSession");
    decltype(&CloseThreadWaitChainSession) close =
        lookUp<decltype(CloseThreadWaitChainSession)>(library, "CloseThreadWaitChainSession");
    decltype(&GetThreadWaitChain) get =
        lookUp<decltype(GetThreadWaitChain)>(library, "GetThreadWaitChain");
    decltype(&RegisterWaitChainCOMCallback) registerCom =
        lookUp<decltype(RegisterWaitChainCOMCallback)>(library, "RegisterWaitChainCOMCallback");

    [[nodiscard]] bool areThere() const { return open && close && get; }
};

// Without these two, waits in COM calls are not told. The library stays loaded: Windows keeps them.
void tellAboutCom(const WaitChainCalls& calls) {
    static const HMODULE ole = LoadLibraryExW(L"ole32.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    const auto callState =
        reinterpret_cast<PCOGETCALLSTATE>(lookUp<LPVOID()>(ole, "CoGetCallState"));
    const auto activationState =
        reinterpret_cast<PCOGETACTIVATIONSTATE>(lookUp<LPVOID()>(ole, "CoGetActivationState"));
    if (calls.registerCom != nullptr && callState != nullptr && activationState != nullptr)
        calls.registerCom(callState, activationState);
}

class Session {
  public:
    explicit Session(const WaitChainCalls& calls)
        : calls_(calls), handle_(calls.open(0, nullptr)) {}
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    ~Session() {
        if (handle_ != nullptr) calls_.close(handle_);
    }

    [[nodiscard]] HWCT handle() const { return handle_; }

  private:
    const WaitChainCalls& calls_;
    HWCT handle_;
};

std::wstring programOf(DWORD pid) {
    const KernelHandle process(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, pid));
    wchar_t path[1024] = {};
    DWORD length = static_cast<DWORD>(std::size(path));
    if (!process || !QueryFullProcessImageNameW(process.get(), 0, path, &length)) return {};
    const std::wstring whole(path, length);
    return whole.substr(whole.find_last_of(L'\\') + 1);
}

WaitNode nodeFrom(const WAITCHAIN_NODE_INFO& info) {
    WaitNode node;
    node.object = static_cast<WaitObject>(info.ObjectType);
    if (info.ObjectType == WctThreadType) {
        node.pid = info.ThreadObject.ProcessId;
        node.threadId = info.ThreadObject.ThreadId;
        node.program = programOf(node.pid);
        return node;
    }
    node.status = static_cast<WaitStatus>(info.ObjectStatus);
    if (info.ObjectType == WctMutexType) {
        const auto* name = info.LockObject.ObjectName;
        node.name.assign(name, std::find(name, name + WCT_OBJNAME_LENGTH, L'\0'));
    }
    return node;
}

WaitChain readChain(DWORD threadId) {
    const WaitChainCalls calls;
    WaitChain chain;
    if (!calls.areThere()) return chain;
    tellAboutCom(calls);
    const Session session(calls);
    if (session.handle() == nullptr) return chain;
    WAITCHAIN_NODE_INFO nodes[kMostNodes] = {};
    DWORD count = kMostNodes;
    BOOL isCircle = FALSE;
    if (!calls.get(session.handle(), 0, kAcrossProcesses, threadId, &count, nodes, &isCircle))
        return chain;
    // A longer chain is told of with its whole length; only what fitted is there.
    std::transform(nodes, nodes + std::min(count, kMostNodes), std::back_inserter(chain.nodes),
                   nodeFrom);
    chain.isCircle = isCircle != FALSE;
    return chain;
}

}  // namespace

WaitChain ReadWaitChain(std::uint32_t threadId, unsigned limitMs) {
    return answerWithin(limitMs, [threadId] { return readChain(threadId); }).value_or(WaitChain());
}
