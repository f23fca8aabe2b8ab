// Moving one file so that at every instant all of it is at one of two places.
#pragma once

#include <string>

#include "base/files/file_system.h"

/// Moves a file that is still as `stamp` says: by rename on the same volume; across volumes by a
/// copy under the name of `partOf(to)`, a comparison, a rename, and only then the removal. When it
/// fails the file is where it was.
FileResult transferFile(FileSystem& files, const std::wstring& from, const std::wstring& to,
                        const FileStamp& stamp);

/// Clears up after a `transferFile` that was killed. The unfinished copy goes when the original is
/// still there, and becomes `to` when it is the only one left.
void settleTransfer(FileSystem& files, const std::wstring& from, const std::wstring& to,
                    const FileStamp& stamp);

std::wstring partOf(const std::wstring& path);
