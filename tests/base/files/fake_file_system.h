// A file system in memory with two drives, links, files in use, a full disk, and a power switch.
#pragma once

#include <functional>
#include <limits>
#include <map>
#include <utility>

#include "base/files/file_system.h"
#include "base/text.h"

struct Killed {};

class FakeFileSystem final : public FileSystem {
  public:
    struct Node {
        std::wstring path;
        EntryType type = EntryType::file;
        std::string contents;
        FileTicks created = 0, modified = 0;
        std::uint32_t attributes = 0;
        bool isInUse = false;

        [[nodiscard]] FileStamp stamp() const {
            return {contents.size(), created, modified, attributes};
        }
        bool operator==(const Node&) const = default;
    };
    using Snapshot = std::map<std::wstring, Node>;

    /// The step that kills; each call that changes something is one, a copy and a new file two.
    int killAt = std::numeric_limits<int>::max();
    int steps = 0;
    std::function<void()> beforeRemoving;
    /// Copies and new files come out with a wrong byte.
    bool spoilsWriting = false;
    std::uint64_t freeOnD = std::numeric_limits<std::uint64_t>::max();

    FakeFileSystem() {
        addFolder(L"C:");
        addFolder(L"D:");
    }

    /// Adds what is not there, and the folders above it; their times are all different.
    Node& add(const std::wstring& path, std::string contents, EntryType type = EntryType::file) {
        const std::wstring parent = parentFolder(path);
        if (!parent.empty() && find(parent) == nullptr) addFolder(parent);
        clock_ += 7'654'321;
        if (type == EntryType::folder && find(path) != nullptr) return *find(path);
        return nodes_[lowered(path)] = {path,   type,        contents,
                                        clock_, clock_ + 99, type == EntryType::file ? 0x20U : 0U};
    }
    void addFolder(const std::wstring& path) { add(path, "", EntryType::folder); }

    // Not inlined, or the compiler warns of every use of what is there.
    [[gnu::noinline]] Node* find(const std::wstring& path) {
        const auto found = nodes_.find(lowered(path));
        return found == nodes_.end() ? nullptr : &found->second;
    }

    Snapshot snapshot(const std::wstring& folder) {
        Snapshot seen;
        for (const auto& [key, node] : nodes_)
            if (node.path.starts_with(folder + L"\\")) seen[node.path] = node;
        return seen;
    }

    FolderListing list(const std::wstring& folder) override {
        FolderListing listing{access(folder, nullptr).result, {}};
        const std::wstring below = lowered(folder) + L"\\";
        for (auto i = nodes_.lower_bound(below);
             listing.result.isDone() && i != nodes_.end() && i->first.starts_with(below); ++i)
            if (i->first.find(L'\\', below.size()) == std::wstring::npos)
                listing.entries.push_back(
                    {i->second.path.substr(below.size()), i->second.type, i->second.stamp()});
        return listing;
    }

    Inspection inspect(const std::wstring& path) override {
        const auto [result, node] = access(path, nullptr);
        if (node == nullptr) return {result, {}, {}};
        return {{}, node->type, node->stamp()};
    }

    FileResult createFolder(const std::wstring& folder) override {
        const FileResult result = makeRoom(folder);
        if (!result.isDone()) return result;
        step();
        addFolder(folder);
        touchParent(folder);
        return {};
    }

    FileResult removeFolder(const std::wstring& folder) override {
        const auto [result, node] = access(folder, nullptr);
        if (!result.isDone()) return result;
        if (node->type != EntryType::folder || !list(folder).entries.empty())
            return {FileOutcome::refused, 145};
        erase(folder);
        return {};
    }

    FileResult writeNew(const std::wstring& path, std::string_view bytes) override {
        const FileResult result = makeRoom(path);
        if (!result.isDone()) return result;
        const std::wstring unfinished = path + std::wstring(kUnfinishedSuffix);
        step();
        add(unfinished, std::string(bytes.substr(0, bytes.size() / 2)));
        const bool fits = takeSpace(path, bytes.size());
        if (fits) step();
        nodes_.erase(lowered(unfinished));
        if (!fits) return {FileOutcome::diskFull, 112};
        Node& node = add(path, std::string(bytes));
        if (spoilsWriting) node.contents.back() ^= 1;
        return {};
    }

    std::optional<std::string> read(const std::wstring& path, std::uint64_t limit) override {
        const auto [result, node] = access(path, nullptr);
        if (!result.isDone()) return std::nullopt;
        return node->contents.substr(0, static_cast<std::size_t>(limit));
    }

    FileResult rename(const std::wstring& from, const std::wstring& to,
                      const FileStamp* expected) override {
        const auto [result, node] = access(from, expected);
        if (!result.isDone()) return result;
        if (from[0] != to[0]) return {FileOutcome::otherVolume, 17};
        const FileResult room = makeRoom(to);
        if (!room.isDone()) return room;
        Node moved = *node;
        moved.path = to;
        erase(from);
        nodes_[lowered(to)] = std::move(moved);
        touchParent(to);
        return {};
    }

    // As the real one does it: the size at once, the times last.
    FileResult copy(const std::wstring& from, const std::wstring& to,
                    const FileStamp& expected) override {
        const auto [result, node] = access(from, &expected);
        if (!result.isDone()) return result;
        const FileResult room = makeRoom(to);
        if (!room.isDone()) return room;
        Node copied = *node;
        step();
        clock_ += 3600 * kTicksPerSecond;
        Node& partial = add(to, std::string(copied.contents.size(), '\0'));
        if (!takeSpace(to, copied.contents.size())) return {FileOutcome::diskFull, 112};
        step();
        touchParent(to);
        copied.path = to;
        if (spoilsWriting) copied.contents.back() ^= 1;
        partial = std::move(copied);
        return {};
    }

    FileResult compare(const std::wstring& left, const std::wstring& right) override {
        const auto [result, a] = access(left, nullptr);
        if (!result.isDone()) return result;
        const auto [other, b] = access(right, nullptr);
        if (other.isDone() && a->contents != b->contents) return {FileOutcome::changed};
        return other;
    }

    FileResult remove(const std::wstring& path, const FileStamp* expected) override {
        if (const auto others = beforeRemoving) others();
        const auto [result, node] = access(path, expected);
        if (!result.isDone()) return result;
        step();
        if ((std::exchange(node->attributes, node->attributes & ~1U) & 1) != 0) step();
        nodes_.erase(lowered(path));
        touchParent(path);
        return {};
    }

    FileResult setStamp(const std::wstring& path, const FileStamp& stamp) override {
        const auto [result, node] = access(path, nullptr);
        if (!result.isDone()) return result;
        step();
        node->created = stamp.created;
        node->modified = stamp.modified;
        node->attributes = stamp.attributes;
        return {};
    }

  private:
    struct Access {
        FileResult result;
        Node* node = nullptr;
    };

    // The node that a call means, done when no link stands on the way and nobody has it open.
    Access access(const std::wstring& path, const FileStamp* expected) {
        const std::wstring key = lowered(path);
        for (std::size_t end = key.rfind(L'\\'); end != std::wstring::npos;
             end = key.rfind(L'\\', end - 1)) {
            const auto above = nodes_.find(key.substr(0, end));
            if (above != nodes_.end() && above->second.type == EntryType::link)
                return {{FileOutcome::link}};
        }
        const auto found = nodes_.find(key);
        if (found == nodes_.end()) return {{FileOutcome::missing}};
        Node* const node = &found->second;
        if (node->type == EntryType::link) return {{FileOutcome::link}, node};
        if (node->isInUse) return {{FileOutcome::inUse}, node};
        const bool isExpected = expected == nullptr || (expected->size == node->contents.size() &&
                                                        expected->modified == node->modified);
        return {{isExpected ? FileOutcome::done : FileOutcome::changed}, node};
    }

    FileResult makeRoom(const std::wstring& path) {
        const auto [result, node] = access(path, nullptr);
        if (node != nullptr) return {FileOutcome::exists};
        if (result.outcome != FileOutcome::missing) return result;
        return {find(parentFolder(path)) == nullptr ? FileOutcome::missing : FileOutcome::done};
    }

    bool takeSpace(const std::wstring& path, std::size_t bytes) {
        if (path[0] != L'D') return true;
        if (bytes > freeOnD) return false;
        freeOnD -= bytes;
        return true;
    }

    void step() {
        if (++steps >= killAt) throw Killed();
    }
    void erase(const std::wstring& path) {
        step();
        nodes_.erase(lowered(path));
        touchParent(path);
    }
    void touchParent(const std::wstring& path) {
        if (Node* parent = find(parentFolder(path))) parent->modified = clock_ += 1000;
    }

    std::map<std::wstring, Node> nodes_;  // by lowered path
    FileTicks clock_ = 130'000'000'000'000'000;
};
