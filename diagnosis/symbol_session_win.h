// The registration of one target process with the debug-help library.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "base/handle_win.h"
#include "diagnosis/module_list.h"

/// At most one registration at a time, kept from capture to capture of the same process, because
/// its first look-ups load symbols. The library knows a registration by its process handle, so the
/// session owns that handle for as long as the registration lives: neither the handle's value nor
/// the process id can be reused meanwhile. The library is single-threaded; the caller serialises,
/// and calls under `runGuarded`, as the library may crash.
class SymbolSession {
  public:
    SymbolSession() = default;
    SymbolSession(const SymbolSession&) = delete;
    SymbolSession& operator=(const SymbolSession&) = delete;
    ~SymbolSession();

    /// Registers `pid` unless it is registered. `process` is only borrowed; it needs the rights to
    /// query information and read memory. False leaves no registration.
    bool EnsureSymbols(HANDLE process, DWORD pid);

    /// Tells a registration what the process has loaded, unloaded and replaced since. May wait for
    /// files, so it belongs in front of a suspension, as `EnsureSymbols` does.
    void RefreshModules();

    /// Ends the registration.
    void Forget();

    [[nodiscard]] bool isOf(DWORD pid) const { return process_ && pid_ == pid; }

    /// The handle that all symbol calls must use; null without a registration.
    [[nodiscard]] HANDLE process() const { return process_.get(); }
    [[nodiscard]] const std::vector<LoadedModule>& modules() const { return modules_; }

  private:
    KernelHandle process_;
    DWORD pid_ = 0;
    /// What the library knows of.
    std::vector<LoadedModule> modules_;
    /// Asks for a fresh registration at the next capture. A required switch: nothing sets it.
    bool reload_ = false;
    /// Where symbol files are looked for besides the library's own places; empty means nowhere. A
    /// required setting: nothing fills it.
    std::wstring searchPath_;
};
