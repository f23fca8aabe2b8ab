// Registry keys as a file that Windows' own tools import: "Windows Registry Editor Version 5.00".
// UTF-16LE with a byte-order mark, lines ending in CR LF, full key names in brackets, one value a
// line, long binary data continued after a backslash.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "fixes/registry_tree.h"

/// The whole file. Text that is plain is written as text, everything else byte by byte in
/// hexadecimal, so that importing gives back exactly these types and bytes.
std::string WriteRegistryExport(const std::vector<RegistryKeyRecord>& keys);

/// Reads what `WriteRegistryExport` writes; nothing for anything else. For the check that a file
/// on the disk says what it was meant to say.
std::optional<std::vector<RegistryKeyRecord>> ReadRegistryExport(std::string_view file);
