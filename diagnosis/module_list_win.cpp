// Image headers are read from the target's memory (PE format: the debug directory's CodeView entry
// names the symbol file); everything in them may be damaged.
#include "diagnosis/module_list_win.h"

#include <psapi.h>

#include <algorithm>
#include <optional>

namespace {

constexpr DWORD kLongestPath = 32768;
constexpr DWORD kMostDebugEntries = 16;
constexpr DWORD kCodeViewSignature = 0x53445352;  // "RSDS"

template <typename Record>
std::optional<Record> ReadAt(HANDLE process, DWORD64 address) {
    Record record;
    SIZE_T read = 0;
    if (!ReadProcessMemory(process, reinterpret_cast<const void*>(address), &record, sizeof record,
                           &read) ||
        read != sizeof record) {
        return {};
    }
    return record;
}

std::optional<IMAGE_NT_HEADERS64> ReadHeaders(HANDLE process, DWORD64 base) {
    const auto dos = ReadAt<IMAGE_DOS_HEADER>(process, base);
    if (!dos || dos->e_magic != IMAGE_DOS_SIGNATURE || dos->e_lfanew < 0) return {};
    return ReadAt<IMAGE_NT_HEADERS64>(process, base + static_cast<DWORD>(dos->e_lfanew));
}

bool IsRemotePath(const char (&path)[2]) {
    const auto isSlash = [](char c) { return c == '\\' || c == '/'; };
    return isSlash(path[0]) && isSlash(path[1]);
}

bool NamesRemoteSymbols(HANDLE process, DWORD64 base, const IMAGE_NT_HEADERS64& headers) {
    struct CodeView {
        DWORD signature;
        GUID id;
        DWORD age;
        char path[2];
    };
    const auto& directory = headers.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_DEBUG];
    const DWORD count =
        std::min<DWORD>(directory.Size / sizeof(IMAGE_DEBUG_DIRECTORY), kMostDebugEntries);
    for (DWORD i = 0; i < count; ++i) {
        const auto entry = ReadAt<IMAGE_DEBUG_DIRECTORY>(
            process, base + directory.VirtualAddress + i * sizeof(IMAGE_DEBUG_DIRECTORY));
        if (!entry || entry->Type != IMAGE_DEBUG_TYPE_CODEVIEW) continue;
        const auto named = ReadAt<CodeView>(process, base + entry->AddressOfRawData);
        if (named && named->signature == kCodeViewSignature && IsRemotePath(named->path))
            return true;
    }
    return false;
}

std::wstring PathOf(HANDLE process, HMODULE module) {
    for (DWORD room = MAX_PATH; room <= kLongestPath; room *= 2) {
        std::wstring path(room, L'\0');
        const DWORD length = K32GetModuleFileNameExW(process, module, path.data(), room);
        // A full buffer may hold a cut path.
        if (length < room - 1) {
            path.resize(length);
            return path;
        }
    }
    return {};
}

LoadedModule ReadModule(HANDLE process, HMODULE handle) {
    LoadedModule module;
    module.base = reinterpret_cast<DWORD64>(handle);
    module.path = PathOf(process, handle);
    MODULEINFO info{};
    if (K32GetModuleInformation(process, handle, &info, sizeof info))
        module.sizeBytes = info.SizeOfImage;
    if (const auto headers = ReadHeaders(process, module.base)) {
        module.timeStamp = headers->FileHeader.TimeDateStamp;
        module.hasRemoteSymbols = NamesRemoteSymbols(process, module.base, *headers);
    }
    return module;
}

}  // namespace

std::vector<LoadedModule> ReadModules(HANDLE process) {
    // As many as fit; hundreds are usual.
    std::vector<HMODULE> handles(4096);
    DWORD neededBytes = 0;
    if (!K32EnumProcessModules(process, handles.data(),
                               static_cast<DWORD>(handles.size() * sizeof(HMODULE)),
                               &neededBytes)) {
        return {};
    }
    handles.resize(std::min<std::size_t>(handles.size(), neededBytes / sizeof(HMODULE)));
    std::vector<LoadedModule> modules;
    modules.reserve(handles.size());
    for (const HMODULE handle : handles)
        modules.push_back(ReadModule(process, handle));
    return modules;
}
