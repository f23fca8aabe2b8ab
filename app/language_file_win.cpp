#include "app/language_file_win.h"

#include <windows.h>

#include <string>

#include "app/language.h"
#include "app/strings.h"
#include "base/files/tool_folder_win.h"
#include "base/files/whole_file_win.h"

namespace {

// Far beyond what the file ever holds; a larger one is not ours.
constexpr SizeRange kConfigSizes = {0, 0x10000};

std::wstring configPath() {
    const std::wstring folder = toolFolder();
    return folder.empty() ? folder : folder + L"\\config.json";
}

std::string readConfig() {
    std::string text;
    readWholeFile(configPath(), kConfigSizes, text);
    return text;
}

}  // namespace

void initLanguage() {
    setLanguage(languageFromConfig(readConfig())
                    .value_or(languageFromIdentifier(GetUserDefaultUILanguage())));
}

void saveLanguage() {
    makeToolFolder();
    replaceWholeFile(configPath(), configOfLanguage(currentLanguage()));
}
