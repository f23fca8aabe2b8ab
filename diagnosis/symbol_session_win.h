// The registration of one target process with the debug-help library.
#pragma once

#include <windows.h>

#include <string>

#include "base/handle_win.h"

/// At most one registration at a time, kept from capture to capture of the same process, because
/// its first look-ups load symbols. The library knows a registration by its process handle, so the
/// session owns that handle for as long as the registration lives: neither the handle's value nor
/// the process id can be reused meanwhile. The library is single-threaded; the caller serialises.
class SymbolSession {
  public:
    SymbolSession() = default;
    SymbolSession(const SymbolSession&) = delete;
    SymbolSession& operator=(const SymbolSession&) = delete;
    ~SymbolSession();

    /// Registers `pid`, or brings the module list of its registration up to date. `process` is only
    /// borrowed; it needs the rights to query information and read memory. False leaves none.
    bool EnsureSymbols(HANDLE process, DWORD pid);

    /// The handle that all symbol calls must use; null without a registration.
    [[nodiscard]] HANDLE process() const { return process_.get(); }

  private:
    void Forget();

    KernelHandle process_;
    DWORD pid_ = 0;
    /// Asks for a fresh registration at the next capture.
    bool reload_ = false;
    /// Where symbol files are looked for besides the library's own places; empty means nowhere.
    std::wstring searchPath_;
};
