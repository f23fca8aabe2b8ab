#include "slim/slim_files_win.h"

#include "base/files/long_path_win.h"
#include "base/files/whole_file_win.h"
#include "base/handle_win.h"

namespace {

constexpr SizeRange kSizes = {1, 0x80000000};

FileHandle openFile(const std::wstring& path, DWORD access, DWORD share, DWORD disposition) {
    return FileHandle(CreateFileW(path.c_str(), access, share, nullptr, disposition,
                                  FILE_ATTRIBUTE_NORMAL, nullptr));
}

// Opens for flushing, which needs write access; a copy of a read-only file is read-only itself.
FileHandle openForFlush(const std::wstring& path) {
    FileHandle file = openFile(path, GENERIC_WRITE, FILE_SHARE_READ, OPEN_EXISTING);
    if (file) return file;
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || !(attributes & FILE_ATTRIBUTE_READONLY))
        return file;
    SetFileAttributesW(path.c_str(), attributes & ~DWORD{FILE_ATTRIBUTE_READONLY});
    file = openFile(path, GENERIC_WRITE, FILE_SHARE_READ, OPEN_EXISTING);
    SetFileAttributesW(path.c_str(), attributes);
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

// Overwrites in place and cuts off what is left of longer contents: the file keeps its blocks,
// attributes and streams.
bool writeWholeFile(const std::wstring& path, ByteView contents) try {
    if (contents.size() > MAXDWORD) return false;
    const FileHandle file = openFile(longPath(path), GENERIC_WRITE, 0, OPEN_ALWAYS);
    if (!file) return false;
    const auto size = static_cast<DWORD>(contents.size());
    DWORD written = 0;
    return WriteFile(file.get(), contents.data(), size, &written, nullptr) && written == size &&
           SetEndOfFile(file.get());
} catch (const std::bad_alloc&) {
    return false;
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

bool readDocument(const std::wstring& path, Bytes& contents) {
    return readWholeFile(path, kSizes, contents).isDone();
}

SlimFiles realSlimFiles() {
    return {readDocument, copyToDisk, writeWholeFile, localTimestamp};
}
