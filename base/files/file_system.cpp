#include "base/files/file_system.h"

#include "base/text.h"

std::wstring reasonText(const FileResult& result) {
    std::wstring text;
    switch (result.outcome) {
        case FileOutcome::done:
            return L"done";
        case FileOutcome::missing:
            return L"it is no longer there";
        case FileOutcome::exists:
            text = L"the name is taken";
            break;
        case FileOutcome::inUse:
            return L"it is in use";
        case FileOutcome::changed:
            return L"it has changed meanwhile";
        case FileOutcome::link:
            return L"a link stands on the way to it";
        case FileOutcome::outside:
            return L"it is not in one of the known folders";
        case FileOutcome::otherVolume:
            return L"it is on another disk";
        case FileOutcome::diskFull:
            text = L"the disk is full";
            break;
        case FileOutcome::refused:
            text = L"Windows refused it";
            break;
    }
    if (result.error != 0) text += L" (error " + decimalUnsigned(result.error) + L")";
    return text;
}

FileResult createFolders(FileSystem& files, const std::wstring& base, std::wstring_view relative) {
    const Inspection whole = files.inspect(base + L"\\" + std::wstring(relative));
    if (whole.result.isDone() && whole.type == EntryType::folder) return {};
    for (std::size_t end = 0; end < relative.size();) {
        end = std::min(relative.find(L'\\', end + 1), relative.size());
        const std::wstring folder = base + L"\\" + std::wstring(relative.substr(0, end));
        const FileResult result = files.createFolder(folder);
        if (result.isDone()) continue;
        const Inspection there = files.inspect(folder);
        if (!there.result.isDone()) return result;
        if (there.type == EntryType::link) return {FileOutcome::link};
        if (there.type == EntryType::file) return {FileOutcome::exists};
    }
    return {};
}

FileResult removeEmptyFolders(FileSystem& files, const std::wstring& folder) {
    // Every folder is found before the folders inside it, so the way back is from the inside out.
    std::vector<std::wstring> folders = {folder};
    for (std::size_t i = 0; i < folders.size(); ++i) {
        for (const FolderEntry& entry : files.list(folders[i]).entries)
            if (entry.type == EntryType::folder) folders.push_back(folders[i] + L"\\" + entry.name);
    }
    FileResult last;
    for (; !folders.empty(); folders.pop_back()) {
        const FileResult result = files.removeFolder(folders.back());
        last = result.outcome == FileOutcome::missing ? FileResult{} : result;
    }
    return last;
}

std::wstring parentFolder(std::wstring_view path) {
    const std::size_t slash = path.rfind(L'\\');
    return std::wstring(path.substr(0, slash == std::wstring_view::npos ? 0 : slash));
}
