#include "diagnosis/symbol_session_win.h"

#include <dbghelp.h>

#include <algorithm>
#include <iterator>
#include <string_view>

#include "base/text.h"
#include "diagnosis/guarded_call_win.h"
#include "diagnosis/module_list_win.h"
#include "diagnosis/suspended_thread_win.h"

namespace {

// While a thread is held, symbols that take longer than this are done without.
constexpr DWORD kSymbolPatienceMs = 2000;

constexpr std::wstring_view kOnMostStacks[] = {
    L"\\ntdll.dll",  L"\\kernel32.dll", L"\\kernelbase.dll",
    L"\\user32.dll", L"\\win32u.dll",   L"\\coreldrw.exe",
};

// SLMFLAG_NO_SYMBOLS of the debug-help library's header, missing in the compiler's.
constexpr DWORD kNoSymbols = 0x4;

std::string AnsiFromWide(const std::wstring& wide) {
    const int wideLength = static_cast<int>(wide.size());
    const int length =
        WideCharToMultiByte(CP_ACP, 0, wide.c_str(), wideLength, nullptr, 0, nullptr, nullptr);
    std::string ansi(static_cast<std::size_t>(length), '\0');
    WideCharToMultiByte(CP_ACP, 0, wide.c_str(), wideLength, ansi.data(), length, nullptr, nullptr);
    return ansi;
}

// The library asks again and again whether a load is to be given up; everything else is its own
// affair.
BOOL CALLBACK AnswerLibrary(HANDLE, ULONG action, ULONG64, ULONG64) {
    return action == CBA_DEFERRED_SYMBOL_LOAD_CANCEL && isHoldOverdue(kSymbolPatienceMs);
}

bool IsKnown(HANDLE process, const LoadedModule& module) {
    return SymGetModuleBase64(process, module.base) == module.base;
}

void Load(HANDLE process, const LoadedModule& module) {
    const bool isLong = module.path.size() >= MAX_PATH;
    const std::wstring path = (isLong ? L"\\\\?\\" : L"") + module.path;
    SymLoadModuleExW(process, nullptr, path.c_str(), nullptr, module.base, module.sizeBytes,
                     nullptr, module.hasRemoteSymbols ? kNoSymbols : 0);
}

// Nearly every stack runs through these. What their symbols cost is paid before the thread stands.
bool IsOnMostStacks(const LoadedModule& module) {
    const std::wstring path = lowered(module.path);
    return std::any_of(std::begin(kOnMostStacks), std::end(kOnMostStacks),
                       [&](std::wstring_view name) { return path.ends_with(name); });
}

void ReadSymbols(HANDLE process, const LoadedModule& module) {
    SYMBOL_INFOW symbol{};
    symbol.SizeOfStruct = sizeof symbol;
    DWORD64 displacement = 0;
    SymFromAddrW(process, module.base, &displacement, &symbol);
}

KernelHandle Duplicate(HANDLE handle) {
    KernelHandle copy;
    DuplicateHandle(GetCurrentProcess(), handle, GetCurrentProcess(), copy.receive(), 0, FALSE,
                    DUPLICATE_SAME_ACCESS);
    return copy;
}

}  // namespace

SymbolSession::~SymbolSession() {
    Forget();
}

bool SymbolSession::EnsureSymbols(HANDLE process, DWORD pid) {
    if (process_ && pid_ == pid && !reload_) return true;
    Forget();

    KernelHandle owned = Duplicate(process);
    if (!owned) return false;
    SymSetOptions(SYMOPT_UNDNAME | SYMOPT_DEFERRED_LOADS | SYMOPT_LOAD_LINES);
    const std::string searchPath = AnsiFromWide(searchPath_);
    if (!SymInitialize(owned.get(), searchPath.empty() ? nullptr : searchPath.c_str(), TRUE)) {
        return false;
    }
    process_ = std::move(owned);
    pid_ = pid;
    SymRegisterCallback64(process_.get(), AnswerLibrary, 0);
    return true;
}

// A module that the library does not know would not only lack names: its frames could not be
// unwound. One that it takes for another would blame the wrong file. Some debug-help libraries
// refresh their list and know no more than before, so each module is named to them.
void SymbolSession::RefreshModules() {
    std::vector<LoadedModule> now = ReadModules(process_.get());
    // A list that cannot be read is no reason to forget the last one.
    if (now.empty()) return;
    const ModuleChanges changes = CompareModules(modules_, now);
    for (const LoadedModule& module : changes.gone)
        SymUnloadModule64(process_.get(), module.base);
    for (const LoadedModule& module : changes.added) {
        // The library looks for the symbols of what it found by itself wherever the image says.
        if (module.hasRemoteSymbols) SymUnloadModule64(process_.get(), module.base);
        if (!IsKnown(process_.get(), module)) Load(process_.get(), module);
        if (IsOnMostStacks(module)) ReadSymbols(process_.get(), module);
    }
    modules_ = std::move(now);
}

void SymbolSession::Forget() {
    if (process_) runGuarded([&] { SymCleanup(process_.get()); });
    process_.reset();
    modules_.clear();
    pid_ = 0;
    reload_ = false;
}
