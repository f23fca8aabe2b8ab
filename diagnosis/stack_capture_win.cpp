#include "diagnosis/stack_capture_win.h"

#include <windows.h>

#include <dbghelp.h>

#include <exception>
#include <mutex>

#include "base/process_win.h"
#include "diagnosis/symbol_session_win.h"

namespace {

constexpr DWORD kLongestSymbol = 2000;
constexpr const wchar_t* kWalkFailed =
    L"Stack walk failed. CDR may have recovered - capture again while it hangs.";

// Resumes what it suspended, once, on every path.
class SuspendedThread {
  public:
    explicit SuspendedThread(HANDLE thread)
        : thread_(thread), suspended_(SuspendThread(thread) != static_cast<DWORD>(-1)) {}
    SuspendedThread(const SuspendedThread&) = delete;
    SuspendedThread& operator=(const SuspendedThread&) = delete;
    ~SuspendedThread() {
        if (suspended_) ResumeThread(thread_);
    }
    explicit operator bool() const { return suspended_; }

  private:
    HANDLE thread_;
    bool suspended_;
};

CaptureResult Failure(const wchar_t* error) {
    return {false, error, {}};
}

void ReadModule(HANDLE process, StackFrame& frame) {
    IMAGEHLP_MODULEW64 module{};
    module.SizeOfStruct = sizeof module;
    if (!SymGetModuleInfoW64(process, frame.address, &module)) return;
    frame.imagePath = module.ImageName;
    frame.moduleName = ModuleNameOf(module.ModuleName, module.ImageName);
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

std::vector<StackFrame> Walk(HANDLE process, HANDLE thread, CONTEXT& context) {
    STACKFRAME64 position{};
    position.AddrPC = {context.Rip, 0, AddrModeFlat};
    position.AddrFrame = {context.Rbp, 0, AddrModeFlat};
    position.AddrStack = {context.Rsp, 0, AddrModeFlat};

    std::vector<StackFrame> frames;
    frames.reserve(kMaxFrames);
    for (int i = 0; i < kMaxFrames; ++i) {
        if (!StackWalk64(IMAGE_FILE_MACHINE_AMD64, process, thread, &position, &context, nullptr,
                         SymFunctionTableAccess64, SymGetModuleBase64, nullptr) ||
            position.AddrPC.Offset == 0) {
            break;
        }
        StackFrame frame;
        frame.address = position.AddrPC.Offset;
        ReadModule(process, frame);
        ReadFunction(process, frame);
        ReadLine(process, frame);
        frames.push_back(std::move(frame));
    }
    return frames;
}

// From the suspension on: whatever happens in here, the guard's end resumes the thread.
CaptureResult CaptureSuspended(HANDLE process, DWORD pid, HANDLE thread, SymbolSession& symbols) {
    const SuspendedThread suspended(thread);
    if (!suspended) return Failure(L"Failed to suspend the thread, please retry.");

    // Suspension is asynchronous; only a context that could be read proves that the thread stands.
    CONTEXT context{};
    context.ContextFlags = CONTEXT_FULL;
    if (!GetThreadContext(thread, &context)) return Failure(L"Failed to read thread context.");

    const bool registered = symbols.EnsureSymbols(process, pid);
    std::vector<StackFrame> frames =
        Walk(registered ? symbols.process() : process, thread, context);
    if (frames.empty()) return Failure(kWalkFailed);
    return {true, {}, std::move(frames)};
}

}  // namespace

CaptureResult CaptureMainThreadStack(std::uint32_t pid, std::uint32_t threadId) {
    static std::mutex captureMutex;
    static SymbolSession symbols;
    const std::lock_guard lock(captureMutex);

    const KernelHandle process(
        OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, pid));
    if (!process || hasExited(process.get())) {
        return Failure(
            L"Cannot open the CDR process (insufficient rights). "
            L"Make sure CDR and this tool run as the same user.");
    }
    const KernelHandle thread(OpenThread(
        THREAD_SUSPEND_RESUME | THREAD_GET_CONTEXT | THREAD_QUERY_INFORMATION, FALSE, threadId));
    // The id may have passed to a thread of another process since the list was made.
    if (!thread || GetProcessIdOfThread(thread.get()) != pid) {
        return Failure(
            L"Cannot access the CDR main thread. "
            L"It may be protected by security software - try whitelisting Mirelo.");
    }
    try {
        return CaptureSuspended(process.get(), pid, thread.get(), symbols);
    } catch (const std::exception&) {
        return Failure(kWalkFailed);
    }
}
