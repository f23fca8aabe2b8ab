// The procedure's files on Windows.
#pragma once

#include <string>

#include "base/bytes.h"
#include "slim/slim_files.h"

/// Reads a file that others may read at the same time but nobody may have open for writing, into
/// memory that `contents` may already have. False, with `contents` empty, for a file of 0 bytes or
/// more than 2 GiB, and when anything fails.
bool readDocument(const std::wstring& path, Bytes& contents);

SlimFiles realSlimFiles();
