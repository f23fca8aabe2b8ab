// One running copy of CorelDRAW, as the instance list shows it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/action_host.h"

/// A snapshot: it is not updated when the process exits.
struct CdrInstance {
    std::uint32_t pid = 0;
    /// The thread that owns `mainWindow`; never 0 in a listed instance.
    std::uint32_t mainThreadId = 0;
    /// The first visible (or hung and shown as a copy) top-level window without an owner.
    WindowHandle mainWindow = nullptr;
    /// Full path of the executable; empty if it could not be read.
    std::wstring exePath;
    /// The executable's "ProductVersion"; empty if it could not be read.
    std::wstring version;
};

/// The version as it is shown: "(unknown)" when it could not be read.
std::wstring ShownVersion(const CdrInstance& instance);

/// The instance's row in the list: "PID 4711    v25.0.0.230".
std::wstring InstanceRowText(const CdrInstance& instance);

/// The selected instance; null when the index is negative or past the end.
const CdrInstance* SelectedInstance(const std::vector<CdrInstance>& instances, int selection);

/// The selection after the list was replaced: kept while it names an entry, else the first entry,
/// -1 for an empty list.
int RepairedSelection(int selection, std::size_t instanceCount);
