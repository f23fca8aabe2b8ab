#include "fixes/cleanup/user_work.h"

#include <algorithm>
#include <span>

#include "base/wildcard.h"

namespace {

constexpr std::wstring_view kDrawings[] = {
    // clang-format off
    // documents, templates, symbols; "plan.cdr_" and "plan.cdr.tmp" are copies of documents, too
    L"*.cdr*", L"*.cdt", L"*.cdx", L"*.cpx", L"*.cmx", L"*.cpt", L"*.csl", L"*.clk",
    // what is kept of them on the side, by CorelDRAW and by this tool
    L"Backup_of_*", L"auto-backup*", L"AutoBackup*", L"*.mirelobak",
    // clang-format on
};

constexpr std::wstring_view kOtherWork[] = {
    // workspaces, macros, palettes, styles, fonts
    L"*.cdws", L"*.gms", L"*.cpl", L"*.pal", L"*.cdss", L"*.ttf", L"*.otf", L"*.ttc", L"*.pfb",
};

bool matchesAny(std::wstring_view name, std::span<const std::wstring_view> patterns) {
    return std::ranges::any_of(
        patterns, [&](std::wstring_view pattern) { return matchesPattern(name, pattern); });
}

}  // namespace

bool IsDrawingName(std::wstring_view fileName) {
    return matchesAny(fileName, kDrawings);
}

bool IsUserWork(std::wstring_view fileName) {
    return IsDrawingName(fileName) || matchesAny(fileName, kOtherWork);
}

bool BeginsLikeDrawing(std::string_view bytes) {
    return bytes.starts_with("RIFF") || bytes.starts_with("PK\x03\x04");
}
