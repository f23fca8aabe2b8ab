// The command line: CorelDRW.exe WAY [--name NAME] [--ready-file PATH] [--lifetime-s SECONDS]
#pragma once

#include <span>
#include <string>

struct Options {
    std::wstring way;
    std::wstring name;       // of the handshake; empty: nobody can reach the events
    std::wstring readyFile;  // empty: none is written
    unsigned lifetimeS = 600;
};

/// Reads the arguments behind the program's name; false when they are not of the form above.
bool ReadOptions(std::span<wchar_t* const> arguments, Options& options);
