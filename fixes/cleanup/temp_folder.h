// Whether the folder that a variable names is one of temporary files. Anybody can set the variable
// to anything, and a folder "Corel" in a place like that may be somebody's own.
#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Absolute, long names, no backslash at the end; empty ones are not known.
struct ReservedFolders {
    /// The profile, the application data, documents: neither they nor any folder around them.
    std::vector<std::wstring> users;
    /// Windows and the programs: nor any folder inside them.
    std::vector<std::wstring> systems;
};

/// Why `folder` is not taken for one of temporary files, to stand after its name; empty when it
/// is. That needs its name, too: "Temp" or "Tmp", also with a number or as the end of a longer
/// name, or a number inside such a folder.
std::wstring WhyNotTemporary(std::wstring_view folder, const ReservedFolders& reserved);
