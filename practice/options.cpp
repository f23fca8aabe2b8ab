#include "practice/options.h"

#include <cwchar>
#include <string_view>

bool ReadOptions(std::span<wchar_t* const> arguments, Options& options) {
    if (arguments.size() % 2 == 0) return false;
    options.way = arguments[0];
    for (std::size_t i = 1; i < arguments.size(); i += 2) {
        const std::wstring_view option = arguments[i];
        const wchar_t* value = arguments[i + 1];
        if (option == L"--name") {
            options.name = value;
        } else if (option == L"--ready-file") {
            options.readyFile = value;
        } else if (option == L"--lifetime-s") {
            wchar_t* end = nullptr;
            options.lifetimeS = static_cast<unsigned>(std::wcstoul(value, &end, 10));
            if (end == value || *end != L'\0') return false;
        } else {
            return false;
        }
    }
    return true;
}
