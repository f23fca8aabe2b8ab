// The last rule document that the signature server sent.
#pragma once

#include <string>
#include <string_view>

/// "signatures.cache.json" in the tool's folder, whether that exists or not.
std::wstring CacheFilePath();

/// The cached bytes; empty when there is no file, or when its size is 0 or 2 MiB or more.
std::string ReadCacheFile();

/// Replaces the file, and makes its folder before the first; true only when every byte was written.
/// After a failure the old file is as it was.
bool WriteCacheFile(std::string_view body);
