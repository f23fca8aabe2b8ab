#include "base/files/file_transfer.h"

#include <gtest/gtest.h>

#include "tests/base/files/fake_file_system.h"

namespace {

class FileTransfer : public testing::Test {
  protected:
    const std::wstring from = L"C:\\a\\file";
    const std::wstring to = L"D:\\b\\file";
    FakeFileSystem files;
    FileStamp stamp;

    void SetUp() override {
        files.addFolder(L"D:\\b");
        files.add(from, "contents");
        stamp = files.inspect(from).stamp;
    }
    std::string at(const std::wstring& path) {
        const auto* node = files.find(path);
        return node == nullptr ? "" : node->contents;
    }
};

}  // namespace

TEST_F(FileTransfer, KeepsOneWhateverHappensOnTheWay) {
    files.spoilsWriting = true;
    EXPECT_EQ(transferFile(files, from, to, stamp).outcome, FileOutcome::changed);
    EXPECT_EQ(at(from), "contents");
    EXPECT_EQ(files.snapshot(L"D:\\b").size(), 0U);
    files.spoilsWriting = false;

    for (const std::wstring& taken : {to, partOf(to)}) {
        files.add(taken, "somebody's");
        EXPECT_EQ(transferFile(files, from, to, stamp).outcome, FileOutcome::exists);
        EXPECT_EQ(at(taken), "somebody's");
        EXPECT_EQ(at(from), "contents");
        files.remove(taken, nullptr);
    }

    // Others write to the original just before it would be removed, or remove it themselves.
    files.beforeRemoving = [this] {
        if (files.find(to) != nullptr) files.find(from)->contents = "newer";
    };
    EXPECT_EQ(transferFile(files, from, to, stamp).outcome, FileOutcome::changed);
    EXPECT_EQ(at(from), "newer");
    EXPECT_EQ(at(to), "");
    files.find(from)->contents = "contents";
    files.beforeRemoving = [this] {
        files.beforeRemoving = {};
        files.remove(from, nullptr);
    };
    EXPECT_TRUE(transferFile(files, from, to, stamp).isDone());
    EXPECT_EQ(at(from), "");
    EXPECT_EQ(at(to), "contents");
}

TEST_F(FileTransfer, SettlesWhatAKillLeftByWhatIsWhole) {
    const struct {
        const char* what;
        bool isWhole;      // the unfinished copy
        const char* from;  // "" for none; "contents" is the original
        const char* partAfter;
        const char* toAfter;
    } cases[] = {
        {"original there, copy partial", false, "contents", "", ""},
        {"original there, copy whole", true, "contents", "", ""},
        {"rename lost, original gone", true, "", "", "contents"},
        {"rename lost, something newer in place", true, "newer one", "", "contents"},
        {"copy partial, original changed since", false, "newer one", "", ""},
        {"copy partial, original gone", false, "", "partial", ""},
    };
    const std::wstring part = partOf(to);
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        for (const std::wstring& path : {from, part, to})
            files.remove(path, nullptr);
        if (*c.from != '\0') files.add(from, c.from);
        if (at(from) == "contents") files.find(from)->modified = stamp.modified;
        auto& copied = files.add(part, c.isWhole ? "contents" : "partial");
        if (c.isWhole) copied.modified = stamp.modified + 2 * kTicksPerSecond;
        settleTransfer(files, from, to, stamp);
        EXPECT_EQ(at(from), c.from);
        EXPECT_EQ(at(part), c.partAfter);
        EXPECT_EQ(at(to), c.toAfter);
    }
}
