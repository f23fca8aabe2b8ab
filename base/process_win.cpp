#include "base/process_win.h"

bool hasExited(HANDLE process) {
    DWORD exitCode = 0;
    return GetExitCodeProcess(process, &exitCode) && exitCode != STILL_ACTIVE;
}
