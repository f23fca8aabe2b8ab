#include "slim/slim_document.h"

#include <gtest/gtest.h>

#include "slim/document.h"
#include "slim/zip_format.h"
#include "tests/slim/document_builder.h"
#include "tests/slim/fake_files.h"

namespace {

const std::wstring kPath = L"C:\\plans\\plan.cdr";
const std::wstring kBackup = kPath + L".20240131_142501.mirelobak";

SlimOutcome slim(FakeFiles& files, const SlimOptions& options = {}) {
    return slimDocument(kPath, options, files.seam());
}

std::wstring refused(const std::wstring& detail) {
    return L"Repack verification failed: " + detail + L". File not modified, backup kept.";
}

}  // namespace

TEST(Document, VerifiesTheStructureOfAnArchive) {
    const Bytes stream = riff("CDRR", chunk("fver", std::string(16, 'f')));
    Bytes tooLong = stream, padded = stream;
    ++tooLong[4];
    padded[4] -= 4;
    const char* riffData = "Content/riffdata.cdr";
    const std::pair<std::vector<TestEntry>, std::wstring> cases[] = {
        {{}, L"ZIP structure damaged|"},
        {{{"content/root.dat", bytesOf("no stream at all")}}, L"riffData.cdr not found|"},
        {{{riffData, bytesOf("RIFXsizeCDRR")}}, L"Invalid RIFF header|metadata.xml not found"},
        {{{riffData, tooLong}}, L"RIFF size field abnormal|metadata.xml not found"},
        {{{riffData, padded}}, L"Verified (RIFF tail has padding)|metadata.xml not found"},
        {{{"riffData.cdr", stream, false}, {"META-INF/Metadata.xml", {}}},
         L"Verified|No separate root.dat (RIFF data lives inside riffData.cdr)"},
        {{{"root.dat", stream}, {"metadata.xml", {}}}, L"Verified|"},
    };
    for (const auto& [entries, verdict] : cases) {
        const StructureCheck check = checkStructure(zipImage(entries));
        EXPECT_EQ(check.detail + L"|" + check.note, verdict);
        EXPECT_EQ(check.verified, verdict.starts_with(L"Verified"));
    }
}

// What previews that share their bytes hold together is told by what they claim, not by decoding.
TEST(Document, DecodesNoMoreThanTheFileIsLong) {
    Bytes image = zipImage({{"previews/1", Bytes(3000, 'p'), false}, {"previews/2", {}, false}});
    const std::size_t header = centralHeader(image, "previews/2");
    writeU32(image, header + zip::kCentralCompressedSize, 3000);
    writeU32(image, header + zip::kCentralUncompressedSize, 7);
    writeU32(image, header + zip::kCentralLocalOffset, 0);
    FakeFiles files{{{kPath, image}}};
    const DocumentAnalysis analysis = analyseDocument(kPath, files.seam());
    EXPECT_EQ(analysis.previews, 2U);
    EXPECT_EQ(analysis.previewBytes, 3000U + 7U);
}

TEST(SlimDocument, DoesOnlyWhatTheOptionsSelectAndIsCleanThen) {
    for (unsigned bits = 0; bits < 16; ++bits) {
        const SlimOptions options{(bits & 1) != 0, (bits & 2) != 0, (bits & 4) != 0,
                                  (bits & 8) != 0};
        FakeFiles files{{{kPath, corpusDocument("x7")}}};
        const SlimOutcome outcome = slim(files, options);
        EXPECT_TRUE(outcome.ok) << bits;
        EXPECT_EQ(outcome.alreadyClean, (bits & 7) == 0) << bits;
        EXPECT_EQ(outcome.viewsRemoved, options.stripViews ? 3U : 0U) << bits;
        EXPECT_EQ(outcome.colorsCleared, options.clearColors ? 5U : 0U) << bits;
        EXPECT_EQ(outcome.previewsRemoved, options.removePreviews ? 2U : 0U) << bits;
        EXPECT_EQ(outcome.backupPath, bits > 8 ? kBackup : L"") << bits;
        EXPECT_EQ(files.contents.count(kBackup), bits > 8 ? 1U : 0U) << bits;
        const SlimOutcome again = slim(files, options);
        EXPECT_TRUE(again.ok && again.alreadyClean && again.newSize == outcome.newSize) << bits;
    }
}

// Whatever the step: one that fails leaves the file alone, and what CorelDRAW saves before one is
// in the file or in the backup.
TEST(SlimDocument, LosesNothingWhateverHappensAtAStep) {
    const std::wstring messages[] = {
        L"Cannot read file", L"Backup failed (target not writable), aborted. File not modified.",
        L"Failed to unpack ZIP container",
        L"Failed to write back (file may be held by CDR). Backup kept: " + kBackup};
    const Bytes document = corpusDocument("x7"), saved = corpusDocument("x7-data2");
    for (int step = 1; step <= 4; ++step) {
        FakeFiles failing{.contents = {{kPath, document}}, .failAt = step};
        SlimOutcome outcome = slim(failing);
        EXPECT_FALSE(outcome.ok) << step;
        EXPECT_EQ(outcome.message, messages[step - 1]);
        EXPECT_EQ(outcome.backupPath, step <= 2 ? L"" : kBackup) << step;
        EXPECT_EQ(failing.contents.count(kBackup), step <= 2 ? 0U : 1U) << step;
        EXPECT_EQ(failing.writes, 0) << step;

        FakeFiles changing{.contents = {{kPath, document}}, .saveAt = step, .saved = saved};
        outcome = slim(changing);
        EXPECT_EQ(outcome.ok, step == 1);
        EXPECT_EQ(outcome.message,
                  step == 1 ? L"" : refused(L"the file was saved again in the meantime"));
        EXPECT_EQ(changing.contents[step == 1 ? kBackup : kPath], saved) << step;
    }
}

TEST(SlimDocument, DoesNotWriteWhatItCannotVerify) {
    Bytes shared = zipImage({{"previews/1", {}, false}, {"data", {}}, {"data", {}}});
    writeU32(shared, centralHeader(shared, "data") + zip::kCentralLocalOffset,
             static_cast<std::uint32_t>(localHeader(shared, "data")));
    const std::pair<Bytes, std::wstring> cases[] = {
        {corpusDocument("bare-riff"),
         L"Legacy format file (riffData, X5 and earlier): not supported yet. Re-save as X6+ in CDR "
         L"first"},
        {shared, refused(L"entries of the archive share their bytes")},
    };
    for (const auto& [document, message] : cases) {
        FakeFiles files{{{kPath, document}}};
        EXPECT_EQ(slim(files).message, message);
        EXPECT_EQ(files.writes, 0);
    }
}
