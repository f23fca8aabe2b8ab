// Figures as people read them.
#pragma once

#include <cstdint>
#include <string>

/// "812 bytes", "12.3 KB", "45.2 MB", "1.5 GB": powers of 1024, rounded down to one decimal, the
/// same in every locale.
std::wstring sizeText(std::uint64_t bytes);

/// "1 file", "12 files".
std::wstring fileCountText(std::uint64_t count);
