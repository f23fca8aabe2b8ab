// The files of the slimming procedure, as it asks for them.
#pragma once

#include <functional>
#include <string>

#include "base/bytes.h"

/// All members are always set. Paths are absolute or relative as the system takes them, of any
/// length. None throws; a failure is an empty result or false.
struct SlimFiles {
    /// Reads a file of 1 byte to 2 GiB, whole, into memory that `contents` may already have. For
    /// every other file and every failure false, with `contents` empty.
    std::function<bool(const std::wstring& path, Bytes& contents)> readWhole;
    /// Copies a file to a path where nothing stands yet. True once the copy is on the disk itself;
    /// a copy that failed leaves nothing behind.
    std::function<bool(const std::wstring& from, const std::wstring& to)> copyFile;
    /// Makes `contents` the whole contents of a file that nobody else has open. After a failure
    /// the file may hold anything.
    std::function<bool(const std::wstring& path, ByteView contents)> writeWhole;
    /// The local time as year, month, day, "_", hours, minutes, seconds: "20240131_142501".
    std::function<std::wstring()> localTimestamp;
};
