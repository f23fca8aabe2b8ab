#include "practice/own_code.h"

#include <cstring>
#include <string>
#include <thread>

namespace {

void OpenGroup(Hang& hang, int deeper) {
    if (deeper > 0) {
        OpenGroup(hang, deeper - 1);
        return;
    }
    SetEvent(hang.inPlace.get());
    WaitForSingleObject(hang.over.get(), INFINITE);
}

/// Owns a window and leaves its messages alone until the hang is over.
class SilentThread {
  public:
    explicit SilentThread(Hang& hang) : thread_([this, &hang] { run(hang); }) {
        WaitForSingleObject(made_.get(), INFINITE);
    }
    SilentThread(const SilentThread&) = delete;
    SilentThread& operator=(const SilentThread&) = delete;
    ~SilentThread() {
        SetEvent(done_.get());
        thread_.join();
    }

    [[nodiscard]] HWND window() const { return window_; }

  private:
    void run(Hang& hang) {
        window_ = CreateWindowExW(0, L"STATIC", L"Silent", WS_POPUP, 0, 0, 0, 0, HWND_MESSAGE,
                                  nullptr, GetModuleHandleW(nullptr), nullptr);
        SetEvent(made_.get());
        WaitForSingleObject(hang.over.get(), INFINITE);
        // Sent messages are answered while the thread looks for posted ones.
        const HANDLE done = done_.get();
        while (MsgWaitForMultipleObjects(1, &done, FALSE, INFINITE, QS_ALLINPUT) != WAIT_OBJECT_0) {
            MSG message = {};
            while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
                DispatchMessageW(&message);
        }
        DestroyWindow(window_);
    }

    KernelHandle made_{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    KernelHandle done_{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    HWND window_ = nullptr;
    std::thread thread_;
};

}  // namespace

void RebuildDrawing(Handshake& handshake) {
    SetEvent(handshake.first.inPlace.get());
    WaitForSingleObject(handshake.first.over.get(), INFINITE);
}

void SortObjects(Handshake& handshake) {
    SetEvent(handshake.first.inPlace.get());
    while (!handshake.first.isOver)
        YieldProcessor();
}

void RunMacro(Handshake& handshake) {
    // sub rsp,72; call r8; add rsp,72; ret: hands its first two arguments on to its third.
    constexpr unsigned char kCode[] = {0x48, 0x83, 0xEC, 0x48, 0x41, 0xFF,
                                       0xD0, 0x48, 0x83, 0xC4, 0x48, 0xC3};
    void* memory =
        VirtualAlloc(nullptr, sizeof kCode, MEM_COMMIT | MEM_RESERVE, PAGE_EXECUTE_READWRITE);
    if (memory == nullptr) EndProcess(kExitLibraryMissing);
    std::memcpy(memory, kCode, sizeof kCode);
    const auto macro =
        reinterpret_cast<DWORD (*)(HANDLE, DWORD, decltype(&WaitForSingleObject))>(memory);
    SetEvent(handshake.first.inPlace.get());
    macro(handshake.first.over.get(), INFINITE, WaitForSingleObject);
    VirtualFree(memory, 0, MEM_RELEASE);
}

void OpenNestedGroups(Handshake& handshake) {
    constexpr int kDepth = 100;
    OpenGroup(handshake.first, kDepth);
}

void AskSilentWindow(Handshake& handshake) {
    constexpr UINT kAnswerLimitMs = 24 * 60 * 60 * 1000;
    const SilentThread silent(handshake.first);
    SetEvent(handshake.first.inPlace.get());
    // A thread in a plain SendMessage still answers what is sent to it, so that it would not count
    // as hanging; SMTO_BLOCK makes it deaf.
    SendMessageTimeoutW(silent.window(), WM_NULL, 0, 0, SMTO_BLOCK, kAnswerLimitMs, nullptr);
}

void WatchTheClock(Handshake& handshake) {
    const std::wstring name =
        L"Local\\mirelo-practice-gap-" + std::to_wstring(GetCurrentProcessId());
    const KernelHandle mapping(CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0,
                                                  sizeof(ClockWatch), name.c_str()));
    auto* watch = static_cast<volatile ClockWatch*>(
        MapViewOfFile(mapping.get(), FILE_MAP_WRITE, 0, 0, sizeof(ClockWatch)));
    if (watch == nullptr) EndProcess(kExitStuck);
    LARGE_INTEGER before{};
    QueryPerformanceCounter(&before);
    SetEvent(handshake.first.inPlace.get());
    while (!handshake.first.isOver) {
        LARGE_INTEGER now{};
        QueryPerformanceCounter(&now);
        const LONG64 gap = now.QuadPart - before.QuadPart;
        if (gap > watch->longestGapTicks) watch->longestGapTicks = gap;
        watch->looks = watch->looks + 1;
        before = now;
    }
}
