#include "fixes/pinned_folder_win.h"

#include <algorithm>

namespace {

constexpr DWORD kErrorDiskQuotaExceeded = 1295;  // not in mingw's headers

}  // namespace

std::wstring LongPath(const std::wstring& path) {
    if (path.starts_with(LR"(\\?\)")) return path;
    if (path.starts_with(LR"(\\)")) return LR"(\\?\UNC)" + path.substr(1);
    return LR"(\\?\)" + path;
}

FileResult ResultOfError(DWORD error) {
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

std::wstring RealPathOf(HANDLE handle) {
    std::wstring path(MAX_PATH, L'\0');
    for (int attempt = 0; attempt < 2; ++attempt) {
        const DWORD length = GetFinalPathNameByHandleW(
            handle, path.data(), static_cast<DWORD>(path.size()), VOLUME_NAME_DOS);
        if (length == 0) return L"";
        const bool fits = length < path.size();
        path.resize(length);
        if (fits) return path;
    }
    return L"";
}

FileResult PinnedFolder::add(std::wstring folder, bool isBase) {
    // With its backslash the base may also be a drive.
    const std::wstring path = LongPath(folder) + (isBase ? L"\\" : L"");
    // A handle that may list takes part in sharing, one that may only read attributes does not.
    FileHandle handle(CreateFileW(
        path.c_str(), FILE_LIST_DIRECTORY | FILE_READ_ATTRIBUTES,
        FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
        FILE_FLAG_BACKUP_SEMANTICS | (isBase ? 0 : FILE_FLAG_OPEN_REPARSE_POINT), nullptr));
    if (!handle) return ResultOfError(GetLastError());
    // By its path as well as by its handle: some systems know links by one of them only.
    FILE_BASIC_INFO info{};
    const DWORD byPath = GetFileAttributesW(path.c_str());
    if (byPath == INVALID_FILE_ATTRIBUTES ||
        !GetFileInformationByHandleEx(handle.get(), FileBasicInfo, &info, sizeof info)) {
        return ResultOfError(GetLastError());
    }
    if (!isBase && ((info.FileAttributes | byPath) & FILE_ATTRIBUTE_REPARSE_POINT) != 0)
        return {FileOutcome::link};
    if ((info.FileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0)
        return {FileOutcome::missing, ERROR_DIRECTORY};
    chain_.push_back({std::move(folder), std::move(handle)});
    return {};
}

FileResult PinnedFolder::pin(const std::wstring& base, const std::wstring& folder) {
    const auto isOnTheWay = [&](const std::wstring& path) {
        return folder.starts_with(path) &&
               (folder.size() == path.size() || folder[path.size()] == L'\\');
    };
    realPath_.clear();
    while (!chain_.empty() && !isOnTheWay(chain_.back().path))
        chain_.pop_back();
    if (!chain_.empty() && chain_.front().path != base) chain_.clear();

    FileResult result;
    if (chain_.empty()) result = add(base, true);
    for (std::size_t end = 0; result.isDone() && (end = chain_.back().path.size()) < folder.size();)
        result = add(folder.substr(0, folder.find(L'\\', end + 1)), false);
    if (result.isDone()) realPath_ = RealPathOf(chain_.back().handle.get());
    return result;
}

bool PinnedFolder::holds(const std::wstring& folder) const {
    return !chain_.empty() && chain_.back().path == folder;
}

void PinnedFolder::release() {
    chain_.clear();
    realPath_.clear();
}
