// slowfilter.cpg: a plug-in that never finishes its work, asleep or busy.
#include "practice/hang.h"

HANG_EXPORT void ApplySlowFilter(Hang& hang) {
    constexpr DWORD kNapMs = 20;
    SetEvent(hang.inPlace.get());
    while (!hang.isOver)
        Sleep(kNapMs);
}

HANG_EXPORT void ApplyEndlessFilter(Hang& hang) {
    SetEvent(hang.inPlace.get());
    while (!hang.isOver)
        YieldProcessor();
}
