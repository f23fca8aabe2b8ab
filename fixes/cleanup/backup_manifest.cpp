#include "fixes/cleanup/backup_manifest.h"

#include <algorithm>
#include <optional>
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

std::string entryText(const PlannedItem& item) {
    const FileStamp& stamp = item.stamp;
    return std::string("\n    {\"type\": ") + (item.isFolder ? "\"folder\"" : "\"file\"") +
           ", \"kind\": " + quoted(kCacheKindNames[static_cast<std::size_t>(item.kind)].id) +
           ", \"size\": " + std::to_string(stamp.size) +
           ", \"created\": " + quoted(formatTimestamp(stamp.created)) +
           ", \"modified\": " + quoted(formatTimestamp(stamp.modified)) +
           ", \"attributes\": " + std::to_string(stamp.attributes) +
           ", \"path\": " + quoted(utf8FromWide(item.path)) +
           ", \"backup\": " + quoted(utf8FromWide(item.backupPath)) + "}";
}

template <typename Number>
bool readNumber(const JsonValue& object, std::string_view key, Number& number) {
    const JsonValue& value = Member(object, key);
    const double read = value.number();
    if (value.tag() != JsonTag::number || !(read >= 0 && read <= kLargestExact)) return false;
    number = static_cast<Number>(static_cast<std::uint64_t>(read));
    return static_cast<double>(number) == read;
}

bool readTime(const JsonValue& object, std::string_view key, FileTicks& ticks) {
    const auto read = parseTimestamp(Member(object, key).string());
    ticks = read.value_or(0);
    return read.has_value();
}

// A path may only be put back where its place in the backup says it was.
bool isConsistent(const PlannedItem& item) {
    const std::size_t slash = item.backupPath.find(L'\\');
    if (slash == std::wstring::npos || slash == 0) return false;
    const std::wstring tail = item.backupPath.substr(slash);
    return CanBeRecorded(item.backupPath) && item.path.size() > tail.size() &&
           equalsIgnoringCase(item.path.substr(item.path.size() - tail.size()), tail);
}

// The kind is for people; a later version may know more of them.
std::optional<PlannedItem> readEntry(const JsonValue& object) {
    PlannedItem item;
    FileStamp& stamp = item.stamp;
    const std::string& type = Member(object, "type").string();
    item.isFolder = type == "folder";
    item.path = wideFromUtf8(Member(object, "path").string());
    item.backupPath = wideFromUtf8(Member(object, "backup").string());
    const bool isWhole = (item.isFolder || type == "file") &&
                         readNumber(object, "size", stamp.size) &&
                         readNumber(object, "attributes", stamp.attributes) &&
                         readTime(object, "created", stamp.created) &&
                         readTime(object, "modified", stamp.modified) && isConsistent(item);
    if (!isWhole) return std::nullopt;
    return item;
}

}  // namespace

std::string WriteManifest(const std::vector<PlannedItem>& items, FileTicks created) {
    std::string json =
        "{\n  \"format\": " + quoted(kFormat) + ",\n  \"version\": " + std::to_string(kVersion) +
        ",\n  \"created\": " + quoted(formatTimestamp(created)) + ",\n  \"entries\": [";
    const char* separator = "";
    for (const PlannedItem& item : items) {
        json += separator + entryText(item);
        separator = ",";
    }
    return json + "\n  ]\n}\n";
}

Manifest ReadManifest(std::string_view json) {
    Manifest manifest;
    const JsonValue root = ParseJson(json);
    const JsonValue& entries = Member(root, "entries");
    if (root.tag() != JsonTag::object)
        manifest.error = L"it is not a whole JSON document";
    else if (Member(root, "format").string() != kFormat || entries.tag() != JsonTag::array)
        manifest.error = L"it is not a list of a backup";
    else if (Member(root, "version").number() != kVersion)
        manifest.error = L"another version of Mirelo wrote it";
    if (!manifest.error.empty()) return manifest;

    std::set<std::wstring> seen;
    for (const JsonValue& value : entries.elements()) {
        auto item = readEntry(value);
        if (item && seen.insert(lowered(item->path)).second)
            manifest.items.push_back(std::move(*item));
        else
            ++manifest.damaged;
    }
    return manifest;
}

const std::wstring* RootAbove(std::wstring_view path, const CleanupRoots& roots) {
    const std::wstring* innermost = nullptr;
    for (const std::wstring& root : roots) {
        if (root.empty() || path.size() <= root.size() || path[root.size()] != L'\\') continue;
        const bool isAbove = equalsIgnoringCase(path.substr(0, root.size()), root) &&
                             CanBeRecorded(path.substr(root.size() + 1));
        if (isAbove && (innermost == nullptr || root.size() > innermost->size())) innermost = &root;
    }
    return innermost;
}
