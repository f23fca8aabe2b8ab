#include "tests/base/files/fake_file_system.h"

#include <utility>

#include "base/text.h"

namespace {

FileStamp stampOf(const FakeFileSystem::Node& node) {
    return {node.contents.size(), node.created, node.modified, node.attributes};
}

bool isBelow(const std::wstring& path, const std::wstring& folder) {
    return path.size() > folder.size() && path.starts_with(folder) && path[folder.size()] == L'\\';
}

}  // namespace

FakeFileSystem::FakeFileSystem() {
    for (const wchar_t* drive : {L"C:", L"D:"})
        nodes_[lowered(drive)] = {.path = drive, .type = EntryType::folder, .contents = {}};
}

FakeFileSystem::Node& FakeFileSystem::place(const std::wstring& path, Node node) {
    node.path = path;
    return nodes_[lowered(path)] = std::move(node);
}

FakeFileSystem::Node& FakeFileSystem::addFolder(const std::wstring& path) {
    if (Node* node = find(path)) return *node;
    addFolder(parentFolder(path));
    clock_ += 1'234'567;
    return place(path, {.path = path,
                        .type = EntryType::folder,
                        .contents = {},
                        .created = clock_,
                        .modified = clock_ + 7});
}

FakeFileSystem::Node& FakeFileSystem::add(const std::wstring& path, std::string contents,
                                          EntryType type) {
    addFolder(parentFolder(path));
    clock_ += 7'654'321;
    return place(path, {.path = path,
                        .type = type,
                        .contents = std::move(contents),
                        .created = clock_,
                        .modified = clock_ + 99,
                        .attributes = 0x20});
}

FakeFileSystem::Node* FakeFileSystem::find(const std::wstring& path) {
    const auto found = nodes_.find(lowered(path));
    return found == nodes_.end() ? nullptr : &found->second;
}

std::map<std::wstring, FakeFileSystem::Node> FakeFileSystem::snapshot(const std::wstring& folder) {
    std::map<std::wstring, Node> seen;
    for (const auto& [key, node] : nodes_)
        if (isBelow(node.path, folder)) seen[node.path] = node;
    return seen;
}

void FakeFileSystem::step() {
    if (++steps >= killAt) throw Killed();
}

void FakeFileSystem::touchParent(const std::wstring& path) {
    if (Node* parent = find(parentFolder(path))) parent->modified = clock_ += 1000;
}

// The node that a call means, when no link stands on the way and nobody has it open.
FileResult FakeFileSystem::access(const std::wstring& path, const FileStamp* expected,
                                  Node*& node) {
    for (std::wstring above = parentFolder(path); !above.empty(); above = parentFolder(above)) {
        const Node* folder = find(above);
        if (folder != nullptr && folder->type == EntryType::link) return {FileOutcome::link};
    }
    node = find(path);
    if (node == nullptr) return {FileOutcome::missing};
    if (node->type == EntryType::link) return {FileOutcome::link};
    if (node->isInUse) return {FileOutcome::inUse};
    const bool isExpected = expected == nullptr || (expected->size == node->contents.size() &&
                                                    expected->modified == node->modified);
    return {isExpected ? FileOutcome::done : FileOutcome::changed};
}

// Whether something new of that name can be made.
FileResult FakeFileSystem::makeEntry(const std::wstring& path) {
    Node* node = nullptr;
    const FileResult result = access(path, nullptr, node);
    if (result.outcome != FileOutcome::missing)
        return {node == nullptr ? result.outcome : FileOutcome::exists};
    const Node* parent = find(parentFolder(path));
    return {parent == nullptr ? FileOutcome::missing : FileOutcome::done};
}

FolderListing FakeFileSystem::list(const std::wstring& folder) {
    FolderListing listing;
    Node* node = nullptr;
    listing.result = access(folder, nullptr, node);
    if (!listing.result.isDone()) return listing;
    const std::wstring below = lowered(folder) + L"\\";
    for (auto i = nodes_.lower_bound(below); i != nodes_.end() && i->first.starts_with(below);
         ++i) {
        const Node& child = i->second;
        std::wstring name = child.path.substr(below.size());
        if (name.find(L'\\') == std::wstring::npos)
            listing.entries.push_back({std::move(name), child.type, stampOf(child)});
    }
    return listing;
}

Inspection FakeFileSystem::inspect(const std::wstring& path) {
    Node* node = nullptr;
    Inspection seen;
    seen.result = access(path, nullptr, node);
    if (node == nullptr) return seen;
    seen.result = {};
    seen.type = node->type;
    seen.stamp = stampOf(*node);
    return seen;
}

FileResult FakeFileSystem::createFolder(const std::wstring& folder) {
    const FileResult result = makeEntry(folder);
    if (!result.isDone()) return result;
    step();
    addFolder(folder);
    touchParent(folder);
    return {};
}

FileResult FakeFileSystem::removeFolder(const std::wstring& folder) {
    Node* node = nullptr;
    const FileResult result = access(folder, nullptr, node);
    if (!result.isDone()) return result;
    if (node->type != EntryType::folder || !list(folder).entries.empty())
        return {FileOutcome::refused, 145};
    step();
    nodes_.erase(lowered(folder));
    touchParent(folder);
    return {};
}

FileResult FakeFileSystem::writeNew(const std::wstring& path, std::string_view bytes) {
    const FileResult result = makeEntry(path);
    if (!result.isDone()) return result;
    const std::wstring unfinished = path + std::wstring(kUnfinishedSuffix);
    step();
    add(unfinished, std::string(bytes.substr(0, bytes.size() / 2)));
    if (path[0] == L'D' && bytes.size() > freeOnD) {
        nodes_.erase(lowered(unfinished));
        return {FileOutcome::diskFull, 112};
    }
    step();
    nodes_.erase(lowered(unfinished));
    add(path, std::string(bytes));
    return {};
}

FileResult FakeFileSystem::overwriteByte(const std::wstring& path, std::uint64_t offset,
                                         char byte) {
    Node* node = nullptr;
    const FileResult result = access(path, nullptr, node);
    if (!result.isDone()) return result;
    step();
    node->contents.at(offset) = byte;
    return {};
}

std::optional<std::string> FakeFileSystem::read(const std::wstring& path, std::uint64_t limit) {
    Node* node = nullptr;
    if (!access(path, nullptr, node).isDone() || node->contents.size() > limit) return std::nullopt;
    return node->contents;
}

FileResult FakeFileSystem::rename(const std::wstring& from, const std::wstring& to,
                                  const FileStamp* expected) {
    Node* node = nullptr;
    const FileResult result = access(from, expected, node);
    if (!result.isDone()) return result;
    if (from[0] != to[0]) return {FileOutcome::otherVolume, 17};
    const FileResult room = makeEntry(to);
    if (!room.isDone()) return room;
    step();
    Node moved = *node;
    nodes_.erase(lowered(from));
    place(to, std::move(moved));
    touchParent(from);
    touchParent(to);
    return {};
}

FileResult FakeFileSystem::copy(const std::wstring& from, const std::wstring& to,
                                const FileStamp& expected) {
    Node* node = nullptr;
    const FileResult result = access(from, &expected, node);
    if (!result.isDone()) return result;
    const FileResult room = makeEntry(to);
    if (!room.isDone()) return room;
    Node copied = *node;
    step();
    // As the real one does it: the size at once, the times last.
    clock_ += 3600 * kTicksPerSecond;
    Node& partial = add(to, std::string(copied.contents.size(), '\0'));
    if (to[0] == L'D' && copied.contents.size() > freeOnD) return {FileOutcome::diskFull, 112};
    step();
    touchParent(to);
    copied.path = to;
    if (spoilsCopies) copied.contents.back() ^= 1;
    partial = copied;
    if (to[0] == L'D') freeOnD -= copied.contents.size();
    return {};
}

FileResult FakeFileSystem::compare(const std::wstring& left, const std::wstring& right) {
    Node *a = nullptr, *b = nullptr;
    if (const FileResult result = access(left, nullptr, a); !result.isDone()) return result;
    if (const FileResult result = access(right, nullptr, b); !result.isDone()) return result;
    return {a->contents == b->contents ? FileOutcome::done : FileOutcome::changed};
}

FileResult FakeFileSystem::remove(const std::wstring& path, const FileStamp* expected) {
    if (const auto others = beforeRemoving) others();
    Node* node = nullptr;
    const FileResult result = access(path, expected, node);
    if (!result.isDone()) return result;
    step();
    if ((std::exchange(node->attributes, node->attributes & ~1U) & 1) != 0) step();
    nodes_.erase(lowered(path));
    touchParent(path);
    return {};
}

FileResult FakeFileSystem::setStamp(const std::wstring& path, const FileStamp& stamp) {
    Node* node = nullptr;
    const FileResult result = access(path, nullptr, node);
    if (!result.isDone()) return result;
    step();
    node->created = stamp.created;
    node->modified = stamp.modified;
    node->attributes = stamp.attributes;
    return {};
}
