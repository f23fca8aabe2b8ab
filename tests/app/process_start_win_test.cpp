#include "app/process_start_win.h"

#include <windows.h>

#include <gtest/gtest.h>

#include "base/handle_win.h"

// With a server in this variable a capture would use the network although the switch is off.
TEST(ProcessStart, NoSymbolServerIsLeft) {
    SetEnvironmentVariableW(L"_NT_SYMBOL_PATH", L"srv*https://symbols.example");
    SetEnvironmentVariableW(L"_NT_ALT_SYMBOL_PATH", L"srv*https://symbols.example");
    forgetSymbolPaths();
    EXPECT_EQ(GetEnvironmentVariableW(L"_NT_SYMBOL_PATH", nullptr, 0), 0U);
    EXPECT_EQ(GetEnvironmentVariableW(L"_NT_ALT_SYMBOL_PATH", nullptr, 0), 0U);
}

TEST(ProcessStart, NoLibraryIsTakenFromBesideTheProgram) {
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    std::wstring planted(path);
    planted.replace(planted.rfind(L'\\') + 1, planted.npos, L"mirelo_planted.dll");
    wchar_t system[MAX_PATH] = {};
    GetSystemDirectoryW(system, MAX_PATH);
    ASSERT_TRUE(
        CopyFileW((std::wstring(system) + L"\\version.dll").c_str(), planted.c_str(), FALSE));
    EXPECT_TRUE(LibraryHandle(LoadLibraryW(L"mirelo_planted.dll")));
    loadLibrariesFromSystemOnly();
    EXPECT_FALSE(LibraryHandle(LoadLibraryW(L"mirelo_planted.dll")));
    EXPECT_TRUE(LibraryHandle(LoadLibraryW(L"version.dll")));
    SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_DEFAULT_DIRS);
    DeleteFileW(planted.c_str());
}
