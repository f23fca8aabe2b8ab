// A console stand-in for the window: sends one request to the server that the test names.
//   mirelo_cloud_probe HOST PORT METHOD PATH [BODY]
// Prints how long the caller was held, in milliseconds, and the answer behind a line feed; then
// goes on living, as a window does, until its input ends.
#include <windows.h>

#include <fcntl.h>
#include <io.h>

#include <cstdio>
#include <cwchar>
#include <string>

#include "base/text.h"
#include "cloud/https_win.h"

int wmain(int count, wchar_t** arguments) {
    if (count < 5) return 2;
    _setmode(_fileno(stdout), _O_BINARY);
    const HttpsEndpoint endpoint{
        arguments[1], static_cast<std::uint16_t>(std::wcstoul(arguments[2], nullptr, 10))};
    const std::string body = count > 5 ? utf8FromWide(arguments[5]) : std::string();
    const ULONGLONG start = GetTickCount64();
    const std::string answer = HttpsRequestTo(endpoint, arguments[3], arguments[4], body);
    std::printf("%llu %zu\n", GetTickCount64() - start, answer.size());
    std::fwrite(answer.data(), 1, answer.size(), stdout);
    std::fflush(stdout);
    while (std::getchar() != EOF) {
    }
    return 0;
}
