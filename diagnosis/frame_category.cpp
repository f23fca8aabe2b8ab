#include "diagnosis/frame_category.h"

#include <iterator>

FrameCategory CategoryFromName(std::string_view name) {
    constexpr std::string_view kNames[] = {
        "plugin", "print", "font", "ole", "cdr_core", "third_party", "system_only",
    };
    for (std::size_t i = 0; i < std::size(kNames); ++i) {
        if (kNames[i] == name) return static_cast<FrameCategory>(i);
    }
    return FrameCategory::unknown;
}
