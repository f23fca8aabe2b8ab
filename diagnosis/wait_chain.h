// Who waits for whom, as Windows tells it, and what a reader is told of it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// What stands in a wait chain. The numbers are Windows' own (`WCT_OBJECT_TYPE`).
enum class WaitObject : int {
    criticalSection = 1,
    sendMessage = 2,
    mutex = 3,
    alpc = 4,
    com = 5,
    threadEnd = 6,
    processEnd = 7,
    thread = 8,
    comActivation = 9,
    unknown = 10,
    socket = 11,
    networkFile = 12,
};

/// Whether the object has an owner. The numbers are Windows' own (`WCT_OBJECT_STATUS`); what makes
/// no difference here is left out.
enum class WaitStatus : int { other = 0, notOwned = 7, abandoned = 8 };

/// One node: a thread, or what a thread waits for. Numbers are 0 and texts empty where Windows does
/// not tell.
struct WaitNode {
    WaitObject object = WaitObject::unknown;
    WaitStatus status = WaitStatus::other;
    /// Of a thread.
    std::uint32_t pid = 0;
    std::uint32_t threadId = 0;
    /// Of a thread: the file name of its process's program.
    std::wstring program;
    /// Of anything else: the name of a mutex.
    std::wstring name;
};

/// From the thread that was asked about to the last that is known: a thread, what it waits for, the
/// thread that holds that, and so on. Empty when nothing is known.
struct WaitChain {
    std::vector<WaitNode> nodes;
    /// The last one waits for one of those before it.
    bool isCircle = false;
};

/// One sentence for each wait of the chain, and one for a circle. The first thread of the chain is
/// the main thread of the process `pid`; it is the subject of the first sentence and not named in
/// it.
std::vector<std::wstring> DescribeWaits(const WaitChain& chain, std::uint32_t pid);

/// The threads of the process `pid` that the chain names behind its first, each once, in its order.
std::vector<std::uint32_t> ThreadsNamed(const WaitChain& chain, std::uint32_t pid);
