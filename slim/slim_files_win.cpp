#include "slim/slim_files_win.h"

#include <algorithm>
#include <new>
#include <string_view>

#include "base/files/long_path_win.h"
#include "base/files/whole_file_win.h"
#include "base/handle_win.h"

namespace {

constexpr SizeRange kSizes = {1, 0x80000000};
constexpr ULONGLONG kPatienceMs = 2000;
constexpr DWORD kPauseMs = 50;

// An indexer, a previewer or a sync client has a file open for moments only.
FileHandle openPatiently(const std::wstring& path, DWORD access, DWORD share) {
    const ULONGLONG end = GetTickCount64() + kPatienceMs;
    for (;;) {
        FileHandle file(CreateFileW(path.c_str(), access, share, nullptr, OPEN_EXISTING,
                                    FILE_ATTRIBUTE_NORMAL, nullptr));
        if (file || GetLastError() != ERROR_SHARING_VIOLATION || GetTickCount64() >= end)
            return file;
        Sleep(kPauseMs);
    }
}

std::uint64_t joined(DWORD high, DWORD low) {
    return std::uint64_t{high} << 32 | low;
}

bool readVersion(HANDLE file, FileVersion& version) {
    BY_HANDLE_FILE_INFORMATION facts{};
    if (!GetFileInformationByHandle(file, &facts)) return false;
    version = {facts.dwVolumeSerialNumber, joined(facts.nFileIndexHigh, facts.nFileIndexLow),
               joined(facts.nFileSizeHigh, facts.nFileSizeLow),
               joined(facts.ftLastWriteTime.dwHighDateTime, facts.ftLastWriteTime.dwLowDateTime)};
    return true;
}

bool readDocument(const std::wstring& path, FileImage& image) try {
    image.bytes.clear();
    const OpenedFile file = openForReading(path, kSizes);
    if (!file.result.isDone() || !readVersion(file.handle.get(), image.version)) return false;
    const auto size = static_cast<std::size_t>(file.size);
    image.bytes.reserve(size + size / 4);
    image.bytes.resize(size);
    if (readExactly(file.handle.get(), image.bytes.data(), size).isDone()) return true;
    image.bytes.clear();
    return false;
} catch (const std::bad_alloc&) {
    image.bytes.clear();
    return false;
}

// Opens for flushing, which needs write access; a copy of a read-only file is read-only itself.
FileHandle openForFlush(const std::wstring& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    const bool isReadOnly =
        attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0;
    if (isReadOnly) SetFileAttributesW(path.c_str(), attributes & ~DWORD{FILE_ATTRIBUTE_READONLY});
    FileHandle file = openPatiently(path, GENERIC_WRITE, FILE_SHARE_READ);
    if (isReadOnly) SetFileAttributesW(path.c_str(), attributes);
    return file;
}

bool flushToDisk(const std::wstring& path) {
    const FileHandle file = openForFlush(path);
    return file && FlushFileBuffers(file.get());
}

void discard(const std::wstring& path) {
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
    DeleteFileW(path.c_str());
}

bool copyToDisk(const std::wstring& from, const std::wstring& to) try {
    const std::wstring target = longPath(to);
    if (GetFileAttributesW(target.c_str()) != INVALID_FILE_ATTRIBUTES) return false;
    if (!CopyFileW(longPath(from).c_str(), target.c_str(), TRUE)) {
        if (GetLastError() != ERROR_FILE_EXISTS) discard(target);
        return false;
    }
    if (flushToDisk(target)) return true;
    discard(target);
    return false;
} catch (const std::bad_alloc&) {
    return false;
}

bool seekToStart(HANDLE file) {
    return SetFilePointerEx(file, LARGE_INTEGER{}, nullptr, FILE_BEGIN);
}

std::string_view asText(ByteView bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

// Overwrites in place and cuts off what is left of longer contents: the file keeps its blocks,
// attributes and streams.
bool writeContents(HANDLE file, ByteView contents) {
    if (!seekToStart(file) || !writeAll(file, asText(contents)).isDone()) return false;
    if (!SetEndOfFile(file)) return false;
    return FlushFileBuffers(file);
}

// Nothing was cut off before, so the former blocks are still the file's and a full disk does not
// matter. The time of the last write comes back, too: for everybody else nothing has happened.
void putBack(HANDLE file, const std::wstring& backup, const FileVersion& version) {
    constexpr std::uint64_t kPart = 16 << 10;
    std::uint8_t part[kPart];
    const OpenedFile source = openForReading(backup, kSizes);
    if (!source.result.isDone() || !seekToStart(file)) return;
    for (std::uint64_t left = source.size; left > 0;) {
        const auto size = static_cast<std::size_t>(std::min(left, kPart));
        if (!readExactly(source.handle.get(), part, size).isDone()) return;
        if (!writeAll(file, asText({part, size})).isDone()) return;
        left -= size;
    }
    SetEndOfFile(file);
    const FILETIME modified = {static_cast<DWORD>(version.modified),
                               static_cast<DWORD>(version.modified >> 32)};
    SetFileTime(file, nullptr, nullptr, &modified);
    FlushFileBuffers(file);
}

WriteOutcome overwrite(const std::wstring& path, ByteView contents, const FileVersion& expected,
                       const std::wstring& backup) try {
    FileHandle file = openPatiently(longPath(path), GENERIC_WRITE | FILE_READ_ATTRIBUTES, 0);
    if (!file) return WriteOutcome::failed;
    FileVersion present;
    if (!readVersion(file.get(), present) || present != expected) return WriteOutcome::changed;
    if (!writeContents(file.get(), contents)) {
        if (!backup.empty()) putBack(file.get(), backup, expected);
        return WriteOutcome::failed;
    }
    // A server may tell only now that it could not keep what it took.
    return CloseHandle(file.release()) ? WriteOutcome::written : WriteOutcome::failed;
} catch (const std::bad_alloc&) {
    return WriteOutcome::failed;
}

std::wstring localTimestamp() {
    SYSTEMTIME now;
    GetLocalTime(&now);
    wchar_t text[32];
    const int length = wsprintfW(text, L"%04u%02u%02u_%02u%02u%02u", now.wYear, now.wMonth,
                                 now.wDay, now.wHour, now.wMinute, now.wSecond);
    return std::wstring(text, static_cast<std::size_t>(length));
}

}  // namespace

SlimFiles realSlimFiles() {
    return {readDocument, copyToDisk, overwrite, localTimestamp};
}
