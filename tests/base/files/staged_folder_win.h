// A private folder for one test, real files in it, and links as far as the system can make them.
#pragma once

#include <windows.h>

#include <cstdlib>
#include <string>

#include "base/files/file_system.h"
#include "base/files/long_path_win.h"
#include "base/handle_win.h"
#include "base/text.h"

inline bool IsThere(const std::wstring& path) {
    return GetFileAttributesW(longPath(path).c_str()) != INVALID_FILE_ATTRIBUTES;
}

inline void CreateStagedFolders(const std::wstring& folder) {
    if (IsThere(folder)) return;
    CreateStagedFolders(parentFolder(folder));
    CreateDirectoryW(longPath(folder).c_str(), nullptr);
}

/// Writes a file and the folders above it; its time of change follows from its contents.
inline void WriteStaged(const std::wstring& path, const std::string& contents,
                        DWORD attributes = FILE_ATTRIBUTE_ARCHIVE) {
    CreateStagedFolders(parentFolder(path));
    const FileHandle file(CreateFileW(longPath(path).c_str(), GENERIC_WRITE, 0, nullptr,
                                      CREATE_ALWAYS, attributes, nullptr));
    DWORD written = 0;
    WriteFile(file.get(), contents.data(), static_cast<DWORD>(contents.size()), &written, nullptr);
    std::uint64_t ticks = 132'000'000'000'000'000;
    for (const char c : contents)
        ticks += static_cast<unsigned char>(c) * std::uint64_t{98'765'432'100};
    const FILETIME time = {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
    SetFileTime(file.get(), &time, &time, &time);
}

inline std::string ReadStaged(const std::wstring& path) {
    const FileHandle file(CreateFileW(longPath(path).c_str(), GENERIC_READ, FILE_SHARE_READ,
                                      nullptr, OPEN_EXISTING, 0, nullptr));
    std::string contents(1 << 16, '\0');
    DWORD got = 0;
    ReadFile(file.get(), contents.data(), static_cast<DWORD>(contents.size()), &got, nullptr);
    contents.resize(got);
    return contents;
}

/// A path as the system below Wine knows it; empty on Windows.
inline std::string UnixPath(const std::wstring& path) {
    using Convert = char*(__cdecl*)(const wchar_t*);
    const auto convert = reinterpret_cast<Convert>(reinterpret_cast<void*>(
        GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "wine_get_unix_file_name")));
    return convert == nullptr ? "" : convert(path.c_str());
}

/// Runs a program of the system below until it has had its effect. Nobody can wait for it: it has
/// no handles, and what Wine leaves in their place must not be closed.
inline bool RunBelow(const std::string& command, const std::wstring& path, bool isThereAfter) {
    std::wstring commandLine = L"Z:\\bin\\" + wideFromUtf8(command);
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION nothing{};
    CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, CREATE_NO_WINDOW, nullptr,
                   nullptr, &startup, &nothing);
    for (int i = 0; i < 500 && IsThere(path) != isThereAfter; ++i)
        Sleep(10);
    return IsThere(path) == isThereAfter;
}

/// A link to a file, or with SYMBOLIC_LINK_FLAG_DIRECTORY to a folder. Under Wine the only links
/// are those of the system below.
inline bool MakeLink(const std::wstring& link, const std::wstring& target, DWORD flags) {
    if (CreateSymbolicLinkW(link.c_str(), target.c_str(), flags) && IsThere(link)) return true;
    const std::string at =
        UnixPath(parentFolder(link)) + "/" + utf8FromWide(link.substr(link.rfind(L'\\') + 1));
    return RunBelow("ln -s \"" + UnixPath(target) + "\" \"" + at + "\"", link, true);
}

/// Made below the folder for temporary files, or below another one; removed with all its contents.
class StagedFolder {
  public:
    explicit StagedFolder(const std::wstring& below = L"") {
        static int count = 0;
        wchar_t temp[MAX_PATH + 1] = L"", longTemp[MAX_PATH + 1] = L"";
        GetTempPathW(MAX_PATH + 1, temp);
        GetLongPathNameW(temp, longTemp, MAX_PATH + 1);
        path_ = (below.empty() ? parentFolder(longTemp) : below) + L"\\mirelo-test-" +
                decimalUnsigned(GetCurrentProcessId()) + L"-" + decimal(++count);
        CreateStagedFolders(path_);
    }
    // Under Wine no Windows call removes a link to a folder.
    ~StagedFolder() {
        const std::string below = UnixPath(path_);
        if (below.empty())
            _wsystem((L"rmdir /s /q \"" + path_ + L"\"").c_str());
        else
            RunBelow("rm -rf \"" + below + "\"", path_, false);
    }
    StagedFolder(const StagedFolder&) = delete;
    StagedFolder& operator=(const StagedFolder&) = delete;

    [[nodiscard]] const std::wstring& path() const { return path_; }

  private:
    std::wstring path_;
};
