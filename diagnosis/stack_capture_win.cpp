#include "diagnosis/stack_capture_win.h"

#include <windows.h>

#include <dbghelp.h>

#include <cwchar>
#include <map>

#include "base/process_win.h"
#include "diagnosis/guarded_call_win.h"
#include "diagnosis/suspended_thread_win.h"
#include "diagnosis/symbol_session_win.h"

namespace {

constexpr DWORD kLongestSymbol = 2000;
constexpr const wchar_t* kWalkFailed =
    L"Stack walk failed. CDR may have recovered - capture again while it hangs.";

CaptureResult Failure(const wchar_t* error) {
    return {false, error, {}, 0};
}

// What one capture works on; all of it is borrowed.
struct Target {
    HANDLE process;
    HANDLE thread;
    const std::vector<LoadedModule>& modules;
};

void ReadModule(const Target& target, StackFrame& frame) {
    IMAGEHLP_MODULEW64 module{};
    module.SizeOfStruct = sizeof module;
    if (!SymGetModuleInfoW64(target.process, frame.address, &module)) return;
    frame.imagePath = module.ImageName;
    // The library's record has no room for a long path.
    const LoadedModule* known = ModuleAt(target.modules, frame.address);
    if (known != nullptr && known->path.size() >= std::size(module.ImageName) - 1)
        frame.imagePath = known->path;
    frame.moduleName = ModuleNameOf(module.ModuleName, frame.imagePath);
}

void ReadFunction(HANDLE process, StackFrame& frame) {
    alignas(SYMBOL_INFOW) BYTE buffer[sizeof(SYMBOL_INFOW) + kLongestSymbol * sizeof(wchar_t)] = {};
    auto* symbol = reinterpret_cast<SYMBOL_INFOW*>(buffer);
    symbol->SizeOfStruct = sizeof(SYMBOL_INFOW);
    symbol->MaxNameLen = kLongestSymbol;
    DWORD64 displacement = 0;
    if (!SymFromAddrW(process, frame.address, &displacement, symbol)) return;
    frame.function = symbol->Name;
    frame.displacement = displacement;
}

void ReadLine(HANDLE process, StackFrame& frame) {
    IMAGEHLP_LINEW64 line{};
    line.SizeOfStruct = sizeof line;
    DWORD displacement = 0;
    if (!SymGetLineFromAddrW64(process, frame.address, &displacement, &line)) return;
    if (line.FileName != nullptr) frame.sourceFile = line.FileName;
    frame.line = line.LineNumber;
}

void Describe(const Target& target, StackFrame& frame) {
    ReadModule(target, frame);
    ReadFunction(target.process, frame);
    ReadLine(target.process, frame);
}

// Fills the frames until the stack ends, or the thread runs again: what is read from a running
// thread is no stack. `describe` is called for each.
template <typename DescribeFrame>
void Walk(const Target& target, const SuspendedThread& suspended, CONTEXT& context,
          CaptureResult& walked, DescribeFrame describe) {
    STACKFRAME64 position{};
    position.AddrPC = {context.Rip, 0, AddrModeFlat};
    position.AddrFrame = {context.Rbp, 0, AddrModeFlat};
    position.AddrStack = {context.Rsp, 0, AddrModeFlat};

    for (int i = 0; i < kMaxFrames && suspended.isHeld(); ++i) {
        if (!StackWalk64(IMAGE_FILE_MACHINE_AMD64, target.process, target.thread, &position,
                         &context, nullptr, SymFunctionTableAccess64, SymGetModuleBase64,
                         nullptr) ||
            position.AddrPC.Offset == 0) {
            const bool wasLedOn =
                !walked.frames.empty() && walked.frames.back().address != position.AddrPC.Offset;
            if (wasLedOn) walked.stoppedAt = position.AddrPC.Offset;
            return;
        }
        StackFrame& frame = walked.frames.emplace_back();
        frame.address = position.AddrPC.Offset;
        describe(frame);
    }
}

// From the suspension on: whatever happens in here, the guard's end resumes the thread. `survived`
// becomes false when the library crashed.
template <typename DescribeFrame>
CaptureResult CaptureSuspended(const Target& target, bool& survived, DescribeFrame describe) {
    CaptureResult walked;
    walked.frames.reserve(kMaxFrames);
    const SuspendedThread suspended(target.thread);
    if (!suspended.isHeld()) return Failure(L"Failed to suspend the thread, please retry.");

    // Suspension is asynchronous; only a context that could be read proves that the thread stands.
    CONTEXT context{};
    context.ContextFlags = CONTEXT_FULL;
    if (!GetThreadContext(target.thread, &context))
        return Failure(L"Failed to read thread context.");

    survived = runGuarded([&] { Walk(target, suspended, context, walked, describe); });
    walked.ok = survived && suspended.isHeld() && !walked.frames.empty();
    return walked.ok ? std::move(walked) : Failure(kWalkFailed);
}

SymbolSession& Symbols() {
    static SymbolSession symbols;
    return symbols;
}

// Everything that takes long, the registration above all, is done before the thread is suspended.
CaptureResult Capture(HANDLE process, DWORD pid, HANDLE thread) {
    SymbolSession& symbols = Symbols();
    bool registered = false;
    bool survived = runGuarded([&] {
        registered = symbols.EnsureSymbols(process, pid);
        if (registered) symbols.RefreshModules();
    });
    CaptureResult result = Failure(kWalkFailed);
    if (survived) {
        const HANDLE known = registered ? symbols.process() : process;
        const Target target{known, thread, symbols.modules()};
        result =
            CaptureSuspended(target, survived, [&](StackFrame& frame) { Describe(target, frame); });
    }
    // Whatever a crash left of the registration is not to be trusted.
    if (!survived) symbols.Forget();
    return result;
}

KernelHandle OpenThreadOf(DWORD pid, DWORD threadId) {
    KernelHandle thread(OpenThread(
        THREAD_SUSPEND_RESUME | THREAD_GET_CONTEXT | THREAD_QUERY_INFORMATION, FALSE, threadId));
    // The id may have passed to a thread of another process since it was read.
    if (thread && GetProcessIdOfThread(thread.get()) != pid) thread.reset();
    return thread;
}

// The walks of one process's further threads, as long as there is time and the library survives.
class ThreadWalks {
  public:
    ThreadWalks(HANDLE process, const std::vector<LoadedModule>& modules, unsigned limitMs)
        : process_(process), modules_(modules), endMs_(GetTickCount64() + limitMs) {}

    [[nodiscard]] bool canGoOn() const { return survived_ && GetTickCount64() < endMs_; }
    [[nodiscard]] bool survived() const { return survived_; }

    // Empty when the thread could not be walked, or not named in time.
    std::vector<StackFrame> framesOf(HANDLE thread) {
        const Target target{process_, thread, modules_};
        CaptureResult walked = CaptureSuspended(target, survived_, [](StackFrame&) {});
        for (StackFrame& frame : walked.frames) {
            if (!canGoOn()) return {};
            name(target, frame);
        }
        return std::move(walked.frames);
    }

  private:
    // Threads share most of what they are in: the thread pool's wait, the start of a thread.
    void name(const Target& target, StackFrame& frame) {
        const auto [known, isNew] = named_.try_emplace(frame.address, frame);
        if (isNew) {
            survived_ = runGuarded([&, &named = known->second] {
                ReadModule(target, named);
                ReadFunction(target.process, named);
            });
        }
        frame = known->second;
    }

    HANDLE process_;
    const std::vector<LoadedModule>& modules_;
    ULONGLONG endMs_;
    bool survived_ = true;
    std::map<std::uint64_t, StackFrame> named_;
};

constinit SRWLOCK oneAtATime = SRWLOCK_INIT;

}  // namespace

CaptureResult CaptureMainThreadStack(std::uint32_t pid, std::uint32_t threadId) {
    const LockGuard lock(oneAtATime);
    const KernelHandle process(
        OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, pid));
    if (!process || hasExited(process.get())) {
        return Failure(
            L"Cannot open the CDR process (insufficient rights). "
            L"Make sure CDR and this tool run as the same user.");
    }
    const KernelHandle thread = OpenThreadOf(pid, threadId);
    if (!thread) {
        return Failure(
            L"Cannot access the CDR main thread. "
            L"It may be protected by security software - try whitelisting Mirelo.");
    }
    try {
        return Capture(process.get(), pid, thread.get());
    } catch (...) {
        return Failure(kWalkFailed);
    }
}

std::vector<ThreadStack> CaptureThreadStacks(std::uint32_t pid,
                                             const std::vector<std::uint32_t>& threadIds,
                                             unsigned limitMs) {
    const LockGuard lock(oneAtATime);
    std::vector<ThreadStack> stacks;
    try {
        // Only behind a capture of the same process: a registration of its own takes too long here.
        if (!Symbols().isOf(pid)) return stacks;
        ThreadWalks walks(Symbols().process(), Symbols().modules(), limitMs);
        for (const std::uint32_t id : threadIds) {
            if (!walks.canGoOn()) break;
            const KernelHandle thread = OpenThreadOf(pid, id);
            std::vector<StackFrame> frames;
            if (thread) frames = walks.framesOf(thread.get());
            if (!frames.empty()) stacks.push_back({id, std::move(frames)});
        }
        if (!walks.survived()) Symbols().Forget();
    } catch (...) {
        return stacks;
    }
    return stacks;
}
