#include "tests/base/files/fake_file_system.h"

#include <utility>

#include "base/text.h"

FakeFileSystem::FakeFileSystem() {
    for (const wchar_t* drive : {L"C:", L"D:"})
        addFolder(drive);
}

FakeFileSystem::Node& FakeFileSystem::add(const std::wstring& path, std::string contents,
                                          EntryType type) {
    const std::wstring parent = parentFolder(path);
    if (!parent.empty() && find(parent) == nullptr) addFolder(parent);
    clock_ += 7'654'321;
    Node node{path,   type,        std::move(contents),
              clock_, clock_ + 99, type == EntryType::file ? 0x20U : 0U};
    if (type == EntryType::folder && find(path) != nullptr) return *find(path);
    return nodes_[lowered(path)] = std::move(node);
}

FakeFileSystem::Node* FakeFileSystem::find(const std::wstring& path) {
    const auto found = nodes_.find(lowered(path));
    return found == nodes_.end() ? nullptr : &found->second;
}

FakeFileSystem::Snapshot FakeFileSystem::snapshot(const std::wstring& folder) {
    Snapshot seen;
    for (const auto& [key, node] : nodes_)
        if (node.path.starts_with(folder + L"\\")) seen[node.path] = node;
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
    const std::wstring key = lowered(path);
    for (std::size_t end = key.rfind(L'\\'); end != std::wstring::npos;
         end = key.rfind(L'\\', end - 1)) {
        const auto above = nodes_.find(key.substr(0, end));
        if (above != nodes_.end() && above->second.type == EntryType::link)
            return {FileOutcome::link};
    }
    const auto found = nodes_.find(key);
    if (found == nodes_.end()) return {FileOutcome::missing};
    node = &found->second;
    if (node->type == EntryType::link) return {FileOutcome::link};
    if (node->isInUse) return {FileOutcome::inUse};
    const bool isExpected = expected == nullptr || (expected->size == node->contents.size() &&
                                                    expected->modified == node->modified);
    return {isExpected ? FileOutcome::done : FileOutcome::changed};
}

// Whether something new of that name can be made.
FileResult FakeFileSystem::makeRoom(const std::wstring& path) {
    Node* node = nullptr;
    const FileResult result = access(path, nullptr, node);
    if (result.outcome != FileOutcome::missing)
        return {node == nullptr ? result.outcome : FileOutcome::exists};
    return {find(parentFolder(path)) == nullptr ? FileOutcome::missing : FileOutcome::done};
}

FolderListing FakeFileSystem::list(const std::wstring& folder) {
    FolderListing listing;
    Node* node = nullptr;
    listing.result = access(folder, nullptr, node);
    const std::wstring below = lowered(folder) + L"\\";
    for (auto i = nodes_.lower_bound(below);
         listing.result.isDone() && i != nodes_.end() && i->first.starts_with(below); ++i) {
        std::wstring name = i->second.path.substr(below.size());
        if (name.find(L'\\') == std::wstring::npos)
            listing.entries.push_back({std::move(name), i->second.type, i->second.stamp()});
    }
    return listing;
}

Inspection FakeFileSystem::inspect(const std::wstring& path) {
    Node* node = nullptr;
    const FileResult result = access(path, nullptr, node);
    if (node == nullptr) return {result, {}, {}};
    return {{}, node->type, node->stamp()};
}

FileResult FakeFileSystem::createFolder(const std::wstring& folder) {
    const FileResult result = makeRoom(folder);
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
    const FileResult result = makeRoom(path);
    if (!result.isDone()) return result;
    const std::wstring unfinished = path + std::wstring(kUnfinishedSuffix);
    step();
    add(unfinished, std::string(bytes.substr(0, bytes.size() / 2)));
    const bool isFull = path[0] == L'D' && bytes.size() > freeOnD;
    if (!isFull) step();
    nodes_.erase(lowered(unfinished));
    if (isFull) return {FileOutcome::diskFull, 112};
    if (path[0] == L'D') freeOnD -= bytes.size();
    Node& node = add(path, std::string(bytes));
    if (spoilsWriting) node.contents.back() ^= 1;
    return {};
}

std::optional<std::string> FakeFileSystem::read(const std::wstring& path, std::uint64_t limit) {
    Node* node = nullptr;
    if (!access(path, nullptr, node).isDone()) return std::nullopt;
    return node->contents.substr(0, static_cast<std::size_t>(limit));
}

FileResult FakeFileSystem::rename(const std::wstring& from, const std::wstring& to,
                                  const FileStamp* expected) {
    Node* node = nullptr;
    FileResult result = access(from, expected, node);
    if (!result.isDone()) return result;
    if (from[0] != to[0]) return {FileOutcome::otherVolume, 17};
    result = makeRoom(to);
    if (!result.isDone()) return result;
    step();
    Node moved = *node;
    moved.path = to;
    nodes_.erase(lowered(from));
    nodes_[lowered(to)] = std::move(moved);
    touchParent(from);
    touchParent(to);
    return {};
}

FileResult FakeFileSystem::copy(const std::wstring& from, const std::wstring& to,
                                const FileStamp& expected) {
    Node* node = nullptr;
    FileResult result = access(from, &expected, node);
    if (result.isDone()) result = makeRoom(to);
    if (!result.isDone()) return result;
    Node copied = *node;
    step();
    // As the real one does it: the size at once, the times last.
    clock_ += 3600 * kTicksPerSecond;
    Node& partial = add(to, std::string(copied.contents.size(), '\0'));
    if (to[0] == L'D' && copied.contents.size() > freeOnD) return {FileOutcome::diskFull, 112};
    step();
    touchParent(to);
    copied.path = to;
    if (spoilsWriting) copied.contents.back() ^= 1;
    if (to[0] == L'D') freeOnD -= copied.contents.size();
    partial = std::move(copied);
    return {};
}

FileResult FakeFileSystem::compare(const std::wstring& left, const std::wstring& right) {
    Node *a = nullptr, *b = nullptr;
    FileResult result = access(left, nullptr, a);
    if (result.isDone()) result = access(right, nullptr, b);
    if (result.isDone() && a->contents != b->contents) return {FileOutcome::changed};
    return result;
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
