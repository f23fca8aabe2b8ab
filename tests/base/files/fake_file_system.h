// A file system in memory with two drives, links, files in use, a full disk, and a power switch.
#pragma once

#include <functional>
#include <limits>
#include <map>

#include "base/files/file_system.h"

/// Thrown by the step at which the process is killed.
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
    FakeFileSystem();

    /// Adds what is not there, and the folders above it; their times are all different.
    Node& add(const std::wstring& path, std::string contents, EntryType type = EntryType::file);
    void addFolder(const std::wstring& path) { add(path, "", EntryType::folder); }
    Node* find(const std::wstring& path);
    /// All that lies below `folder`, by path.
    Snapshot snapshot(const std::wstring& folder);

    FolderListing list(const std::wstring& folder) override;
    Inspection inspect(const std::wstring& path) override;
    FileResult createFolder(const std::wstring& folder) override;
    FileResult removeFolder(const std::wstring& folder) override;
    FileResult writeNew(const std::wstring& path, std::string_view bytes) override;
    std::optional<std::string> read(const std::wstring& path, std::uint64_t limit) override;
    FileResult rename(const std::wstring& from, const std::wstring& to,
                      const FileStamp* expected) override;
    FileResult copy(const std::wstring& from, const std::wstring& to,
                    const FileStamp& expected) override;
    FileResult compare(const std::wstring& left, const std::wstring& right) override;
    FileResult remove(const std::wstring& path, const FileStamp* expected) override;
    FileResult setStamp(const std::wstring& path, const FileStamp& stamp) override;

    /// The step that kills; each call that changes something is one, a copy and a new file two.
    int killAt = std::numeric_limits<int>::max();
    int steps = 0;
    /// What others do just before a file is removed.
    std::function<void()> beforeRemoving;
    /// Copies and new files come out with a wrong byte.
    bool spoilsWriting = false;
    /// Free bytes on drive D.
    std::uint64_t freeOnD = std::numeric_limits<std::uint64_t>::max();

  private:
    void step();
    FileResult access(const std::wstring& path, const FileStamp* expected, Node*& node);
    FileResult makeRoom(const std::wstring& path);
    void touchParent(const std::wstring& path);

    std::map<std::wstring, Node> nodes_;  // by lowered path
    FileTicks clock_ = 130'000'000'000'000'000;
};
