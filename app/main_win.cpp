// Process start and the message loop.
#include <windows.h>

#include <cstdlib>

#include "app/dpi_win.h"
#include "app/language_file_win.h"
#include "app/main_window_win.h"
#include "app/process_start_win.h"

int WINAPI wWinMain(HINSTANCE hInstance, HINSTANCE, PWSTR, int) {
    loadLibrariesFromSystemOnly();
    forgetSymbolPaths();
    // A file on an absent disk fails; no box asks for the disk while a target is held.
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX);
    // Nor does the system offer to end a Mirelo that works on an action.
    DisableProcessWindowsGhosting();
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
