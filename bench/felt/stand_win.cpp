// How long a captured CorelDRAW stands still, told by a practice program that does nothing but
// watch the clock: `bench_felt_stand PATH-OF-CorelDRW.exe [ROUNDS]`. Beside each capture, of the
// same process, the debug-help library's own walk with look-ups, with symbols registered before the
// suspension. Each line of output: what, milliseconds (the median), what it is compared with, its
// milliseconds, the median of the ratios.
#include <windows.h>

#include <dbghelp.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "base/handle_win.h"
#include "cdr/instances_win.h"
#include "diagnosis/stack_capture_win.h"
#include "practice/own_code.h"

namespace {

constexpr DWORD kLimitMs = 20000;

double milliseconds(LONG64 ticks) {
    LARGE_INTEGER frequency{};
    QueryPerformanceFrequency(&frequency);
    return static_cast<double>(ticks) * 1e3 / static_cast<double>(frequency.QuadPart);
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

KernelHandle event(const std::wstring& name, const wchar_t* suffix) {
    return KernelHandle(CreateEventW(nullptr, TRUE, FALSE, (L"Local\\" + name + suffix).c_str()));
}

// The practice program, alive as long as this object.
class Stopwatch {
  public:
    Stopwatch(const std::wstring& program, int round)
        : name_(L"mirelo-stand-" + std::to_wstring(GetCurrentProcessId()) + L"-" +
                std::to_wstring(round)),
          exit_(event(name_, L".exit")) {
        const KernelHandle ready = event(name_, L".ready");
        std::wstring command = L"CorelDRW stopwatch --name " + name_;
        STARTUPINFOW startup{};
        startup.cb = sizeof startup;
        PROCESS_INFORMATION started{};
        if (!CreateProcessW(program.c_str(), command.data(), nullptr, nullptr, FALSE, 0, nullptr,
                            nullptr, &startup, &started))
            return;
        process_.reset(started.hProcess);
        CloseHandle(started.hThread);
        WaitForSingleObject(ready.get(), kLimitMs);
        const std::wstring gap = L"Local\\mirelo-practice-gap-" + std::to_wstring(pid());
        mapping_.reset(OpenFileMappingW(FILE_MAP_WRITE, FALSE, gap.c_str()));
        watch_ = static_cast<volatile ClockWatch*>(
            MapViewOfFile(mapping_.get(), FILE_MAP_WRITE, 0, 0, sizeof(ClockWatch)));
    }
    Stopwatch(const Stopwatch&) = delete;
    Stopwatch& operator=(const Stopwatch&) = delete;
    ~Stopwatch() {
        if (watch_ != nullptr) UnmapViewOfFile(const_cast<ClockWatch*>(watch_));
        SetEvent(exit_.get());
        WaitForSingleObject(process_.get(), kLimitMs);
    }

    [[nodiscard]] bool isRunning() const { return watch_ != nullptr; }
    [[nodiscard]] DWORD pid() const { return GetProcessId(process_.get()); }

    /// How long the program stood while `work` ran.
    template <typename Work>
    double stoodMs(Work work) {
        awaitLook();
        watch_->longestGapTicks = 0;
        work();
        awaitLook();
        return milliseconds(watch_->longestGapTicks);
    }

  private:
    // Until the program has told of all that was before.
    void awaitLook() {
        const LONG64 before = watch_->looks;
        while (watch_->looks < before + 2)
            SwitchToThread();
    }

    std::wstring name_;
    KernelHandle exit_;
    KernelHandle process_;
    KernelHandle mapping_;
    volatile ClockWatch* watch_ = nullptr;
};

// The library alone, as a capture uses it.
class RawWalk {
  public:
    explicit RawWalk(const CdrInstance& target)
        : process_(OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, target.pid)),
          thread_(
              OpenThread(THREAD_SUSPEND_RESUME | THREAD_GET_CONTEXT, FALSE, target.mainThreadId)) {
        SymInitialize(process_.get(), nullptr, TRUE);
    }
    RawWalk(const RawWalk&) = delete;
    RawWalk& operator=(const RawWalk&) = delete;
    ~RawWalk() { SymCleanup(process_.get()); }

    void operator()() {
        SuspendThread(thread_.get());
        CONTEXT context{};
        context.ContextFlags = CONTEXT_FULL;
        GetThreadContext(thread_.get(), &context);
        STACKFRAME64 frame{};
        frame.AddrPC = {context.Rip, 0, AddrModeFlat};
        frame.AddrFrame = {context.Rbp, 0, AddrModeFlat};
        frame.AddrStack = {context.Rsp, 0, AddrModeFlat};
        while (StackWalk64(IMAGE_FILE_MACHINE_AMD64, process_.get(), thread_.get(), &frame,
                           &context, nullptr, SymFunctionTableAccess64, SymGetModuleBase64,
                           nullptr) &&
               frame.AddrPC.Offset != 0)
            lookUp(frame.AddrPC.Offset);
        ResumeThread(thread_.get());
    }

  private:
    void lookUp(DWORD64 address) {
        IMAGEHLP_MODULEW64 module{};
        module.SizeOfStruct = sizeof module;
        SymGetModuleInfoW64(process_.get(), address, &module);
        alignas(SYMBOL_INFOW) BYTE buffer[sizeof(SYMBOL_INFOW) + 2000 * sizeof(wchar_t)] = {};
        auto* symbol = reinterpret_cast<SYMBOL_INFOW*>(buffer);
        symbol->SizeOfStruct = sizeof(SYMBOL_INFOW);
        symbol->MaxNameLen = 2000;
        DWORD64 displacement = 0;
        SymFromAddrW(process_.get(), address, &displacement, symbol);
        IMAGEHLP_LINEW64 line{};
        line.SizeOfStruct = sizeof line;
        DWORD lineDisplacement = 0;
        SymGetLineFromAddrW64(process_.get(), address, &lineDisplacement, &line);
    }

    KernelHandle process_;
    KernelHandle thread_;
};

// The first of a process, or a later one.
struct Captures {
    std::vector<double> stoodMs;
    std::vector<double> callMs;
    std::vector<double> rawMs;
};

void row(const char* what, const std::vector<double>& ours, const char* other,
         const std::vector<double>& others) {
    std::vector<double> ratios;
    for (std::size_t i = 0; i < ours.size(); ++i)
        ratios.push_back(ours[i] / others[i]);
    std::printf("%s|%.1f|%s|%.1f|%.2f\n", what, median(ours), other, median(others),
                median(ratios));
}

void captureTwice(Stopwatch& stopwatch, const CdrInstance& target, Captures* firstAndLater) {
    for (int i = 0; i < 2; ++i) {
        LARGE_INTEGER start{}, end{};
        const double stood = stopwatch.stoodMs([&] {
            QueryPerformanceCounter(&start);
            if (!CaptureMainThreadStack(target.pid, target.mainThreadId).ok) std::exit(1);
            QueryPerformanceCounter(&end);
        });
        firstAndLater[i].stoodMs.push_back(stood);
        firstAndLater[i].callMs.push_back(milliseconds(end.QuadPart - start.QuadPart));
    }
}

void walkTwice(Stopwatch& stopwatch, const CdrInstance& target, Captures* firstAndLater) {
    RawWalk walk(target);
    for (int i = 0; i < 2; ++i)
        firstAndLater[i].rawMs.push_back(stopwatch.stoodMs([&] { walk(); }));
}

}  // namespace

int main(int count, char** arguments) {
    const std::string given = count > 1 ? arguments[1] : "";
    const int rounds = count > 2 ? std::atoi(arguments[2]) : 9;
    const std::wstring program(given.begin(), given.end());
    SymSetOptions(SYMOPT_UNDNAME | SYMOPT_DEFERRED_LOADS | SYMOPT_LOAD_LINES);
    Captures captures[2];
    for (int round = 0; round <= rounds; ++round) {
        if (round == 1) captures[0] = captures[1] = {};  // the first round warms up
        Stopwatch stopwatch(program, round);
        CdrInstance target;
        for (const CdrInstance& instance : EnumerateCdrInstances())
            if (instance.pid == stopwatch.pid()) target = instance;
        if (!stopwatch.isRunning() || target.pid == 0) return 1;
        const bool oursFirst = round % 2 == 0;
        if (oursFirst) captureTwice(stopwatch, target, captures);
        walkTwice(stopwatch, target, captures);
        if (!oursFirst) captureTwice(stopwatch, target, captures);
    }
    row("target stands: first capture", captures[0].stoodMs, "the whole call", captures[0].callMs);
    row("target stands: first capture", captures[0].stoodMs, "the library's walk alone",
        captures[0].rawMs);
    row("target stands: later capture", captures[1].stoodMs, "the whole call", captures[1].callMs);
    row("target stands: later capture", captures[1].stoodMs, "the library's walk alone",
        captures[1].rawMs);
    return 0;
}
