// Where CorelDRAW and Windows leave what can be cleaned up: the one table of locations. What is not
// in it is never touched.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

enum class CacheKind : std::uint8_t { crashReport, temporaryFile, thumbnailCache };
inline constexpr std::size_t kCacheKindCount = 3;

/// How a kind is called in the manifest and in the report.
struct CacheKindName {
    std::string_view id;
    std::wstring_view title;
};
inline constexpr std::array<CacheKindName, kCacheKindCount> kCacheKindNames = {{
    {"crash-report", L"Crash reports"},
    {"temporary-file", L"Temporary files"},
    {"thumbnail-cache", L"Thumbnail caches"},
}};

enum class CleanupRoot : std::uint8_t { roamingAppData, localAppData, temp, programData };
inline constexpr std::size_t kCleanupRootCount = 4;

/// The roots go by the names of the variables that hold them, so that a folder of a backup says
/// where its contents belong.
inline constexpr std::array<std::wstring_view, kCleanupRootCount> kCleanupRootNames = {
    L"APPDATA", L"LOCALAPPDATA", L"TEMP", L"PROGRAMDATA"};

/// The folders in the order of `CleanupRoot`: absolute, long names, no backslash at the end. An
/// empty one is not known and not searched.
using CleanupRoots = std::array<std::wstring, kCleanupRootCount>;

enum class Extent : std::uint8_t {
    files,        // the files that match the pattern
    contents,     // everything below the folders that match; they themselves stay
    wholeFolder,  // the folders that match with everything below them
};

/// A pattern runs from the root; `*` stands for any run of characters within one name. Letters
/// match without regard to case.
struct CleanupLocation {
    CacheKind kind;
    CleanupRoot root;
    std::wstring_view pattern;
    Extent extent;
    /// Left alone while that program runs, which would go on using its cache.
    bool isPhotoPaints = false;
};

/// The folders of the suites carry a year or a version ("X7", "2024"), so one row serves every
/// version, those whose program is gone included. The preview and message caches are known from
/// version X7; where a later version keeps none, the row finds nothing. A second dump of the same
/// process carries a counter: "CorelDRW.exe(1).4711.dmp".
inline constexpr CleanupLocation kCleanupLocations[] = {
    {CacheKind::crashReport, CleanupRoot::localAppData,
     LR"(Microsoft\Windows\WER\Report*\App*_CorelDRW.exe*)", Extent::wholeFolder},
    {CacheKind::crashReport, CleanupRoot::programData,
     LR"(Microsoft\Windows\WER\Report*\App*_CorelDRW.exe*)", Extent::wholeFolder},
    {CacheKind::crashReport, CleanupRoot::localAppData, LR"(CrashDumps\CorelDRW.exe*.dmp)",
     Extent::files},
    {CacheKind::temporaryFile, CleanupRoot::temp, LR"(CDR*.tmp)", Extent::files},
    {CacheKind::temporaryFile, CleanupRoot::temp, LR"(Corel)", Extent::contents},
    {CacheKind::temporaryFile, CleanupRoot::localAppData, LR"(Temp\Corel)", Extent::contents},
    {CacheKind::temporaryFile, CleanupRoot::roamingAppData, LR"(Corel\Messages\*)",
     Extent::contents},
    {CacheKind::thumbnailCache, CleanupRoot::localAppData,
     LR"(Corel\CorelDRAW Graphics Suite*\Draw\PreviewCache)", Extent::contents},
    {CacheKind::thumbnailCache, CleanupRoot::localAppData,
     LR"(Corel\CorelDRAW Graphics Suite*\PHOTO-PAINT\PreviewCache)", Extent::contents, true},
};

/// True when a location takes the file or folder at `relative`, seen from the location's root.
bool Covers(const CleanupLocation& location, std::wstring_view relative, bool isFolder);

/// True for a folder below which the location may take something.
bool LeadsTo(const CleanupLocation& location, std::wstring_view relative);

/// The folder that the location means, for people: the one that its files lie in, or the one that
/// is emptied. `relative` is something it covers.
std::wstring FolderOf(const CleanupLocation& location, std::wstring_view relative);
