#include "base/files/whole_file_win.h"

#include <algorithm>

#include "base/files/long_path_win.h"

namespace {

constexpr DWORD kErrorDiskQuotaExceeded = 1295;  // not in mingw's headers
constexpr std::uint64_t kLargestRead = 1U << 30;
constexpr std::size_t kLargestWrite = 256 << 10;

FileResult lastError() {
    return resultOfError(GetLastError());
}

}  // namespace

FileResult resultOfError(DWORD error) {
    switch (error) {
        case ERROR_SUCCESS:
            return {};
        case ERROR_FILE_NOT_FOUND:
        case ERROR_PATH_NOT_FOUND:
            return {FileOutcome::missing, error};
        case ERROR_FILE_EXISTS:
        case ERROR_ALREADY_EXISTS:
            return {FileOutcome::exists, error};
        case ERROR_SHARING_VIOLATION:
        case ERROR_LOCK_VIOLATION:
        case ERROR_USER_MAPPED_FILE:
            return {FileOutcome::inUse, error};
        case ERROR_NOT_SAME_DEVICE:
            return {FileOutcome::otherVolume, error};
        case ERROR_DISK_FULL:
        case ERROR_HANDLE_DISK_FULL:
        case kErrorDiskQuotaExceeded:
            return {FileOutcome::diskFull, error};
        default:
            return {FileOutcome::refused, error};
    }
}

OpenedFile openForReading(const std::wstring& path, SizeRange sizes) {
    OpenedFile file;
    file.handle = FileHandle(CreateFileW(longPath(path).c_str(), GENERIC_READ, FILE_SHARE_READ,
                                         nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    LARGE_INTEGER size{};
    if (!file.handle || !GetFileSizeEx(file.handle.get(), &size)) {
        file.result = lastError();
        return file;
    }
    file.size = static_cast<std::uint64_t>(size.QuadPart);
    if (file.size < sizes.smallest || file.size > sizes.largest)
        file.result = {FileOutcome::refused, ERROR_FILE_INVALID};
    return file;
}

FileResult readExactly(HANDLE file, void* buffer, std::uint64_t size) {
    auto* to = static_cast<char*>(buffer);
    while (size > 0) {
        DWORD got = 0;
        const auto part = static_cast<DWORD>(std::min(size, kLargestRead));
        if (!ReadFile(file, to, part, &got, nullptr)) return lastError();
        if (got == 0) return {FileOutcome::changed, ERROR_HANDLE_EOF};
        to += got;
        size -= got;
    }
    return {};
}

FileResult writeAll(HANDLE file, std::string_view bytes) {
    while (!bytes.empty()) {
        const auto part = static_cast<DWORD>(std::min(bytes.size(), kLargestWrite));
        DWORD written = 0;
        if (!WriteFile(file, bytes.data(), part, &written, nullptr)) return lastError();
        if (written == 0) return resultOfError(ERROR_DISK_FULL);
        bytes.remove_prefix(written);
    }
    return {};
}

FileResult writeFlushed(HANDLE file, std::string_view bytes) {
    const FileResult result = writeAll(file, bytes);
    if (!result.isDone()) return result;
    return FlushFileBuffers(file) ? FileResult{} : lastError();
}

FileResult replaceWholeFile(const std::wstring& path, std::string_view bytes) try {
    if (path.empty()) return {FileOutcome::missing, ERROR_PATH_NOT_FOUND};
    const std::wstring target = longPath(path);
    const std::wstring unfinished = target + std::wstring(kUnfinishedSuffix);
    FileHandle file(CreateFileW(unfinished.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) return lastError();
    FileResult result = writeFlushed(file.get(), bytes);
    file.reset();
    if (result.isDone() && !MoveFileExW(unfinished.c_str(), target.c_str(),
                                        MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
        result = lastError();
    }
    if (!result.isDone()) DeleteFileW(unfinished.c_str());
    return result;
} catch (const std::bad_alloc&) {
    return {FileOutcome::refused, ERROR_NOT_ENOUGH_MEMORY};
}
