#pragma once

#include "diagnosis/stack_frame.h"

inline StackFrame Frame(const wchar_t* module, const wchar_t* function = L"",
                        const wchar_t* path = L"") {
    StackFrame frame;
    frame.moduleName = module;
    frame.function = function;
    frame.imagePath = path;
    return frame;
}
