#include "fixes/timestamp.h"

namespace {

constexpr FileTicks kTicksPerDay = 86'400 * kTicksPerSecond;
constexpr std::uint64_t kDaysPerEra = 146'097;  // 400 Gregorian years
constexpr std::uint64_t kDaysToMarch1 = 306;    // from 1600-03-01, where an era starts, to 1601
constexpr std::uint64_t kFirstEraYear = 1600;
constexpr std::uint64_t kLastEra = 1000;  // far past the last tick, far below any overflow

struct Date {
    std::uint64_t year;
    std::uint64_t month;
    std::uint64_t day;
};

// Years are counted from March, so that the leap day is the last day of its year: the days before
// a month are then (153 m + 2) / 5 with m = 0 for March.
Date dateOf(std::uint64_t daysSince1601) {
    const std::uint64_t days = daysSince1601 + kDaysToMarch1;
    const std::uint64_t era = days / kDaysPerEra;
    const std::uint64_t dayOfEra = days % kDaysPerEra;
    const std::uint64_t yearOfEra =
        (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const std::uint64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const std::uint64_t shifted = (5 * dayOfYear + 2) / 153;
    const std::uint64_t month = shifted < 10 ? shifted + 3 : shifted - 9;
    return {kFirstEraYear + era * 400 + yearOfEra + (month <= 2 ? 1 : 0), month,
            dayOfYear - (153 * shifted + 2) / 5 + 1};
}

std::uint64_t daysSince1601(const Date& date) {
    const std::uint64_t year = date.year - kFirstEraYear - (date.month <= 2 ? 1 : 0);
    const std::uint64_t yearOfEra = year % 400;
    const std::uint64_t shifted = date.month > 2 ? date.month - 3 : date.month + 9;
    const std::uint64_t dayOfYear = (153 * shifted + 2) / 5 + date.day - 1;
    const std::uint64_t dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return year / 400 * kDaysPerEra + dayOfEra - kDaysToMarch1;
}

template <typename Text>
void appendPadded(Text& text, std::uint64_t number, std::size_t digits) {
    const std::size_t start = text.size();
    for (; digits > 0 || number > 0; number /= 10, digits -= digits > 0 ? 1 : 0)
        text.insert(text.begin() + static_cast<std::ptrdiff_t>(start),
                    static_cast<typename Text::value_type>('0' + number % 10));
}

// "2025<a>01<a>31<b>14<c>05<c>09" with the given separators.
template <typename Text>
Text dateAndTime(FileTicks ticks, const char (&separators)[4]) {
    const Date date = dateOf(ticks / kTicksPerDay);
    const std::uint64_t second = ticks % kTicksPerDay / kTicksPerSecond;
    Text text;
    const auto append = [&](std::uint64_t number, std::size_t digits, char separator) {
        appendPadded(text, number, digits);
        if (separator != '\0') text.push_back(static_cast<typename Text::value_type>(separator));
    };
    append(date.year, 4, separators[0]);
    append(date.month, 2, separators[0]);
    append(date.day, 2, separators[1]);
    append(second / 3600, 2, separators[2]);
    append(second / 60 % 60, 2, separators[2]);
    append(second % 60, 2, '\0');
    return text;
}

// Takes decimal digits up to and including `end`; nothing when anything else stands there.
std::optional<std::uint64_t> takeNumber(std::string_view& text, char end) {
    const std::size_t length = text.find(end);
    if (length == std::string_view::npos || length == 0 || length > 7) return std::nullopt;
    std::uint64_t number = 0;
    for (const char c : text.substr(0, length)) {
        if (c < '0' || c > '9') return std::nullopt;
        number = number * 10 + static_cast<std::uint64_t>(c - '0');
    }
    text.remove_prefix(length + 1);
    return number;
}

}  // namespace

std::string FormatTimestamp(FileTicks utc) {
    auto text = dateAndTime<std::string>(utc, "-T:");
    text.push_back('.');
    appendPadded(text, utc % kTicksPerSecond, 7);
    text.push_back('Z');
    return text;
}

std::optional<FileTicks> ParseTimestamp(std::string_view text) {
    std::string_view rest = text;
    std::uint64_t parts[7];
    for (std::size_t i = 0; i < 7; ++i) {
        const auto part = takeNumber(rest, "--T::.Z"[i]);
        if (!part) return std::nullopt;
        parts[i] = *part;
    }
    const Date date{parts[0], parts[1], parts[2]};
    if (!rest.empty() || date.year <= kFirstEraYear || date.year > kLastEra * 400 ||
        date.month < 1 || date.month > 12 || date.day < 1 || date.day > 31) {
        return std::nullopt;
    }
    const std::uint64_t second = parts[3] * 3600 + parts[4] * 60 + parts[5];
    const FileTicks ticks =
        daysSince1601(date) * kTicksPerDay + second * kTicksPerSecond + parts[6];
    // Writing it again settles everything else: a 31st of June, an hour 25, a missing digit.
    if (FormatTimestamp(ticks) != text) return std::nullopt;
    return ticks;
}

std::wstring DatedName(FileTicks local) {
    return dateAndTime<std::wstring>(local, "-_-");
}
