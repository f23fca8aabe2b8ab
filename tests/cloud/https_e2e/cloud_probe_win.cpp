// A console stand-in for the window: sends one request to the server that the test names.
//   mirelo_cloud_probe HOST PORT METHOD PATH BODY-FILE ANSWER-FILE
// Prints how long the caller was held, in milliseconds. "-" as body file means no body.
#include <windows.h>

#include <cstdio>
#include <cwchar>
#include <string>

#include "base/handle_win.h"
#include "cloud/https_win.h"

namespace {

std::string ReadWhole(const wchar_t* path) {
    const FileHandle file(CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                      FILE_ATTRIBUTE_NORMAL, nullptr));
    std::string bytes(file ? GetFileSize(file.get(), nullptr) : 0, '\0');
    DWORD readBytes = 0;
    if (file)
        ReadFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &readBytes, nullptr);
    return bytes;
}

bool WriteWhole(const wchar_t* path, const std::string& bytes) {
    const FileHandle file(CreateFileW(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                      FILE_ATTRIBUTE_NORMAL, nullptr));
    DWORD written = 0;
    return file &&
           WriteFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    if (count != 7) return 2;
    const HttpsEndpoint endpoint{
        arguments[1], static_cast<std::uint16_t>(std::wcstoul(arguments[2], nullptr, 10))};
    const std::string body =
        std::wstring(arguments[5]) == L"-" ? std::string() : ReadWhole(arguments[5]);
    const ULONGLONG start = GetTickCount64();
    const std::string answer = HttpsRequestTo(endpoint, arguments[3], arguments[4], body);
    std::printf("%llu\n", GetTickCount64() - start);
    return WriteWhole(arguments[6], answer) ? 0 : 1;
}
