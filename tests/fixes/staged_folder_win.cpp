#include "tests/fixes/staged_folder_win.h"

#include <set>
#include <sstream>

#include "base/text.h"
#include "fixes/pinned_folder_win.h"

namespace {

std::wstring parentOf(const std::wstring& path) {
    return path.substr(0, path.rfind(L'\\'));
}

bool isLink(DWORD attributes) {
    return (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

template <typename Visit>
void forEach(const std::wstring& folder, const Visit& visit) {
    WIN32_FIND_DATAW found{};
    const HANDLE search = FindFirstFileW(LongPath(folder + L"\\*").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) return;
    do {
        const std::wstring name = found.cFileName;
        if (name != L"." && name != L"..") visit(name, found);
    } while (FindNextFileW(search, &found));
    FindClose(search);
}

void removeTree(const std::wstring& folder) {
    forEach(folder, [&](const std::wstring& name, const WIN32_FIND_DATAW& found) {
        const std::wstring path = folder + L"\\" + name;
        const bool isFolder = (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        if (isFolder && !isLink(found.dwFileAttributes)) return removeTree(path);
        SetFileAttributesW(LongPath(path).c_str(), FILE_ATTRIBUTE_NORMAL);
        if (!isFolder || !RemoveDirectoryW(LongPath(path).c_str()))
            DeleteFileW(LongPath(path).c_str());
    });
    RemoveDirectoryW(LongPath(folder).c_str());
}

void createFolders(const std::wstring& folder) {
    if (IsThere(folder)) return;
    createFolders(parentOf(folder));
    CreateDirectoryW(LongPath(folder).c_str(), nullptr);
}

// Under Wine the only links are those of the system below.
std::wstring unixPath(const std::wstring& path) {
    using Convert = char*(__cdecl*)(const wchar_t*);
    const auto convert = reinterpret_cast<Convert>(reinterpret_cast<void*>(
        GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "wine_get_unix_file_name")));
    if (convert == nullptr) return L"";
    char* converted = convert(path.c_str());
    if (converted == nullptr) return L"";
    const std::wstring result = wideFromUtf8(converted);
    HeapFree(GetProcessHeap(), 0, converted);
    return result;
}

// A program of the system below is not waited for to its very end.
template <typename Condition>
void waitUntil(const Condition& condition) {
    for (int i = 0; i < 500 && !condition(); ++i)
        Sleep(10);
}

bool makeUnixLink(const std::wstring& link, const std::wstring& target) {
    const std::wstring from = unixPath(target);
    const std::wstring folder = unixPath(parentOf(link));
    if (from.empty() || folder.empty()) return false;
    const std::wstring name = link.substr(link.rfind(L'\\'));
    RunToEnd(L"\"Z:\\bin\\ln\" -s \"" + from + L"\" \"" + folder + L"/" + name.substr(1) + L"\"");
    waitUntil([&] { return IsThere(link); });
    return IsThere(link);
}

}  // namespace

StagedFolder::StagedFolder(const std::wstring& below) {
    static int count = 0;
    std::wstring base = below;
    if (base.empty()) {
        wchar_t temp[MAX_PATH + 1] = L"";
        GetTempPathW(MAX_PATH + 1, temp);
        wchar_t longTemp[MAX_PATH + 1] = L"";
        GetLongPathNameW(temp, longTemp, MAX_PATH + 1);
        base = longTemp;
        while (!base.empty() && base.back() == L'\\')
            base.pop_back();
    }
    path_ =
        base + L"\\mirelo-test-" + decimalUnsigned(GetCurrentProcessId()) + L"-" + decimal(++count);
    createFolders(path_);
}

StagedFolder::~StagedFolder() {
    removeTree(path_);
    if (!IsThere(path_)) return;
    // Under Wine no Windows call removes a link to a folder.
    RunToEnd(L"\"Z:\\bin\\rm\" -rf \"" + unixPath(path_) + L"\"");
    waitUntil([this] { return !IsThere(path_); });
}

bool IsThere(const std::wstring& path) {
    return GetFileAttributesW(LongPath(path).c_str()) != INVALID_FILE_ATTRIBUTES;
}

void WriteStaged(const std::wstring& path, const std::string& contents, DWORD attributes) {
    createFolders(parentOf(path));
    const FileHandle file(CreateFileW(LongPath(path).c_str(), GENERIC_WRITE, 0, nullptr,
                                      CREATE_ALWAYS, attributes, nullptr));
    DWORD written = 0;
    WriteFile(file.get(), contents.data(), static_cast<DWORD>(contents.size()), &written, nullptr);
    std::uint64_t ticks = 132'000'000'000'000'000;
    for (const char c : contents)
        ticks += static_cast<unsigned char>(c) * std::uint64_t{98'765'432'100};
    const FILETIME time = {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
    SetFileTime(file.get(), &time, &time, &time);
}

std::string ReadStaged(const std::wstring& path) {
    const FileHandle file(CreateFileW(LongPath(path).c_str(), GENERIC_READ, FILE_SHARE_READ,
                                      nullptr, OPEN_EXISTING, 0, nullptr));
    std::string contents(1 << 16, '\0');
    DWORD got = 0;
    if (!file || !ReadFile(file.get(), contents.data(), static_cast<DWORD>(contents.size()), &got,
                           nullptr)) {
        return "(cannot be read)";
    }
    contents.resize(got);
    return contents;
}

bool MakeFolderLink(const std::wstring& link, const std::wstring& target) {
    if (CreateSymbolicLinkW(link.c_str(), target.c_str(), SYMBOLIC_LINK_FLAG_DIRECTORY) &&
        IsThere(link)) {
        return true;
    }
    return makeUnixLink(link, target) ||
           RunToEnd(L"cmd.exe /c mklink /j \"" + link + L"\" \"" + target + L"\"") == 0;
}

bool MakeFileLink(const std::wstring& link, const std::wstring& target) {
    if (CreateSymbolicLinkW(link.c_str(), target.c_str(), 0) && IsThere(link)) return true;
    return makeUnixLink(link, target);
}

KernelHandle StartProgram(std::wstring commandLine) {
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION info{};
    if (!CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, CREATE_NO_WINDOW,
                        nullptr, nullptr, &startup, &info)) {
        return {};
    }
    CloseHandle(info.hThread);
    return KernelHandle(info.hProcess);
}

int RunToEnd(std::wstring commandLine) {
    const KernelHandle process = StartProgram(std::move(commandLine));
    DWORD code = static_cast<DWORD>(-1);
    if (process && WaitForSingleObject(process.get(), 60'000) == WAIT_OBJECT_0)
        GetExitCodeProcess(process.get(), &code);
    return static_cast<int>(code);
}

std::map<std::wstring, std::string> SnapshotOf(const std::wstring& folder) {
    std::map<std::wstring, std::string> seen;
    forEach(folder, [&](const std::wstring& name, const WIN32_FIND_DATAW& found) {
        const DWORD attributes = found.dwFileAttributes;
        const bool isFolder = (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        std::ostringstream text;
        text << (isLink(attributes) ? "link " : isFolder ? "folder " : "file ");
        if (!isFolder)
            text << found.ftLastWriteTime.dwHighDateTime << ':'
                 << found.ftLastWriteTime.dwLowDateTime;
        if (!isFolder) text << ' ' << attributes << ' ' << ReadStaged(folder + L"\\" + name);
        seen[name] = text.str();
        if (!isFolder || isLink(attributes)) return;
        for (auto& [path, inner] : SnapshotOf(folder + L"\\" + name))
            seen[name + L"\\" + path] = std::move(inner);
    });
    return seen;
}

std::string DifferenceOf(const std::map<std::wstring, std::string>& now,
                         const std::map<std::wstring, std::string>& before) {
    std::set<std::wstring> paths;
    for (const auto& [path, text] : before)
        if (!now.contains(path) || now.at(path) != text) paths.insert(path);
    for (const auto& [path, text] : now)
        if (!before.contains(path)) paths.insert(path);
    std::string text;
    for (const std::wstring& path : paths)
        text += utf8FromWide(path) + "\n";
    return text;
}
