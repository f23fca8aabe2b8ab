#include "app/language_file_win.h"

#include <windows.h>

#include <string>

#include "app/language.h"
#include "app/strings.h"
#include "base/handle_win.h"
#include "base/tool_folder_win.h"

namespace {

// Far beyond what the file ever holds; the rest of a larger file is not read.
constexpr DWORD kLongestConfig = 4096;

std::wstring configPath() {
    const std::wstring folder = toolFolder();
    return folder.empty() ? folder : folder + L"\\config.json";
}

std::string readConfig() {
    const FileHandle file(CreateFileW(configPath().c_str(), GENERIC_READ,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                                      FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) return {};
    std::string text(kLongestConfig, '\0');
    DWORD length = 0;
    if (!ReadFile(file.get(), text.data(), kLongestConfig, &length, nullptr)) return {};
    text.resize(length);
    return text;
}

}  // namespace

void initLanguage() {
    setLanguage(languageFromConfig(readConfig())
                    .value_or(languageFromIdentifier(GetUserDefaultUILanguage())));
}

void saveLanguage() {
    const std::wstring path = configPath();
    CreateDirectoryW(path.substr(0, path.find_last_of(L'\\')).c_str(), nullptr);
    const FileHandle file(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                      FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) return;
    const std::string text = configOfLanguage(currentLanguage());
    DWORD written = 0;
    WriteFile(file.get(), text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
}
