// A library whose one exported function waits. The build makes several of it, each with its own
// file name and its own name for the function, PRACTICE_FUNCTION.
#include "practice/hang.h"

HANG_EXPORT void PRACTICE_FUNCTION(Hang& hang) {
    SetEvent(hang.inPlace.get());
    WaitForSingleObject(hang.over.get(), INFINITE);
}
