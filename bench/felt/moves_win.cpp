// Cleanup and restore of many small files, beside a loop that only moves them. The first argument
// names the folder of the files, a second one that of the backups, which may be on another volume.
// Each line of output, as in felt_win: what, milliseconds, what it is compared with, its
// milliseconds, the ratio.
#include <windows.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

#include "base/files/file_system_win.h"
#include "base/handle_win.h"
#include "base/text.h"
#include "fixes/cleanup/cleanup.h"
#include "fixes/cleanup/restore.h"

namespace {

constexpr int kFiles = 5000;
constexpr int kFolders = 10;
constexpr int kRounds = 5;

using Names = std::vector<std::wstring>;

double millisecondsOf(const auto& act) {
    const auto start = std::chrono::steady_clock::now();
    act();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
        .count();
}

void writeFile(const std::wstring& path) {
    const FileHandle file(
        CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
    const std::string contents = utf8FromWide(path);
    DWORD written = 0;
    WriteFile(file.get(), contents.data(), static_cast<DWORD>(contents.size()), &written, nullptr);
}

// Folder by folder; gives the path of the last one.
std::wstring makeFolders(std::wstring base, std::initializer_list<const wchar_t*> names) {
    for (const wchar_t* name : names)
        CreateDirectoryW((base += std::wstring(L"\\") + name).c_str(), nullptr);
    return base;
}

void moveAll(const Names& from, const Names& to) {
    for (std::size_t i = 0; i < from.size(); ++i)
        MoveFileExW(from[i].c_str(), to[i].c_str(), MOVEFILE_COPY_ALLOWED);
}

void report(const char* what, std::vector<double>& ours, std::vector<double>& plain) {
    std::ranges::sort(ours);
    std::ranges::sort(plain);
    const double mine = ours[kRounds / 2], other = plain[kRounds / 2];
    std::printf("%s of %d files, %.0f a second|%.1f|a loop of plain moves|%.1f|%.2f\n", what,
                kFiles, kFiles / mine * 1e3, mine, other, mine / other);
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    if (count < 2) return 2;
    const std::wstring base = arguments[1], home = arguments[count - 1];
    const wchar_t* const suite = L"CorelDRAW Graphics Suite X7";
    const std::wstring cache = makeFolders(base, {L"Corel", suite, L"Draw", L"PreviewCache"});
    // As deep as a backup, since the system walks every path.
    const std::wstring away = makeFolders(home, {L"plain", L"backups", L"moved", L"files", L"there",
                                                 L"Corel", suite, L"Draw", L"PreviewCache"});
    Names here, there;
    for (int i = 0; i < kFiles; ++i) {
        const std::wstring folder = L"\\" + decimal(i % kFolders), name = L"\\" + decimal(i);
        CreateDirectoryW((cache + folder).c_str(), nullptr);
        CreateDirectoryW((away + folder).c_str(), nullptr);
        here.push_back(cache + folder + name + L".png");
        there.push_back(away + folder + name + L".png");
        writeFile(here.back());
    }
    const ActionHost host{
        [](std::wstring) {},
        [](const std::wstring&, const std::wstring&, ConfirmStyle) { return true; },
        [](std::wstring) {}};
    std::vector<double> cleaned, restored, out, back;
    for (int round = 0; round < kRounds; ++round) {
        out.push_back(millisecondsOf([&] { moveAll(here, there); }));
        back.push_back(millisecondsOf([&] { moveAll(there, here); }));
        // With a file system of its own each time, as an action has.
        const auto act = [&](const auto& handler) {
            WindowsFileSystem files({base, home});
            handler(host, {files,
                           {L"", base},
                           L"",
                           {home + L"\\Mirelo", L""},
                           [] { return RunningPrograms{}; },
                           [] {
                               return BackupContext::Now{134ULL << 50, 134ULL << 50};
                           }});
        };
        cleaned.push_back(millisecondsOf([&] { act(CleanUp); }));
        if (GetFileAttributesW(here[0].c_str()) != INVALID_FILE_ATTRIBUTES) return 1;
        restored.push_back(millisecondsOf([&] { act(BringBack); }));
        if (GetFileAttributesW(here[0].c_str()) == INVALID_FILE_ATTRIBUTES) return 1;
    }
    report("cleanup", cleaned, out);
    report("restore", restored, back);
    return 0;
}
