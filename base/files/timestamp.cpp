#include "base/files/timestamp.h"

#include <algorithm>
#include <charconv>
#include <chrono>

namespace {

using std::chrono::days;
using std::chrono::sys_days;
using std::chrono::year_month_day;

constexpr sys_days kEpoch{std::chrono::year{1601} / 1 / 1};
constexpr FileTicks kTicksPerDay = 86'400 * kTicksPerSecond;
constexpr FileTicks kLastTick = INT64_MAX;

void append(std::string& text, std::uint64_t number, std::size_t digits) {
    const std::string all = std::to_string(number);
    text.append(digits - std::min(digits, all.size()), '0');
    text += all;
}

// "2025<a>01<a>31<b>14<c>05<c>09" with the given separators.
std::string dateAndTime(FileTicks ticks, const char (&separators)[4]) {
    const year_month_day date{kEpoch + days(ticks / kTicksPerDay)};
    const std::uint64_t second = ticks % kTicksPerDay / kTicksPerSecond;
    std::string text;
    append(text, static_cast<std::uint64_t>(static_cast<int>(date.year())), 4);
    append(text += separators[0], static_cast<unsigned>(date.month()), 2);
    append(text += separators[0], static_cast<unsigned>(date.day()), 2);
    append(text += separators[1], second / 3600, 2);
    append(text += separators[2], second / 60 % 60, 2);
    append(text += separators[2], second % 60, 2);
    return text;
}

}  // namespace

std::string formatTimestamp(FileTicks utc) {
    utc = std::min(utc, kLastTick);
    std::string text = dateAndTime(utc, "-T:");
    append(text += '.', utc % kTicksPerSecond, 7);
    return text += 'Z';
}

std::optional<FileTicks> parseTimestamp(std::string_view text) {
    std::uint32_t parts[7] = {};
    const char* at = text.data();
    const char* const end = at + text.size();
    for (std::size_t i = 0; i < 7; ++i) {
        const auto [next, error] = std::from_chars(at, end, parts[i]);
        if (error != std::errc() || next == end || *next != "--T::.Z"[i]) return std::nullopt;
        at = next + 1;
    }
    const year_month_day date{std::chrono::year{static_cast<int>(parts[0])},
                              std::chrono::month{parts[1]}, std::chrono::day{parts[2]}};
    if (!date.ok() || sys_days{date} < kEpoch) return std::nullopt;
    const auto day = static_cast<FileTicks>((sys_days{date} - kEpoch).count());
    const FileTicks second = FileTicks{parts[3]} * 3600 + FileTicks{parts[4]} * 60 + parts[5];
    const FileTicks ticks = day * kTicksPerDay + second * kTicksPerSecond + parts[6];
    // Writing it again settles everything else: an hour 25, a missing digit, a tail.
    if (formatTimestamp(ticks) != text) return std::nullopt;
    return ticks;
}

std::wstring datedName(FileTicks local) {
    const std::string text = dateAndTime(std::min(local, kLastTick), "-_-");
    return {text.begin(), text.end()};
}
