// Process start and the message loop.
#include <windows.h>

#include <cstdlib>

#include "app/dpi_win.h"
#include "app/language_file_win.h"
#include "app/main_window_win.h"

int WINAPI wWinMain(HINSTANCE hInstance, HINSTANCE, PWSTR, int) {
    initLanguage();
    makeDpiAware();
    MainWindow window;
    createMainWindow(hInstance, window);

    MSG message{};
    while (GetMessageW(&message, nullptr, 0, 0)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    // The start-up download may still run: nothing that it uses is to be destroyed under it.
    std::_Exit(0);
}
