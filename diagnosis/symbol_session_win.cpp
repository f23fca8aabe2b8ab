#include "diagnosis/symbol_session_win.h"

#include <dbghelp.h>
#include <psapi.h>

#include <algorithm>
#include <vector>

namespace {

std::string AnsiFromWide(const std::wstring& wide) {
    const int wideLength = static_cast<int>(wide.size());
    const int length =
        WideCharToMultiByte(CP_ACP, 0, wide.c_str(), wideLength, nullptr, 0, nullptr, nullptr);
    std::string ansi(static_cast<std::size_t>(length), '\0');
    WideCharToMultiByte(CP_ACP, 0, wide.c_str(), wideLength, ansi.data(), length, nullptr, nullptr);
    return ansi;
}

// Module bases of the process, as many as fit; hundreds are usual.
std::vector<HMODULE> ModulesOf(HANDLE process) {
    std::vector<HMODULE> modules(2048);
    DWORD neededBytes = 0;
    if (!K32EnumProcessModules(process, modules.data(),
                               static_cast<DWORD>(modules.size() * sizeof(HMODULE)),
                               &neededBytes)) {
        return {};
    }
    modules.resize(std::min<std::size_t>(modules.size(), neededBytes / sizeof(HMODULE)));
    return modules;
}

void LoadModule(HANDLE process, HMODULE module) {
    MODULEINFO info{};
    wchar_t path[MAX_PATH] = {};
    if (!K32GetModuleInformation(process, module, &info, sizeof info) ||
        K32GetModuleFileNameExW(process, module, path, MAX_PATH) == 0) {
        return;
    }
    SymLoadModuleExW(process, nullptr, path, nullptr, reinterpret_cast<DWORD64>(info.lpBaseOfDll),
                     info.SizeOfImage, nullptr, 0);
}

// A module loaded since the registration would not only lack names: its frames could not be
// unwound. Some debug-help libraries report a refresh and know no more than before, so what is
// still unknown is added one by one.
void RefreshModules(HANDLE process) {
    SymRefreshModuleList(process);
    for (const HMODULE module : ModulesOf(process)) {
        if (SymGetModuleBase64(process, reinterpret_cast<DWORD64>(module)) == 0) {
            LoadModule(process, module);
        }
    }
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
    if (process_ && pid_ == pid && !reload_) {
        RefreshModules(process_.get());
        return true;
    }
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
    return true;
}

void SymbolSession::Forget() {
    if (process_) SymCleanup(process_.get());
    process_.reset();
    pid_ = 0;
    reload_ = false;
}
