// A private folder for one test, real files in it, and links as far as the system can make them.
#pragma once

#include <windows.h>

#include <string>

#include "base/handle_win.h"

/// Made below the folder for temporary files, or below another one; removed with all its contents.
class StagedFolder {
  public:
    explicit StagedFolder(const std::wstring& below = L"");
    ~StagedFolder();
    StagedFolder(const StagedFolder&) = delete;
    StagedFolder& operator=(const StagedFolder&) = delete;

    [[nodiscard]] const std::wstring& path() const { return path_; }

  private:
    std::wstring path_;
};

/// Writes a file and the folders above it; its time of change follows from its contents.
void WriteStaged(const std::wstring& path, const std::string& contents,
                 DWORD attributes = FILE_ATTRIBUTE_ARCHIVE);
std::string ReadStaged(const std::wstring& path);
bool IsThere(const std::wstring& path);

/// A link to a file, or with SYMBOLIC_LINK_FLAG_DIRECTORY to a folder; false where the system
/// cannot make one.
bool MakeLink(const std::wstring& link, const std::wstring& target, DWORD flags);

/// Runs a program to its end and gives its exit code; -1 when it cannot start.
int RunToEnd(std::wstring commandLine);
