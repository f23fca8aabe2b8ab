// Paths beyond the 260 characters that Windows' file functions take by default ("Maximum Path
// Length Limitation" in Windows' documentation).
#pragma once

#include <string>
#include <string_view>

/// An absolute path, with backslashes and without "." and "..", in the extended form that lifts
/// the limit and takes every name as it is spelled: "\\?\C:\..." for a drive,
/// "\\?\UNC\server\share\..." for a network path. A path that is already in a "\\?\" or "\\.\"
/// form, or not absolute, is returned as it is.
std::wstring extendedPath(std::wstring_view fullPath);

/// True for what `extendedPath` turns into the extended form as it stands, or leaves in one: no
/// "/", no empty, "." or ".." part.
bool isSpelledInFull(std::wstring_view path);
