#include "base/files/file_transfer.h"

#include <gtest/gtest.h>

#include "tests/base/files/fake_file_system.h"

namespace {

const std::wstring kFrom = L"C:\\a\\file", kTo = L"D:\\b\\file";

struct Transfer {
    FakeFileSystem files;
    FileStamp stamp;

    Transfer() {
        files.addFolder(L"D:\\b");
        stamp = files.add(kFrom, "contents").stamp();
    }
    std::string at(const std::wstring& path) {
        const auto* node = files.find(path);
        return node == nullptr ? "" : node->contents;
    }
    FileOutcome run() { return transferFile(files, kFrom, kTo, stamp).outcome; }
};

}  // namespace

TEST(FileTransfer, KeepsOneWhateverHappensOnTheWay) {
    Transfer spoiled;
    spoiled.files.spoilsWriting = true;
    EXPECT_EQ(spoiled.run(), FileOutcome::changed);
    EXPECT_EQ(spoiled.at(kFrom) + spoiled.at(kTo), "contents");
    // Others write to the original just before it would be removed, and to what took its place.
    for (const bool isCopyTheirs : {false, true}) {
        Transfer transfer;
        transfer.files.beforeRemoving = [&] {
            transfer.files.add(kFrom, "newer");
            if (isCopyTheirs) transfer.files.add(kTo, "newest");
        };
        EXPECT_EQ(transfer.run(), FileOutcome::changed);
        EXPECT_EQ(transfer.at(kFrom) + transfer.at(kTo), isCopyTheirs ? "newernewest" : "newer");
    }
}

TEST(FileTransfer, SettlesWhatAKillLeftByWhatIsWhole) {
    const struct {
        bool isWhole;                     // the unfinished copy
        const char *from, *part, *after;  // "" for none; "contents" is the original
    } cases[] = {
        {true, "contents", "", ""}, {true, "", "", "contents"}, {true, "newer", "", "contents"},
        {false, "newer", "", ""},   {false, "", "partial", ""},
    };
    for (const auto& c : cases) {
        Transfer transfer;
        FakeFileSystem& files = transfer.files;
        if (*c.from != 'c') files.remove(kFrom, nullptr);
        if (*c.from == 'n') files.add(kFrom, c.from);
        auto& copied = files.add(partOf(kTo), c.isWhole ? "contents" : "partial");
        if (c.isWhole) copied.modified = transfer.stamp.modified + 2 * kTicksPerSecond;
        settleTransfer(files, kFrom, kTo, transfer.stamp);
        EXPECT_EQ(transfer.at(kFrom), c.from);
        EXPECT_EQ(transfer.at(partOf(kTo)), c.part) << c.from;
        EXPECT_EQ(transfer.at(kTo), c.after) << c.from;
    }
}
