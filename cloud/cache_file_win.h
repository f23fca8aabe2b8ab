// The tool's folder, and the last rule document that the signature server sent, kept in it.
#pragma once

#include <string>
#include <string_view>

/// "Mirelo" in the user's roaming application data; empty when Windows does not name that folder.
/// The folder itself may not exist yet.
std::wstring ToolFolderPath();

std::wstring CacheFilePath();

/// The cached bytes; empty when there is no file, or when its size is 0 or 2 MiB or more.
std::string ReadCacheFile();

/// Replaces the file; true only when every byte was written. The folder must exist.
bool WriteCacheFile(std::string_view body);
