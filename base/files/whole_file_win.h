// Whole files in and out of memory, by their paths.
#pragma once

#include <windows.h>

#include <cstdint>
#include <new>
#include <string>
#include <string_view>

#include "base/files/file_system.h"
#include "base/handle_win.h"

/// What a Windows error number means for a file.
FileResult resultOfError(DWORD error);

/// The sizes a reader takes, in bytes; a file of any other size is `refused` before memory is asked
/// for.
struct SizeRange {
    std::uint64_t smallest = 0;
    std::uint64_t largest = 0;
};

struct OpenedFile {
    FileHandle handle;
    FileResult result;
    std::uint64_t size = 0;
};

/// Opens a file that others may read at the same time but nobody may have open for writing.
OpenedFile openForReading(const std::wstring& path, SizeRange sizes);

/// Reads from the file's position; `changed` when the file ends before `size` bytes.
FileResult readExactly(HANDLE file, void* buffer, std::uint64_t size);

/// Writes all bytes at the file's position.
FileResult writeAll(HANDLE file, std::string_view bytes);

/// The same, and sees them onto the disk.
FileResult writeFlushed(HANDLE file, std::string_view bytes);

/// Reads the whole file into memory that `contents`, a container of bytes, may already have. Empty
/// after every failure; no memory is a failure, too.
template <typename Container>
FileResult readWholeFile(const std::wstring& path, SizeRange sizes, Container& contents) try {
    contents.clear();
    const OpenedFile file = openForReading(path, sizes);
    if (!file.result.isDone()) return file.result;
    contents.resize(static_cast<std::size_t>(file.size));
    const FileResult result = readExactly(file.handle.get(), contents.data(), file.size);
    if (!result.isDone()) contents.clear();
    return result;
} catch (const std::bad_alloc&) {
    contents.clear();
    return {FileOutcome::refused, ERROR_NOT_ENOUGH_MEMORY};
}

/// Makes `bytes` the contents of a file, new or not: written beside it, on the disk, and renamed
/// over it. After a failure or a kill the file is as it was. The folder must exist;
/// an empty path is `missing`.
FileResult replaceWholeFile(const std::wstring& path, std::string_view bytes);
