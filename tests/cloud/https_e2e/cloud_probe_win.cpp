// A console stand-in for the window: sends one request to the server that the test names.
//   mirelo_cloud_probe HOST PORT METHOD PATH <body >answer
// Says on the error stream how long the caller was held, in milliseconds.
#include <windows.h>

#include <fcntl.h>
#include <io.h>

#include <cstdio>
#include <cwchar>
#include <string>

#include "cloud/https_win.h"

int wmain(int count, wchar_t** arguments) {
    if (count != 5) return 2;
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
    std::string body;
    for (int byte = std::getchar(); byte != EOF; byte = std::getchar())
        body.push_back(static_cast<char>(byte));

    const HttpsEndpoint endpoint{
        arguments[1], static_cast<std::uint16_t>(std::wcstoul(arguments[2], nullptr, 10))};
    const ULONGLONG start = GetTickCount64();
    const std::string answer = HttpsRequestTo(endpoint, arguments[3], arguments[4], body);
    std::fprintf(stderr, "%llu\n", GetTickCount64() - start);
    return std::fwrite(answer.data(), 1, answer.size(), stdout) == answer.size() ? 0 : 1;
}
