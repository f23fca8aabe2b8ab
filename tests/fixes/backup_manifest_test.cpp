#include "fixes/backup_manifest.h"

#include <gtest/gtest.h>

#include "base/text.h"
#include "tests/fixes/staged_profile.h"

namespace {

Manifest stagedManifest() {
    FakeFileSystem files;
    for (const StagedFile& file : kStagedFiles)
        files.add(kStagedUser + L"\\" + file.path, "12345");
    Manifest manifest;
    manifest.created = 133'000'000'000'000'001;
    for (const PlannedItem& item :
         PlanCleanup(ListCleanupItems(files, kStagedRoots), kStagedRoots).items)
        manifest.entries.push_back({item, Progress::planned});
    return manifest;
}

bool isSame(const ManifestEntry& a, const ManifestEntry& b) {
    return a.progress == b.progress && a.item.kind == b.item.kind &&
           a.item.isFolder == b.item.isFolder && a.item.path == b.item.path &&
           a.item.backupPath == b.item.backupPath && a.item.stamp == b.item.stamp;
}

void replace(std::string& text, const std::string& from, const std::string& to) {
    const std::size_t at = text.find(from);
    ASSERT_NE(at, std::string::npos) << from;
    text.replace(at, from.size(), to);
}

}  // namespace

TEST(BackupManifest, ComesBackAsItWasWritten) {
    const Manifest manifest = stagedManifest();
    ManifestText text = WriteManifest(manifest);
    ASSERT_EQ(text.progressOffsets.size(), manifest.entries.size());
    text.json[text.progressOffsets[3]] = 'M';

    const ManifestReading reading = ReadManifest(text.json, kStagedRoots);
    ASSERT_TRUE(reading.manifest) << utf8FromWide(reading.error);
    EXPECT_EQ(reading.progressOffsets, text.progressOffsets);
    EXPECT_EQ(reading.manifest->created, manifest.created);
    ASSERT_EQ(reading.manifest->entries.size(), manifest.entries.size());
    for (std::size_t i = 0; i < manifest.entries.size(); ++i) {
        ManifestEntry expected = manifest.entries[i];
        if (i == 3) expected.progress = Progress::moved;
        EXPECT_TRUE(isSame(reading.manifest->entries[i], expected)) << i;
    }
}

TEST(BackupManifest, CanBeLaidOutAnewByHandButThenNotesNothing) {
    std::string json = WriteManifest(stagedManifest()).json;
    replace(json, "\"type\": ", "\"type\" :\n\t");
    const ManifestReading reading = ReadManifest(json, kStagedRoots);
    EXPECT_TRUE(reading.manifest);
    EXPECT_TRUE(reading.progressOffsets.empty());
}

TEST(BackupManifest, IsRefusedWhenCutOffAnywhere) {
    Manifest manifest = stagedManifest();
    manifest.entries.resize(3);
    const std::string json = WriteManifest(manifest).json;
    for (std::size_t length = 0; length + 1 < json.size(); ++length)
        ASSERT_FALSE(ReadManifest(json.substr(0, length), kStagedRoots).manifest) << length;
}

TEST(BackupManifest, NamesNoOtherFileWhateverBitFlips) {
    Manifest manifest = stagedManifest();
    manifest.entries.resize(1);
    const std::string json = WriteManifest(manifest).json;
    for (std::size_t bit = 0; bit < json.size() * 8; ++bit) {
        std::string flipped = json;
        flipped[bit / 8] = static_cast<char>(flipped[bit / 8] ^ (1 << bit % 8));
        const ManifestReading reading = ReadManifest(flipped, kStagedRoots);
        if (!reading.manifest) continue;
        ASSERT_EQ(reading.manifest->entries.size(), manifest.entries.size());
        for (std::size_t i = 0; i < manifest.entries.size(); ++i) {
            const PlannedItem& item = reading.manifest->entries[i].item;
            ASSERT_TRUE(equalsIgnoringCase(item.path, manifest.entries[i].item.path)) << bit / 8;
            ASSERT_TRUE(equalsIgnoringCase(item.backupPath, manifest.entries[i].item.backupPath));
        }
    }
}

TEST(BackupManifest, IsRefusedWhenItNamesWhatNoCleanupMoves) {
    const std::string good = WriteManifest(stagedManifest()).json;
    const struct {
        const char* from;
        const char* to;
    } cases[] = {
        {"\"version\": 1", "\"version\": 2"},
        {"mirelo-cleanup-backup", "mirelo-other"},
        {"\"created\": \"", "\"created\": \"x"},
        {"\"size\": 5", "\"size\": -5"},
        {"\"size\": 5", "\"size\": 5.5"},
        {"\"size\": 5", "\"size\": 1e300"},
        {"\"size\": 5", "\"size\": \"5\""},
        {"\"attributes\": 32", "\"attributes\": 4294967296"},
        {"\"state\": \"P\"", "\"state\": \"X\""},
        {"\"state\": \"P\"", "\"state\": \"\""},
        {"\"kind\": \"crash-report\"", "\"kind\": \"thumbnail-cache\""},
        {"\"type\": \"file\"", "\"type\": \"link\""},
        {"\"modified\": \"", "\"changed\": \""},
    };
    for (const auto& c : cases) {
        std::string json = good;
        replace(json, c.from, c.to);
        EXPECT_FALSE(ReadManifest(json, kStagedRoots).manifest) << c.to;
    }

    const std::wstring local = kStagedRoots[1] + L"\\";
    const struct {
        std::wstring path;
        std::wstring backupPath;
    } items[] = {
        {L"C:\\Windows\\win.ini", L"LOCALAPPDATA\\CrashDumps\\CorelDRW.exe.1.dmp"},
        {L"C:\\Windows\\win.ini", L"C:\\Windows\\win.ini"},
        {local + L"CrashDumps\\CorelDRW.exe.1.dmp", L"APPDATA\\CrashDumps\\CorelDRW.exe.1.dmp"},
        {local + L"CrashDumps\\CorelDRW.exe.1.dmp", L"LOCALAPPDATA"},
        {local + L"CrashDumps\\..\\CrashDumps\\CorelDRW.exe.1.dmp",
         L"LOCALAPPDATA\\CrashDumps\\..\\CrashDumps\\CorelDRW.exe.1.dmp"},
        {local + L"CrashDumps\\\\CorelDRW.exe.1.dmp",
         L"LOCALAPPDATA\\CrashDumps\\\\CorelDRW.exe.1.dmp"},
        {local + L"CrashDumps\\CorelDRW.exe.1:s.dmp",
         L"LOCALAPPDATA\\CrashDumps\\CorelDRW.exe.1:s.dmp"},
        {local + L"CrashDumps\\CorelPP.exe.1.dmp", L"LOCALAPPDATA\\CrashDumps\\CorelPP.exe.1.dmp"},
    };
    for (const auto& item : items) {
        Manifest manifest;
        manifest.entries.push_back(
            {{CacheKind::crashReport, false, item.path, item.backupPath, {}}, Progress::planned});
        EXPECT_FALSE(ReadManifest(WriteManifest(manifest).json, kStagedRoots).manifest)
            << utf8FromWide(item.path) << " " << utf8FromWide(item.backupPath);
    }

    Manifest twice = stagedManifest();
    twice.entries.push_back(twice.entries.front());
    EXPECT_FALSE(ReadManifest(WriteManifest(twice).json, kStagedRoots).manifest);
}
