// The one thread that the window starts: a download of newer signatures.
#pragma once

#include <windows.h>

#include <memory>

#include "base/handle_win.h"
#include "cloud/services.h"

/// Starts the download unless the network switch is off, and posts `message` to the window when it
/// has stored newer signatures. It begins once the event that is handed back has been set, or a
/// little later by itself; null when nothing was started. Nobody waits for it, and without a thread
/// for it there is no download.
std::shared_ptr<KernelHandle> startBackgroundUpdate(HWND window, UINT message,
                                                    const CloudServices& cloud);
