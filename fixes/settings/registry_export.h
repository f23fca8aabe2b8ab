// Registry keys as a file that Windows' own tools import: "Windows Registry Editor Version 5.00".
// UTF-16LE with a byte-order mark, lines ending in CR LF, full key names in brackets, one value a
// line, long binary data continued after a backslash.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "fixes/settings/registry.h"

/// The whole file. Text that is plain is written as text, everything else byte by byte in
/// hexadecimal, so that importing gives back exactly these types and bytes. Nothing when a key has
/// a line break in its name, which no such file can hold.
std::optional<std::string> WriteRegistryExport(const std::vector<RegistryKeyRecord>& keys);
