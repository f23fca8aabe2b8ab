// The one way from a path to what the file functions are given.
#pragma once

#include <string>

/// The path in the extended form (`extendedPath`), whatever its length; one that is relative, or
/// that the system has to tidy first, is made absolute by the system. When the system cannot, the
/// path as it is.
std::wstring longPath(const std::wstring& path);
