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

std::wstring BackupsFolder(const std::wstring& toolFolder) {
    return toolFolder + L"\\backups";
}

std::vector<std::wstring> ListBackups(FileSystem& files, const std::wstring& toolFolder,
                                      std::wstring_view kind) {
    std::vector<std::pair<Order, std::wstring>> found;
    for (const FolderEntry& entry : files.list(BackupsFolder(toolFolder)).entries) {
        auto order = orderOf(entry.name, kind);
        if (order && entry.type == EntryType::folder)
            found.emplace_back(std::move(*order), entry.name);
    }
    std::ranges::sort(found, std::greater<>());
    std::vector<std::wstring> names;
    for (auto& backup : found)
        names.push_back(std::move(backup.second));
    return names;
}

std::wstring NewBackupFolder(FileSystem& files, const std::wstring& toolFolder,
                             std::wstring_view kind, FileTicks localNow) {
    Order order{datedName(localNow), 1};
    const auto existing = ListBackups(files, toolFolder, kind);
    if (!existing.empty()) {
        const auto newest = orderOf(existing.front(), kind);
        if (newest && *newest >= order) order = {newest->first, newest->second + 1};
    }
    std::wstring path = BackupsFolder(toolFolder) + L"\\" + std::wstring(kind) + order.first;
    if (order.second > 1) path += L"-" + decimalUnsigned(order.second);
    return path;
}

FileResult CreateBackupFolder(FileSystem& files, const std::wstring& toolFolder,
                              const std::wstring& backup) {
    const std::wstring base = parentFolder(toolFolder);
    const std::wstring backups = BackupsFolder(toolFolder);
    const FileResult result =
        createFolders(files, base, std::wstring_view(backups).substr(base.size() + 1));
    return result.isDone() ? files.createFolder(backup) : result;
}
