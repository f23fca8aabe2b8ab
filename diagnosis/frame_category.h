// Where a suspect frame belongs.
#pragma once

#include <string_view>

/// The numbers are fixed: submissions carry them, and rule documents name the same set by text.
enum class FrameCategory : int {
    plugin = 0,
    print = 1,
    font = 2,
    /// Only ever named by rules, never the outcome of a classification.
    ole = 3,
    cdrCore = 4,
    thirdParty = 5,
    systemOnly = 6,
    unknown = 7,
};

/// The category that a rule document names: "plugin", "print", "font", "ole", "cdr_core",
/// "third_party" or "system_only", case-sensitive; `unknown` for any other text.
FrameCategory CategoryFromName(std::string_view name);
