#include "practice/other_threads.h"

#include <objbase.h>

#include <functional>
#include <thread>
#include <vector>

#include "practice/libraries.h"

namespace {

/// Hangs in a library, on a thread of its own, for as long as the hang lasts; in place when the
/// constructor returns.
class HangingThread {
  public:
    HangingThread(Hang& hang, std::function<void()> work) : thread_(std::move(work)) {
        WaitForSingleObject(hang.inPlace.get(), INFINITE);
    }
    HangingThread(const HangingThread&) = delete;
    HangingThread& operator=(const HangingThread&) = delete;
    ~HangingThread() { thread_.join(); }

  private:
    std::thread thread_;
};

void HoldInPlugin(Hang& hang) {
    HangInLibrary(L"holder.cpg", "HoldDocumentLock", hang);
}

/// Threads that wait for work, as any large program has them.
class Crowd {
  public:
    Crowd(Hang& hang, int size) {
        for (int i = 0; i < size; ++i)
            threads_.emplace_back([&] { WaitForSingleObject(hang.over.get(), INFINITE); });
    }
    Crowd(const Crowd&) = delete;
    Crowd& operator=(const Crowd&) = delete;
    ~Crowd() {
        for (std::thread& thread : threads_)
            thread.join();
    }

  private:
    std::vector<std::thread> threads_;
};

}  // namespace

void SaveDocument(Handshake& handshake) {
    CRITICAL_SECTION documentLock;
    InitializeCriticalSection(&documentLock);
    {
        const HangingThread holder(handshake.second, [&] {
            EnterCriticalSection(&documentLock);
            HoldInPlugin(handshake.second);
            LeaveCriticalSection(&documentLock);
        });
        SetEvent(handshake.first.inPlace.get());
        EnterCriticalSection(&documentLock);
        LeaveCriticalSection(&documentLock);
    }
    DeleteCriticalSection(&documentLock);
}

void ExportDocument(Handshake& handshake) {
    const KernelHandle exportLock(CreateMutexW(nullptr, FALSE, nullptr));
    const HangingThread holder(handshake.second, [&] {
        WaitForSingleObject(exportLock.get(), INFINITE);
        HoldInPlugin(handshake.second);
        ReleaseMutex(exportLock.get());
    });
    SetEvent(handshake.first.inPlace.get());
    WaitForSingleObject(exportLock.get(), INFINITE);
    ReleaseMutex(exportLock.get());
}

void SaveDocumentInACrowd(Handshake& handshake) {
    constexpr int kCrowd = 40;
    const Crowd crowd(handshake.second, kCrowd);
    SaveDocument(handshake);
}

void UpdateLinkedObject(Handshake& handshake) {
    const HangingThread server(handshake.second, [&] {
        HangInLibrary(L"linkserver.dll", "ServeLinkedObject", handshake.second);
    });
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    SetEvent(handshake.first.inPlace.get());
    HANDLE answered = handshake.first.over.get();
    DWORD which = 0;
    CoWaitForMultipleHandles(0, INFINITE, 1, &answered, &which);
    CoUninitialize();
}
