#include "base/files/pinned_folder_win.h"

#include <algorithm>

#include "base/files/long_path_win.h"
#include "base/files/whole_file_win.h"

std::wstring realPathOf(HANDLE handle) {
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
    const std::wstring path = longPath(isBase ? folder + L"\\" : folder);
    // A handle that may list takes part in sharing, one that may only read attributes does not.
    FileHandle handle(CreateFileW(
        path.c_str(), FILE_LIST_DIRECTORY | FILE_READ_ATTRIBUTES,
        FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
        FILE_FLAG_BACKUP_SEMANTICS | (isBase ? 0 : FILE_FLAG_OPEN_REPARSE_POINT), nullptr));
    if (!handle) return resultOfError(GetLastError());
    // By its path as well as by its handle: some systems know links by one of them only.
    FILE_BASIC_INFO info{};
    const DWORD byPath = GetFileAttributesW(path.c_str());
    if (byPath == INVALID_FILE_ATTRIBUTES ||
        !GetFileInformationByHandleEx(handle.get(), FileBasicInfo, &info, sizeof info)) {
        return resultOfError(GetLastError());
    }
    if (!isBase && ((info.FileAttributes | byPath) & FILE_ATTRIBUTE_REPARSE_POINT) != 0)
        return {FileOutcome::link};
    if ((info.FileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0)
        return {FileOutcome::missing, ERROR_DIRECTORY};
    chain_.push_back({std::move(folder), std::move(handle)});
    return {};
}

FileResult PinnedFolder::pin(const std::wstring& base, const std::wstring& folder) {
    if (holds(folder) && chain_.front().path == base) return {};
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
    if (result.isDone()) realPath_ = realPathOf(chain_.back().handle.get());
    return result;
}

bool PinnedFolder::holds(const std::wstring& folder) const {
    return !realPath_.empty() && !chain_.empty() && chain_.back().path == folder;
}

void PinnedFolder::release() {
    chain_.clear();
    realPath_.clear();
}
