// The windows of the practice program, all on the calling thread, and its message loop.
#pragma once

#include <windows.h>

#include <string>

enum class Face {
    mainWindow,  // helper windows and a main window
    splash,      // helper windows and an owned splash: no window counts as the main one
};

/// Makes the helper windows as the real program has them (hidden, owned and message-only), in front
/// of the window that `face` asks for, and returns that window, shown and painted. When it returns
/// the thread's queue has been quiet for a moment.
HWND ShowWindows(Face face, const std::wstring& way);

/// A piece of work for the window procedure, as a menu command would start it.
struct Work {
    void (*run)(void* context);
    void* context;
};

/// Queues `work`, which must outlive its run, for `window`.
void PostWork(HWND window, const Work& work);

/// Runs until the thread is asked to quit.
void RunMessageLoop();
