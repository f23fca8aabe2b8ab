#include "fixes/cleanup/backup_manifest.h"

#include <algorithm>
#include <set>

#include "base/text.h"
#include "cloud/json/json.h"

namespace {

constexpr std::string_view kFormat = "mirelo-cleanup-backup";
constexpr int kVersion = 1;
constexpr double kLargestExact = 9007199254740992.0;  // 2^53

// Nothing that is written here has control characters.
std::string quoted(std::string_view text) {
    std::string json = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') json.push_back('\\');
        json.push_back(c);
    }
    return json + "\"";
}

std::string quoted(std::wstring_view text) {
    return quoted(utf8FromWide(text));
}

void appendEntry(ManifestText& text, const ManifestEntry& entry) {
    const PlannedItem& item = entry.item;
    text.json += "    {\"state\": \"";
    text.progressOffsets.push_back(text.json.size());
    text.json.push_back(static_cast<char>(entry.progress));
    text.json += item.isFolder ? "\", \"type\": \"folder\"" : "\", \"type\": \"file\"";
    text.json += ", \"kind\": ";
    text.json += quoted(kCacheKindNames[static_cast<std::size_t>(item.kind)].id);
    text.json += ", \"size\": " + std::to_string(item.stamp.size);
    text.json += ", \"created\": " + quoted(formatTimestamp(item.stamp.created));
    text.json += ", \"modified\": " + quoted(formatTimestamp(item.stamp.modified));
    text.json += ", \"attributes\": " + std::to_string(item.stamp.attributes);
    text.json += ", \"path\": " + quoted(item.path);
    text.json += ", \"backup\": " + quoted(item.backupPath) + "}";
}

bool readNumber(const JsonValue& object, std::string_view key, std::uint64_t largest,
                std::uint64_t& number) {
    const JsonValue& value = Member(object, key);
    const double read = value.number();
    if (value.tag() != JsonTag::number || !(read >= 0 && read <= kLargestExact)) return false;
    number = static_cast<std::uint64_t>(read);
    return static_cast<double>(number) == read && number <= largest;
}

bool readTime(const JsonValue& object, std::string_view key, FileTicks& ticks) {
    const auto read = parseTimestamp(Member(object, key).string());
    ticks = read.value_or(0);
    return read.has_value();
}

bool readKind(const JsonValue& object, CacheKind& kind) {
    const std::string& id = Member(object, "kind").string();
    const auto found = std::ranges::find(kCacheKindNames, id, &CacheKindName::id);
    if (found == kCacheKindNames.end()) return false;
    kind = static_cast<CacheKind>(found - kCacheKindNames.begin());
    return true;
}

bool readProgress(const JsonValue& object, Progress& progress) {
    const std::string& state = Member(object, "state").string();
    if (state.size() != 1 || std::string_view("PMLR").find(state[0]) == std::string_view::npos)
        return false;
    progress = static_cast<Progress>(state[0]);
    return true;
}

std::optional<ManifestEntry> readEntry(const JsonValue& object) {
    ManifestEntry entry;
    PlannedItem& item = entry.item;
    const std::string& type = Member(object, "type").string();
    std::uint64_t attributes = 0;
    if ((type != "file" && type != "folder") || !readProgress(object, entry.progress) ||
        !readKind(object, item.kind) || !readNumber(object, "size", UINT64_MAX, item.stamp.size) ||
        !readNumber(object, "attributes", UINT32_MAX, attributes) ||
        !readTime(object, "created", item.stamp.created) ||
        !readTime(object, "modified", item.stamp.modified)) {
        return std::nullopt;
    }
    item.isFolder = type == "folder";
    item.stamp.attributes = static_cast<std::uint32_t>(attributes);
    item.path = wideFromUtf8(Member(object, "path").string());
    item.backupPath = wideFromUtf8(Member(object, "backup").string());
    return entry;
}

bool couldBePlanned(const PlannedItem& item, const CleanupRoots& roots) {
    const std::size_t slash = item.backupPath.find(L'\\');
    if (slash == std::wstring::npos) return false;
    const std::wstring_view rootName = std::wstring_view(item.backupPath).substr(0, slash);
    const std::wstring_view relative = std::wstring_view(item.backupPath).substr(slash + 1);
    const auto root = static_cast<std::size_t>(std::ranges::find(kCleanupRootNames, rootName) -
                                               kCleanupRootNames.begin());
    if (root >= kCleanupRootCount || roots[root].empty() || !CanBeRecorded(relative)) return false;
    if (!equalsIgnoringCase(item.path, roots[root] + L"\\" + std::wstring(relative))) return false;
    if (!item.isFolder && IsUserWork(relative.substr(relative.rfind(L'\\') + 1))) return false;
    return std::ranges::any_of(kCleanupLocations, [&](const CleanupLocation& location) {
        return static_cast<std::size_t>(location.root) == root && location.kind == item.kind &&
               Covers(location, relative, item.isFolder);
    });
}

ManifestReading damaged(std::wstring why) {
    return {std::nullopt, std::move(why), {}};
}

}  // namespace

ManifestText WriteManifest(const Manifest& manifest) {
    ManifestText text;
    text.json =
        "{\n  \"format\": " + quoted(kFormat) + ",\n  \"version\": " + std::to_string(kVersion) +
        ",\n  \"created\": " + quoted(formatTimestamp(manifest.created)) + ",\n  \"entries\": [";
    const char* separator = "\n";
    for (const ManifestEntry& entry : manifest.entries) {
        text.json += separator;
        appendEntry(text, entry);
        separator = ",\n";
    }
    text.json += "\n  ]\n}\n";
    return text;
}

ManifestReading ReadManifest(std::string_view json, const CleanupRoots& roots) {
    const JsonValue root = ParseJson(json);
    if (root.tag() != JsonTag::object) return damaged(L"it is not a whole JSON document");
    if (Member(root, "format").string() != kFormat) return damaged(L"it is not a list of a backup");
    if (Member(root, "version").number() != kVersion)
        return damaged(L"another version of Mirelo wrote it");

    Manifest manifest;
    const JsonValue& entries = Member(root, "entries");
    if (entries.tag() != JsonTag::array || !readTime(root, "created", manifest.created))
        return damaged(L"parts of it are missing");

    std::set<std::wstring> seen;
    for (const JsonValue& value : entries.elements()) {
        auto entry = readEntry(value);
        const std::wstring number = decimalUnsigned(manifest.entries.size() + 1);
        if (!entry) return damaged(L"entry " + number + L" is not complete");
        if (!couldBePlanned(entry->item, roots))
            return damaged(L"entry " + number + L" does not name a file of the cleanup: " +
                           entry->item.path);
        if (!seen.insert(lowered(entry->item.path)).second)
            return damaged(L"entry " + number + L" repeats another: " + entry->item.path);
        manifest.entries.push_back(std::move(*entry));
    }
    ManifestText rewritten = WriteManifest(manifest);
    if (rewritten.json != json) rewritten.progressOffsets.clear();
    return {std::move(manifest), L"", std::move(rewritten.progressOffsets)};
}
