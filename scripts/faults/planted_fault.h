// Included before every file of the build that check_faults.py makes.
#pragma once

#include <cstdlib>

/// True when MIRELO_FAULT names this fault.
inline bool plantedFault(int number) {
    static const char* const name = std::getenv("MIRELO_FAULT");
    static const int planted = name == nullptr ? 0 : std::atoi(name);
    return planted == number;
}
