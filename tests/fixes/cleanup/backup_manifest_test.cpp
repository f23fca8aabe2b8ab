#include "fixes/cleanup/backup_manifest.h"

#include <gtest/gtest.h>

#include "base/text.h"
#include "tests/fixes/cleanup/staged_profile.h"

namespace {

Manifest stagedManifest(std::size_t entries = SIZE_MAX) {
    FakeFileSystem files;
    for (const StagedFile& file : kStagedFiles)
        files.add(kStagedUser + L"\\" + file.path, "12345");
    Manifest manifest;
    manifest.created = 133'000'000'000'000'001;
    for (const PlannedItem& item :
         PlanCleanup(ListCleanupItems(files, kStagedRoots), kStagedRoots).items)
        if (manifest.entries.size() < entries)
            manifest.entries.push_back({item, Progress::planned});
    return manifest;
}

std::string replaced(std::string text, const std::string& from, const std::string& to) {
    const std::size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return text.replace(at, from.size(), to);
}

bool isTaken(const std::string& json) {
    return ReadManifest(json, kStagedRoots).manifest.has_value();
}

}  // namespace

TEST(BackupManifest, ComesBackAsItWasWritten) {
    Manifest manifest = stagedManifest();
    ManifestText text = WriteManifest(manifest);
    ASSERT_EQ(text.progressOffsets.size(), manifest.entries.size());
    text.json[text.progressOffsets[3]] = 'M';
    manifest.entries[3].progress = Progress::moved;

    ManifestReading reading = ReadManifest(text.json, kStagedRoots);
    ASSERT_TRUE(reading.manifest) << utf8FromWide(reading.error);
    EXPECT_EQ(reading.progressOffsets, text.progressOffsets);
    // The text holds every member, so the same text means the same list.
    EXPECT_EQ(WriteManifest(*reading.manifest).json, WriteManifest(manifest).json);
    EXPECT_EQ(reading.manifest->entries[3].item.path, manifest.entries[3].item.path);

    // Laid out anew by hand it can be read still, and notes nothing.
    reading = ReadManifest(replaced(text.json, "\"type\": ", "\"type\" :\n\t"), kStagedRoots);
    EXPECT_TRUE(reading.manifest);
    EXPECT_TRUE(reading.progressOffsets.empty());
}

TEST(BackupManifest, NamesNoOtherFileWhenCutOffOrWhateverBitFlips) {
    const Manifest manifest = stagedManifest(2);
    const std::string json = WriteManifest(manifest).json;
    for (std::size_t length = 0; length + 1 < json.size(); ++length)
        ASSERT_FALSE(isTaken(json.substr(0, length))) << length;
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
    const char* const cases[][2] = {
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
    for (const auto& [from, to] : cases)
        EXPECT_FALSE(isTaken(replaced(good, from, to))) << to;

    const std::wstring local = kStagedRoots[1] + L"\\";
    const std::wstring items[][2] = {
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
        {local + L"CrashDumps\\CorelDRW.exe.1.dmp",
         L"LOCALAPPDATA\\CrashDumps\\CorelDRW.exe.1.dmp"},
    };
    for (const auto& [path, backupPath] : items) {
        Manifest manifest;
        manifest.entries.push_back({{CacheKind::crashReport, false, path, backupPath, {}}, {}});
        manifest.entries[0].progress = Progress::planned;
        EXPECT_EQ(isTaken(WriteManifest(manifest).json), &path == &items[8][0])
            << utf8FromWide(path) << " " << utf8FromWide(backupPath);
    }

    Manifest twice = stagedManifest();
    twice.entries.push_back(twice.entries.front());
    EXPECT_FALSE(isTaken(WriteManifest(twice).json));
}
