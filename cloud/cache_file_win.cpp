#include "cloud/cache_file_win.h"

#include <windows.h>

#include "base/handle_win.h"
#include "base/tool_folder_win.h"

namespace {

constexpr LONGLONG kSizeLimit = 0x200000;

}  // namespace

std::wstring CacheFilePath() {
    return toolFolder() + L"\\signatures.cache.json";
}

std::string ReadCacheFile() {
    const FileHandle file(CreateFileW(CacheFilePath().c_str(), GENERIC_READ, FILE_SHARE_READ,
                                      nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    LARGE_INTEGER size{};
    if (!file || !GetFileSizeEx(file.get(), &size)) return {};
    if (size.QuadPart <= 0 || size.QuadPart >= kSizeLimit) return {};

    std::string body(static_cast<std::size_t>(size.QuadPart), '\0');
    DWORD readBytes = 0;
    if (!ReadFile(file.get(), body.data(), static_cast<DWORD>(body.size()), &readBytes, nullptr))
        return {};
    body.resize(readBytes);
    return body;
}

bool WriteCacheFile(std::string_view body) {
    const FileHandle file(CreateFileW(CacheFilePath().c_str(), GENERIC_WRITE, 0, nullptr,
                                      CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    DWORD writtenBytes = 0;
    return file &&
           WriteFile(file.get(), body.data(), static_cast<DWORD>(body.size()), &writtenBytes,
                     nullptr) &&
           writtenBytes == body.size();
}
