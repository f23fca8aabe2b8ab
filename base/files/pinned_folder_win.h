// A folder that nobody can swap for a link while files go in or out.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "base/files/file_system.h"
#include "base/handle_win.h"

/// Every folder from `base` down to a folder, each held open without leave to rename or delete it
/// and none of them a link. What stands above `base` is the system's own affair. A killed process
/// lets go of everything.
class PinnedFolder {
  public:
    /// Pins `folder`, which must be `base` or lie below it.
    /// Keeps what it holds of the way when it is near the last one.
    FileResult pin(const std::wstring& base, const std::wstring& folder);
    void release();

    /// True when `folder` was the last one and is pinned.
    [[nodiscard]] bool holds(const std::wstring& folder) const;
    /// The folder's real path as the system spells it; empty when it cannot tell.
    [[nodiscard]] const std::wstring& realPath() const { return realPath_; }

  private:
    struct Link {
        std::wstring path;
        FileHandle handle;
    };
    FileResult add(std::wstring folder, bool isBase);

    std::wstring realPath_;
    std::vector<Link> chain_;
};

/// The path of an open file or folder as the system spells it; empty when it cannot tell.
std::wstring realPathOf(HANDLE handle);
