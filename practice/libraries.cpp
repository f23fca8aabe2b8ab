#include "practice/libraries.h"

#include <iterator>
#include <string>

#include "practice/handshake.h"

namespace {

std::wstring ProgramFolder() {
    wchar_t path[1024] = {};
    const DWORD length = GetModuleFileNameW(nullptr, path, static_cast<DWORD>(std::size(path)));
    const std::wstring_view file(path, length);
    return std::wstring(file.substr(0, file.rfind(L'\\') + 1));
}

}  // namespace

void HangInLibrary(const wchar_t* library, const char* function, Hang& hang) {
    const std::wstring folder = ProgramFolder();
    HMODULE module = LoadLibraryW((folder + library).c_str());
    if (!module) module = LoadLibraryW((folder + L"..\\" + library).c_str());
    if (!module) EndProcess(kExitLibraryMissing);
    const auto entry = reinterpret_cast<HangFunction>(
        reinterpret_cast<void (*)()>(GetProcAddress(module, function)));
    if (!entry) EndProcess(kExitLibraryMissing);
    entry(hang);
}
