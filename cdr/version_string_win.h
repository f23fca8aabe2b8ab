// Strings of a file's version resource.
#pragma once

#include <string>

/// The named string ("ProductVersion", "CompanyName") in the first translation of the file's
/// version resource; empty when the file, the resource, the translation or the string is missing.
/// A file that does not answer within a second has none, and is not asked again until it does.
std::wstring ReadVersionString(const std::wstring& filePath, const std::wstring& valueName);
