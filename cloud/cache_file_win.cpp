#include "cloud/cache_file_win.h"

#include "base/files/tool_folder_win.h"
#include "base/files/whole_file_win.h"

namespace {

constexpr SizeRange kSizes = {1, 0x200000 - 1};

}  // namespace

std::wstring CacheFilePath() {
    return toolFolder() + L"\\signatures.cache.json";
}

std::string ReadCacheFile() {
    std::string body;
    readWholeFile(CacheFilePath(), kSizes, body);
    return body;
}

bool WriteCacheFile(std::string_view body) {
    makeToolFolder();
    return replaceWholeFile(CacheFilePath(), body).isDone();
}
