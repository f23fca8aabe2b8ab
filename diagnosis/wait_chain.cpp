#include "diagnosis/wait_chain.h"

#include <algorithm>
#include <iterator>

#include "base/text.h"

namespace {

struct Wording {
    WaitObject object;
    /// Behind whoever holds or owes it; "for" alone says enough where this is empty.
    const wchar_t* behindHolder;
    /// What is waited for when nobody is known to hold or owe it; null: nothing worth saying.
    const wchar_t* withoutHolder;
};

constexpr Wording kWordings[] = {
    {WaitObject::criticalSection, L", which holds a critical section", L"a critical section"},
    {WaitObject::sendMessage, L" to answer a window message", L"an answer to a window message"},
    {WaitObject::mutex, L", which holds a mutex", L"a mutex"},
    {WaitObject::alpc, L" to answer a local procedure call",
     L"an answer to a local procedure call"},
    {WaitObject::com, L" to answer a COM call", L"an answer to a COM call"},
    {WaitObject::threadEnd, L" to end", L"the end of another thread"},
    {WaitObject::processEnd, L" to end", L"the end of another process"},
    {WaitObject::comActivation, L" to start a COM object", L"the start of a COM object"},
    {WaitObject::socket, L" at the other end of a network connection", L"the network"},
    {WaitObject::networkFile, L" to serve a file on the network", L"a file on the network"},
    {WaitObject::unknown, L"", nullptr},
};

// One thread's wait: what it waits for, and whom that leads to where Windows tells it.
struct Wait {
    const WaitNode& waiter;
    const WaitNode& object;
    const WaitNode* holder;
};

bool IsThread(const WaitNode& node) {
    return node.object == WaitObject::thread;
}

std::vector<Wait> WaitsOf(const WaitChain& chain) {
    std::vector<Wait> waits;
    const auto& nodes = chain.nodes;
    for (std::size_t i = 0; i + 1 < nodes.size(); ++i) {
        if (!IsThread(nodes[i]) || IsThread(nodes[i + 1])) continue;
        const bool leadsOn = i + 2 < nodes.size() && IsThread(nodes[i + 2]);
        waits.push_back({nodes[i], nodes[i + 1], leadsOn ? &nodes[i + 2] : nullptr});
    }
    return waits;
}

bool IsSameThread(const WaitNode& left, const WaitNode& right) {
    return left.pid == right.pid && left.threadId == right.threadId;
}

// "thread 4312 of splwow64.exe (PID 2208)". `main` is the first thread of the chain.
std::wstring Who(const WaitNode& thread, const WaitNode& main) {
    if (IsSameThread(thread, main)) return L"the main thread";
    const std::wstring number = L"thread " + decimalUnsigned(thread.threadId);
    if (thread.pid == main.pid) return number + L" of the same process";
    const std::wstring process = (thread.program.empty() ? L"another process" : thread.program) +
                                 L" (PID " + decimalUnsigned(thread.pid) + L")";
    return thread.threadId == 0 ? process : number + L" of " + process;
}

std::wstring WhatIsWaitedFor(const Wait& wait, const WaitNode& main) {
    const auto* wording =
        std::find_if(std::begin(kWordings), std::end(kWordings),
                     [&](const Wording& row) { return row.object == wait.object.object; });
    if (wording == std::end(kWordings)) return {};
    const std::wstring name =
        wait.object.name.empty() ? std::wstring() : L" \"" + wait.object.name + L"\"";
    if (wait.holder != nullptr) return Who(*wait.holder, main) + wording->behindHolder + name;
    if (wording->withoutHolder == nullptr) return {};
    std::wstring text = wording->withoutHolder + name;
    if (wait.object.status == WaitStatus::notOwned) text += L" that no thread holds";
    if (wait.object.status == WaitStatus::abandoned)
        text += L" whose holder ended without a release";
    return text;
}

}  // namespace

std::vector<std::wstring> DescribeWaits(const WaitChain& chain, std::uint32_t pid) {
    std::vector<std::wstring> sentences;
    if (chain.nodes.empty()) return sentences;
    WaitNode main = chain.nodes.front();
    main.pid = pid;
    for (const Wait& wait : WaitsOf(chain)) {
        // The last of a circle is held by one of those above, whom Windows need not repeat.
        if (chain.isCircle && wait.holder == nullptr) continue;
        const std::wstring what = WhatIsWaitedFor(wait, main);
        if (what.empty()) continue;
        std::wstring subject = L"Waits for ";
        if (&wait.waiter != &chain.nodes.front()) {
            subject = Who(wait.waiter, main) + L" waits for ";
            const bool isFileName = wait.waiter.threadId == 0 && !wait.waiter.program.empty();
            if (!isFileName) subject.front() = subject.front() == L't' ? L'T' : L'A';
        }
        sentences.push_back(subject + what + L".");
    }
    if (chain.isCircle) {
        sentences.emplace_back(
            L"Deadlock: these threads wait for each other in a circle, which does not end by itself.");
    }
    return sentences;
}

std::vector<std::uint32_t> ThreadsNamed(const WaitChain& chain, std::uint32_t pid) {
    std::vector<std::uint32_t> ids;
    for (const WaitNode& node : chain.nodes) {
        if (!IsThread(node) || node.pid != pid || node.threadId == 0) continue;
        if (node.threadId == chain.nodes.front().threadId) continue;
        if (std::find(ids.begin(), ids.end(), node.threadId) == ids.end()) {
            ids.push_back(node.threadId);
        }
    }
    return ids;
}
