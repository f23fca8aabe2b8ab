// A console stand-in for the window: sends a request for each line of its input,
//   PORT METHOD PATH BODY
// to this machine, and prints how long the caller was held, in milliseconds, and the answer's size
// and text. It goes on living, as a window does, until its input ends.
#include <windows.h>

#include <fcntl.h>
#include <io.h>

#include <cstdio>
#include <iostream>
#include <string>

#include "base/text.h"
#include "cloud/https_win.h"

int main() {
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
    HttpsEndpoint endpoint{L"localhost"};
    std::string method, path, body;
    while (std::cin >> endpoint.port >> method >> path && std::cin.ignore() &&
           std::getline(std::cin, body)) {
        const ULONGLONG start = GetTickCount64();
        const std::string answer =
            HttpsRequestTo(endpoint, wideFromUtf8(method), wideFromUtf8(path), body);
        std::cout << GetTickCount64() - start << ' ' << answer.size() << '\n'
                  << answer << std::flush;
    }
    return 0;
}
