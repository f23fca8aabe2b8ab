#include "app/process_start_win.h"

#include <windows.h>

void loadLibrariesFromSystemOnly() {
    SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_SYSTEM32);
}

void forgetSymbolPaths() {
    constexpr const wchar_t* kVariables[] = {L"_NT_SYMBOL_PATH", L"_NT_ALT_SYMBOL_PATH",
                                             L"_NT_ALTERNATE_SYMBOL_PATH"};
    for (const wchar_t* variable : kVariables)
        SetEnvironmentVariableW(variable, nullptr);
}
