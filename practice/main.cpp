// CorelDRW.exe for practice: looks like a running CorelDRAW and hangs as its argument says.
#include <windows.h>

#include <cstdlib>
#include <span>

#include "practice/handshake.h"
#include "practice/options.h"
#include "practice/system_wait.h"
#include "practice/ways.h"
#include "practice/windows_shown.h"

namespace {

/// One run of the program, from its windows to the end of their message loop.
struct Run {
    const Way& way;
    Handshake& handshake;
    HWND window = nullptr;
    Work hang;       // in the window procedure
    Work afterHang;  // in the window procedure, once messages are pumped again
};

void Show(void* context) {
    Run& run = *static_cast<Run*>(context);
    run.window = ShowWindows(run.way.face, run.way.name);
    run.handshake.watch(GetCurrentThreadId());
}

void HangNow(void* context) {
    Run& run = *static_cast<Run*>(context);
    run.way.hang(run.handshake);
    PostWork(run.window, run.afterHang);
}

void TellReleased(void* context) {
    static_cast<Run*>(context)->handshake.tellReleased();
}

void TellReady(void* context) {
    SetEvent(static_cast<Run*>(context)->handshake.first.inPlace.get());
}

void PumpAfterHang(void* context) {
    const Run& run = *static_cast<Run*>(context);
    PostWork(run.window, run.afterHang);
    RunMessageLoop();
}

}  // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int) {
    Options options;
    const std::span<wchar_t* const> arguments(__wargv, static_cast<std::size_t>(__argc));
    if (!ReadOptions(arguments.subspan(1), options)) return kExitUsage;
    const Way* way = FindWay(options.way);
    if (!way) return kExitUsage;

    Handshake handshake(options);
    Run run = {*way, handshake, nullptr, {}, {}};
    run.hang = {way->hang ? HangNow : TellReady, &run};
    run.afterHang = {TellReleased, &run};
    if (way->onSystemThread) {
        HangInSystemWait({Show, &run}, handshake.first, {PumpAfterHang, &run});
        return 0;
    }
    Show(&run);
    PostWork(run.window, run.hang);
    RunMessageLoop();
    return 0;
}
