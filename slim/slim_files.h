// The files of the slimming procedure, as it asks for them.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "base/bytes.h"

/// Which file was read and which contents it had: the number of the volume and of the file on it,
/// and what changes whenever somebody writes it.
struct FileVersion {
    std::uint64_t volume = 0;
    std::uint64_t file = 0;
    std::uint64_t size = 0;
    std::uint64_t modified = 0;

    bool operator==(const FileVersion&) const = default;
};

struct FileImage {
    Bytes bytes;
    FileVersion version;
};

enum class WriteOutcome {
    written,  // on the disk itself
    changed,  // the file is not the one that was read, and was left alone
    failed,
};

/// All members are always set. Paths are absolute or relative as the system takes them, of any
/// length. None throws; a failure is an empty result or false.
struct SlimFiles {
    /// Reads a file of 1 byte to 2 GiB, whole, into memory that `image` may already have; some more
    /// is reserved, for contents that grow. For every other file and every failure false, with
    /// `image.bytes` empty.
    std::function<bool(const std::wstring& path, FileImage& image)> readWhole;
    /// Copies a file to a path where nothing stands yet. True once the copy is on the disk itself;
    /// a copy that failed leaves nothing behind.
    std::function<bool(const std::wstring& from, const std::wstring& to)> copyFile;
    /// Makes `contents` the whole contents of a file that is still as `expected` and that nobody
    /// else has open; one that has it open for moments only is waited for. When writing fails
    /// half-way, the contents of `backup` are put back, if one is named.
    std::function<WriteOutcome(const std::wstring& path, ByteView contents,
                               const FileVersion& expected, const std::wstring& backup)>
        overwrite;
    /// The local time as year, month, day, "_", hours, minutes, seconds: "20240131_142501".
    std::function<std::wstring()> localTimestamp;
};
