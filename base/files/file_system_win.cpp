// Files are opened with leave for nobody else, so one that anybody has open is told apart before
// anything happens to it, and are renamed and deleted through that same handle.
#include "base/files/file_system_win.h"

#include <algorithm>
#include <cstring>

#include "base/files/long_path_win.h"
#include "base/files/whole_file_win.h"
#include "base/text.h"

namespace {

constexpr DWORD kKeptAttributes = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN |
                                  FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE |
                                  FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;
constexpr std::size_t kBufferSize = 256 << 10;

struct FindTraits {
    using Type = HANDLE;
    static Type invalid() { return INVALID_HANDLE_VALUE; }
    static void close(Type handle) { FindClose(handle); }
};
using FindHandle = UniqueHandle<FindTraits>;

std::uint64_t joined(DWORD high, DWORD low) {
    return (static_cast<std::uint64_t>(high) << 32) | low;
}

// The same members under the same names in what a search and what a path tells.
template <typename Info>
FileStamp stampOf(const Info& info) {
    return {joined(info.nFileSizeHigh, info.nFileSizeLow),
            joined(info.ftCreationTime.dwHighDateTime, info.ftCreationTime.dwLowDateTime),
            joined(info.ftLastWriteTime.dwHighDateTime, info.ftLastWriteTime.dwLowDateTime),
            info.dwFileAttributes & kKeptAttributes};
}

EntryType typeOf(DWORD attributes) {
    if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) return EntryType::link;
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? EntryType::folder : EntryType::file;
}

FileResult lastResult(BOOL isDone) {
    return isDone ? FileResult{} : resultOfError(GetLastError());
}

bool isDots(const wchar_t* name) {
    return std::wcscmp(name, L".") == 0 || std::wcscmp(name, L"..") == 0;
}

std::wstring nameOf(const std::wstring& path) {
    return path.substr(path.rfind(L'\\') + 1);
}

// Reads until the buffer is full or the file ends; false when reading goes wrong.
bool fill(HANDLE file, std::vector<char>& buffer, std::size_t& filled) {
    filled = 0;
    while (filled < buffer.size()) {
        DWORD got = 0;
        const auto room = static_cast<DWORD>(buffer.size() - filled);
        if (!ReadFile(file, buffer.data() + filled, room, &got, nullptr)) return false;
        if (got == 0) return true;
        filled += got;
    }
    return true;
}

FileResult setBasicInfo(HANDLE file, const FileStamp& stamp, DWORD attributes) {
    FILE_BASIC_INFO info{};  // what is 0 stays as it is
    info.CreationTime.QuadPart = static_cast<LONGLONG>(stamp.created);
    info.LastWriteTime.QuadPart = static_cast<LONGLONG>(stamp.modified);
    info.FileAttributes = attributes;
    return lastResult(SetFileInformationByHandle(file, FileBasicInfo, &info, sizeof info));
}

DWORD attributesFor(const FileStamp& stamp) {
    const DWORD kept = stamp.attributes & kKeptAttributes;
    return kept == 0 ? FILE_ATTRIBUTE_NORMAL : kept;
}

FileResult deleteOpened(HANDLE file, const FileStamp& stamp) {
    if ((stamp.attributes & FILE_ATTRIBUTE_READONLY) != 0) {
        const FileResult result = setBasicInfo(file, {}, FILE_ATTRIBUTE_NORMAL);
        if (!result.isDone()) return result;
    }
    FILE_DISPOSITION_INFO info{};
    info.DeleteFile = TRUE;
    const FileResult result =
        lastResult(SetFileInformationByHandle(file, FileDispositionInfo, &info, sizeof info));
    if (!result.isDone()) setBasicInfo(file, {}, attributesFor(stamp));
    return result;
}

FileResult renameOpened(HANDLE file, const std::wstring& to) {
    const std::wstring target = longPath(to);
    const std::size_t nameBytes = target.size() * sizeof(wchar_t);
    std::vector<std::byte> buffer(sizeof(FILE_RENAME_INFO) + nameBytes);
    FILE_RENAME_INFO info{};
    info.FileNameLength = static_cast<DWORD>(nameBytes);
    std::memcpy(buffer.data(), &info, sizeof info);
    std::memcpy(buffer.data() + offsetof(FILE_RENAME_INFO, FileName), target.data(), nameBytes);
    return lastResult(SetFileInformationByHandle(file, FileRenameInfo, buffer.data(),
                                                 static_cast<DWORD>(buffer.size())));
}

}  // namespace

WindowsFileSystem::WindowsFileSystem(std::vector<std::wstring> bases) : bases_(std::move(bases)) {
    std::erase(bases_, L"");
    std::ranges::sort(bases_, std::greater<>(), &std::wstring::size);
}

WindowsFileSystem::Pin WindowsFileSystem::pin(const std::wstring& folder) {
    for (const std::wstring& base : bases_) {
        const bool isBelow = folder.size() == base.size() ||
                             (folder.size() > base.size() && folder[base.size()] == L'\\');
        if (!isBelow || !equalsIgnoringCase(folder.substr(0, base.size()), base)) continue;
        auto slot = std::ranges::find_if(
            pins_, [&](const PinnedFolder& pinned) { return pinned.holds(folder); });
        if (slot == pins_.end()) --slot;
        std::rotate(pins_.begin(), slot, slot + 1);
        return {pins_[0].pin(folder.substr(0, base.size()), folder), pins_.data()};
    }
    return {{FileOutcome::outside}, nullptr};
}

// Opens a plain file, nothing else. Size, times and attributes are asked for by path, which the
// handle and the pinned folders keep what it is: that is the cheaper question. The real path must
// be the one that was asked for: some systems do not show a link to a file as a link.
WindowsFileSystem::Opened WindowsFileSystem::openFile(const std::wstring& path, DWORD access,
                                                      DWORD share) {
    Opened opened;
    const Pin parent = pin(parentFolder(path));
    opened.result = parent.result;
    if (!opened.result.isDone()) return opened;
    opened.handle =
        FileHandle(CreateFileW(longPath(path).c_str(), access | FILE_READ_ATTRIBUTES, share,
                               nullptr, OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
    opened.result = lastResult(static_cast<bool>(opened.handle));
    if (!opened.result.isDone()) return opened;
    const Inspection seen = inspect(path);
    opened.result = seen.result;
    opened.stamp = seen.stamp;
    if (!opened.result.isDone()) return opened;
    const std::wstring realPath = realPathOf(opened.handle.get());
    const bool isElsewhere =
        !realPath.empty() && !parent.folder->realPath().empty() &&
        !equalsIgnoringCase(realPath, parent.folder->realPath() + L"\\" + nameOf(path));
    if (seen.type == EntryType::link || isElsewhere) opened.result = {FileOutcome::link};
    return opened;
}

WindowsFileSystem::Opened WindowsFileSystem::openExpected(const std::wstring& path, DWORD access,
                                                          const FileStamp* expected) {
    Opened opened = openFile(path, access, 0);
    if (opened.result.isDone() && expected != nullptr &&
        (opened.stamp.size != expected->size || opened.stamp.modified != expected->modified)) {
        opened.result = {FileOutcome::changed};
    }
    return opened;
}

FolderListing WindowsFileSystem::list(const std::wstring& folder) {
    FolderListing listing;
    listing.result = pin(folder).result;
    if (!listing.result.isDone()) return listing;
    WIN32_FIND_DATAW found{};
    const std::wstring pattern = longPath(folder) + L"\\*";
    const FindHandle search(FindFirstFileExW(pattern.c_str(), FindExInfoBasic, &found,
                                             FindExSearchNameMatch, nullptr,
                                             FIND_FIRST_EX_LARGE_FETCH));
    BOOL isThere = static_cast<bool>(search);
    while (isThere) {
        if (!isDots(found.cFileName))
            listing.entries.push_back(
                {found.cFileName, typeOf(found.dwFileAttributes), stampOf(found)});
        isThere = FindNextFileW(search.get(), &found);
    }
    if (GetLastError() != ERROR_NO_MORE_FILES) listing.result = lastResult(FALSE);
    return listing;
}

Inspection WindowsFileSystem::inspect(const std::wstring& path) {
    Inspection seen;
    seen.result = pin(parentFolder(path)).result;
    if (!seen.result.isDone()) return seen;
    WIN32_FILE_ATTRIBUTE_DATA data{};
    seen.result =
        lastResult(GetFileAttributesExW(longPath(path).c_str(), GetFileExInfoStandard, &data));
    seen.type = typeOf(data.dwFileAttributes);
    seen.stamp = stampOf(data);
    return seen;
}

FileResult WindowsFileSystem::createFolder(const std::wstring& folder) {
    const FileResult result = pin(parentFolder(folder)).result;
    if (!result.isDone()) return result;
    return lastResult(CreateDirectoryW(longPath(folder).c_str(), nullptr));
}

FileResult WindowsFileSystem::removeFolder(const std::wstring& folder) {
    // The folder itself must not be held, and a link in its place must not go.
    for (PinnedFolder& pinned : pins_)
        pinned.release();
    const Inspection seen = inspect(folder);
    if (!seen.result.isDone()) return seen.result;
    if (seen.type != EntryType::folder) return {FileOutcome::link};
    return lastResult(RemoveDirectoryW(longPath(folder).c_str()));
}

FileResult WindowsFileSystem::writeNew(const std::wstring& path, std::string_view bytes) {
    const FileResult pinned = pin(parentFolder(path)).result;
    if (!pinned.isDone()) return pinned;
    const std::wstring unfinished = longPath(path + std::wstring(kUnfinishedSuffix));
    FileHandle file(CreateFileW(unfinished.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) return lastResult(FALSE);
    FileResult result = writeFlushed(file.get(), bytes);
    file.reset();
    if (result.isDone())
        result = lastResult(
            MoveFileExW(unfinished.c_str(), longPath(path).c_str(), MOVEFILE_WRITE_THROUGH));
    if (!result.isDone()) DeleteFileW(unfinished.c_str());
    return result;
}

std::optional<std::string> WindowsFileSystem::read(const std::wstring& path, std::uint64_t limit) {
    const Opened opened = openFile(path, GENERIC_READ, FILE_SHARE_READ);
    if (!opened.result.isDone()) return std::nullopt;
    std::string bytes(static_cast<std::size_t>(std::min(opened.stamp.size, limit)), '\0');
    if (!readExactly(opened.handle.get(), bytes.data(), bytes.size()).isDone()) return std::nullopt;
    return bytes;
}

FileResult WindowsFileSystem::rename(const std::wstring& from, const std::wstring& to,
                                     const FileStamp* expected) {
    const Opened opened = openExpected(from, DELETE, expected);
    if (!opened.result.isDone()) return opened.result;
    const FileResult result = pin(parentFolder(to)).result;
    return result.isDone() ? renameOpened(opened.handle.get(), to) : result;
}

FileResult WindowsFileSystem::copy(const std::wstring& from, const std::wstring& to,
                                   const FileStamp& expected) {
    // Nobody has it open; from here on others may read it, as the copying itself does.
    Opened opened = openExpected(from, GENERIC_READ, &expected);
    if (!opened.result.isDone()) return opened.result;
    opened.handle.reset();
    opened = openFile(from, GENERIC_READ, FILE_SHARE_READ);
    if (!opened.result.isDone()) return opened.result;
    const FileResult pinned = pin(parentFolder(to)).result;
    if (!pinned.isDone()) return pinned;

    const std::wstring target = longPath(to);
    if (!CopyFileExW(longPath(from).c_str(), target.c_str(), nullptr, nullptr, nullptr,
                     COPY_FILE_FAIL_IF_EXISTS)) {
        return lastResult(FALSE);
    }
    SetFileAttributesW(target.c_str(), FILE_ATTRIBUTE_NORMAL);
    const Opened copied = openFile(to, GENERIC_WRITE, 0);
    if (!copied.result.isDone()) return copied.result;
    // The times go to the disk together with the contents: they tell that the copy is whole.
    const FileResult stamped =
        setBasicInfo(copied.handle.get(), opened.stamp, attributesFor(opened.stamp));
    return stamped.isDone() ? lastResult(FlushFileBuffers(copied.handle.get())) : stamped;
}

FileResult WindowsFileSystem::compare(const std::wstring& left, const std::wstring& right) {
    const Opened a = openFile(left, GENERIC_READ, FILE_SHARE_READ);
    if (!a.result.isDone()) return a.result;
    const Opened b = openFile(right, GENERIC_READ, FILE_SHARE_READ);
    if (!b.result.isDone()) return b.result;
    std::vector<char> leftBytes(kBufferSize), rightBytes(kBufferSize);
    std::size_t leftFilled = leftBytes.size(), rightFilled = 0;
    while (leftFilled == leftBytes.size()) {
        if (!fill(a.handle.get(), leftBytes, leftFilled) ||
            !fill(b.handle.get(), rightBytes, rightFilled)) {
            return lastResult(FALSE);
        }
        if (leftFilled != rightFilled ||
            std::memcmp(leftBytes.data(), rightBytes.data(), leftFilled) != 0) {
            return {FileOutcome::changed};
        }
    }
    return {};
}

FileResult WindowsFileSystem::remove(const std::wstring& path, const FileStamp* expected) {
    const Opened opened = openExpected(path, DELETE | FILE_WRITE_ATTRIBUTES, expected);
    return opened.result.isDone() ? deleteOpened(opened.handle.get(), opened.stamp) : opened.result;
}

FileResult WindowsFileSystem::setStamp(const std::wstring& path, const FileStamp& stamp) {
    const FileResult result = pin(parentFolder(path)).result;
    if (!result.isDone()) return result;
    const Inspection seen = inspect(path);
    if (!seen.result.isDone()) return seen.result;
    if (seen.type == EntryType::link) return {FileOutcome::link};
    const FileHandle handle(
        CreateFileW(longPath(path).c_str(), FILE_WRITE_ATTRIBUTES,
                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                    FILE_FLAG_OPEN_REPARSE_POINT | FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    if (!handle) return lastResult(FALSE);
    return setBasicInfo(
        handle.get(), stamp,
        seen.type == EntryType::file ? attributesFor(stamp) : stamp.attributes & kKeptAttributes);
}
