#include "fixes/cleanup/backup_folders.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "base/text.h"

namespace {

constexpr std::wstring_view kDateShape = L"dddd-dd-dd_dd-dd-dd";

bool isDigit(wchar_t c) {
    return c >= L'0' && c <= L'9';
}

// What a backup is sorted by: its date, and its number among those of the same date.
using Order = std::pair<std::wstring, unsigned>;

std::optional<Order> orderOf(std::wstring_view name, std::wstring_view kind) {
    if (!name.starts_with(kind)) return std::nullopt;
    name.remove_prefix(kind.size());
    if (name.size() < kDateShape.size()) return std::nullopt;
    for (std::size_t i = 0; i < kDateShape.size(); ++i)
        if (kDateShape[i] == L'd' ? !isDigit(name[i]) : name[i] != kDateShape[i])
            return std::nullopt;
    const std::wstring date(name.substr(0, kDateShape.size()));
    name.remove_prefix(kDateShape.size());
    if (name.empty()) return Order{date, 1};

    constexpr std::size_t kMostDigits = 6;
    if (name[0] != L'-' || name.size() < 2 || name.size() > 1 + kMostDigits) return std::nullopt;
    unsigned number = 0;
    for (const wchar_t c : name.substr(1)) {
        if (!isDigit(c)) return std::nullopt;
        number = number * 10 + static_cast<unsigned>(c - L'0');
    }
    return Order{date, number};
}

}  // namespace

std::wstring BackupsFolder(const std::wstring& home) {
    return home + L"\\backups";
}

BackupListing ListBackups(FileSystem& files, const BackupHomes& homes, std::wstring_view kind) {
    BackupListing listing;
    std::vector<std::pair<Order, std::wstring>> found;
    for (const std::wstring& home : {homes.local, homes.roaming}) {
        if (home.empty()) continue;
        const std::wstring backups = BackupsFolder(home);
        const FolderListing listed = files.list(backups);
        if (!listed.result.isDone() && listed.result.outcome != FileOutcome::missing)
            listing.unreadable.push_back({backups, listed.result});
        for (const FolderEntry& entry : listed.entries) {
            auto order = orderOf(entry.name, kind);
            if (order && entry.type == EntryType::folder)
                found.emplace_back(std::move(*order), backups + L"\\" + entry.name);
        }
    }
    std::ranges::sort(found, std::greater<>());
    for (auto& backup : found)
        listing.folders.push_back(std::move(backup.second));
    return listing;
}

std::wstring NewBackupFolder(FileSystem& files, const BackupHomes& homes, std::wstring_view kind,
                             FileTicks localNow) {
    Order order{datedName(localNow), 1};
    const auto existing = ListBackups(files, homes, kind).folders;
    if (!existing.empty()) {
        const std::wstring& newest = existing.front();
        const auto last = orderOf(std::wstring_view(newest).substr(newest.rfind(L'\\') + 1), kind);
        if (last && *last >= order) order = {last->first, last->second + 1};
    }
    std::wstring path = BackupsFolder(homes.local) + L"\\" + std::wstring(kind) + order.first;
    if (order.second > 1) path += L"-" + decimalUnsigned(order.second);
    return path;
}

FileResult CreateBackupFolder(FileSystem& files, const BackupHomes& homes,
                              const std::wstring& backup) {
    const std::wstring base = parentFolder(homes.local);
    const std::wstring backups = BackupsFolder(homes.local);
    const FileResult result =
        createFolders(files, base, std::wstring_view(backups).substr(base.size() + 1));
    return result.isDone() ? files.createFolder(backup) : result;
}

FilesTotal TotalBelow(FileSystem& files, std::vector<std::wstring> folders) {
    FilesTotal total;
    for (std::size_t i = 0; i < folders.size(); ++i) {
        const std::wstring folder = folders[i];
        for (const FolderEntry& entry : files.list(folder).entries) {
            if (entry.type == EntryType::folder) folders.push_back(folder + L"\\" + entry.name);
            if (entry.type != EntryType::file) continue;
            ++total.files;
            total.bytes += entry.stamp.size;
        }
    }
    return total;
}

bool RemoveEmptiedBackup(FileSystem& files, const std::wstring& backupFolder) {
    const std::wstring inside = backupFolder + L"\\";
    if (!removeEmptyFolders(files, inside + std::wstring(kBackupFilesFolder)).isDone())
        return false;
    const std::wstring list = inside + std::wstring(kManifestName);
    files.remove(list + std::wstring(kUnfinishedSuffix), nullptr);
    files.remove(list, nullptr);
    return files.removeFolder(backupFolder).isDone();
}
