// deepfilter.cpg: a plug-in that hangs below functions that are named like waiting ones.
#include "practice/hang.h"

HANG_EXPORT void GetMessageForPanel(Hang& hang, int deeper) {
    if (deeper > 1) {
        GetMessageForPanel(hang, deeper - 1);
        return;
    }
    SetEvent(hang.inPlace.get());
    WaitForSingleObject(hang.over.get(), INFINITE);
}

HANG_EXPORT void ApplyNestedFilter(Hang& hang) {
    constexpr int kDepth = 8;
    GetMessageForPanel(hang, kDepth);
}
