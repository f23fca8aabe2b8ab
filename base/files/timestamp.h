// Moments in the file system's own unit, and how they are written down.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Steps of 100 ns since the start of 1601, as `FILETIME` counts them; UTC unless a name says
/// otherwise. A file system's own times are signed, so none is past `INT64_MAX`.
using FileTicks = std::uint64_t;

inline constexpr FileTicks kTicksPerSecond = 10'000'000;

/// ISO 8601 to the last tick: "2025-01-31T14:05:09.1234567Z". Nothing is lost; what is no file's
/// time becomes the last one.
std::string formatTimestamp(FileTicks utc);

/// The exact opposite of `formatTimestamp`; nothing for any other text.
std::optional<FileTicks> parseTimestamp(std::string_view text);

/// For file and folder names: "2025-01-31_14-05-09".
std::wstring datedName(FileTicks local);
