#include "slim/slim_document.h"

#include <gtest/gtest.h>

#include "base/text.h"
#include "slim/document.h"
#include "slim/zip_archive.h"
#include "tests/slim/document_builder.h"
#include "tests/slim/fake_files.h"
#include "tests/slim/slim_model.h"

namespace {

const std::wstring kPath = L"C:\\plans\\plan.cdr";
const std::wstring kBackup = kPath + L".20240131_142501.mirelobak";

DocumentAnalysis analysisOf(const Bytes& document) {
    FakeFiles files{{{kPath, document}}};
    return analyseDocument(kPath, files.seam());
}

SlimOutcome slim(FakeFiles& files, const SlimOptions& options = {}) {
    return slimDocument(kPath, options, files.seam());
}

}  // namespace

TEST(Document, CountsWhatCanBeSlimmed) {
    for (const auto& [name, plan] : documentShapes()) {
        const Bytes document = buildDocument(plan);
        const DocumentAnalysis analysis = analysisOf(document);
        const bool hasRoot = plan.product >= Product::x6;
        const unsigned styles = plan.palette == PaletteShape::selfClosed ? 0
                                : plan.palette == PaletteShape::styles   ? plan.styles
                                                                         : plan.styles + 1;
        EXPECT_TRUE(analysis.recognised && !analysis.legacy) << name;
        EXPECT_EQ(analysis.entryCount, documentEntries(plan).size()) << name;
        EXPECT_EQ(analysis.views, hasRoot ? plan.views * (plan.data2 ? 2 : 1) : 0) << name;
        EXPECT_EQ(analysis.colorStyles, styles) << name;
        EXPECT_EQ(analysis.previews, plan.previews ? 2U : 0U) << name;
        EXPECT_EQ(analysis.previewBytes,
                  plan.previews ? plan.payloadBytes / 8 + plan.payloadBytes / 4 : 0)
            << name;
        EXPECT_EQ(analysis.rootDatSize, hasRoot ? rootDat(plan).size() : 0) << name;
        EXPECT_EQ(analysis.data2DatSize != 0, plan.data2) << name;
        EXPECT_EQ(analysis.fileSize, document.size()) << name;
    }
}

TEST(Document, SaysWhyAFileIsNoDocument) {
    const DocumentAnalysis legacy = analysisOf(rootDat({}));
    EXPECT_TRUE(legacy.recognised && legacy.legacy);
    EXPECT_EQ(legacy.views, 0U);
    EXPECT_EQ(analysisOf({}).error, L"Cannot read file");
    EXPECT_EQ(analysisOf(bytesOf("%PDF-1.7")).error,
              L"Not a recognizable CDR file (neither ZIP container nor legacy RIFF)");
}

TEST(Document, VerifiesTheStructureOfAnArchive) {
    const Bytes stream = riff("CDRR", {chunk("fver", Bytes(16, 0))});
    const auto withSize = [&](std::uint32_t difference) {
        Bytes changed = stream;
        writeU32(changed, 4, readU32(changed, 4) + difference);
        return changed;
    };
    const char* riffData = "Content/riffdata.cdr";
    const wchar_t* noMetadata = L"metadata.xml not found";
    const wchar_t* noRoot = L"No separate root.dat (RIFF data lives inside riffData.cdr)";
    const struct {
        std::vector<TestEntry> entries;
        bool verified;
        const wchar_t* detail;
        const wchar_t* note;
    } cases[] = {
        {{}, false, L"ZIP structure damaged", L""},
        {{{"metadata.xml", {}}}, false, L"riffData.cdr not found", L""},
        {{{"content/root.dat", bytesOf("no stream at all")}},
         false,
         L"riffData.cdr not found",
         L""},
        {{{riffData, bytesOf("RIFXsizeCDRR")}}, false, L"Invalid RIFF header", noMetadata},
        {{{riffData, bytesOf("RIFF\3\0\0CDR")}}, false, L"Invalid RIFF header", noMetadata},
        {{{riffData, withSize(1)}}, false, L"RIFF size field abnormal", noMetadata},
        {{{riffData, withSize(0)}}, true, L"Verified", noMetadata},
        {{{riffData, withSize(-4U)}}, true, L"Verified (RIFF tail has padding)", noMetadata},
        {{{"riffData.cdr", stream, false}, {"META-INF/Metadata.xml", {}}},
         true,
         L"Verified",
         noRoot},
        {{{"root.dat", stream}, {"metadata.xml", {}}}, true, L"Verified", L""},
    };
    for (const auto& c : cases) {
        const StructureCheck check = checkStructure(zipImage(c.entries));
        EXPECT_EQ(check.verified, c.verified);
        EXPECT_EQ(check.detail, c.detail);
        EXPECT_EQ(check.note, c.note);
    }
}

TEST(SlimDocument, IsCleanTheSecondTime) {
    for (const auto& [name, plan] : documentShapes()) {
        if (plan.palette == PaletteShape::spotInks) continue;
        const Bytes document = buildDocument(plan);
        FakeFiles files{{{kPath, document}}};
        EXPECT_TRUE(slim(files).ok) << name;
        const Bytes slimmed = files.contents[kPath];
        files.contents.erase(kBackup);
        const SlimOutcome again = slim(files);
        EXPECT_TRUE(again.ok && again.alreadyClean) << name;
        EXPECT_EQ(again.newSize, slimmed.size()) << name;
        EXPECT_EQ(files.contents, (std::map<std::wstring, Bytes>{{kPath, slimmed}})) << name;
    }
}

TEST(SlimDocument, DoesOnlyWhatTheOptionsSelect) {
    const DocumentPlan plan{.views = 4, .styles = 6};
    for (unsigned bits = 0; bits < 16; ++bits) {
        const SlimOptions options{(bits & 1) != 0, (bits & 2) != 0, (bits & 4) != 0,
                                  (bits & 8) != 0};
        FakeFiles files{{{kPath, buildDocument(plan)}}};
        const SlimOutcome outcome = slim(files, options);
        EXPECT_TRUE(outcome.ok) << bits;
        EXPECT_EQ(outcome.alreadyClean, (bits & 7) == 0) << bits;
        EXPECT_EQ(outcome.viewsRemoved, options.stripViews ? 4U : 0U) << bits;
        EXPECT_EQ(outcome.colorsCleared, options.clearColors ? 6U : 0U) << bits;
        EXPECT_EQ(outcome.previewsRemoved, options.removePreviews ? 2U : 0U) << bits;
        const bool hasBackup = options.makeBackup && !outcome.alreadyClean;
        EXPECT_EQ(outcome.backupPath, hasBackup ? kBackup : L"") << bits;
        EXPECT_EQ(files.contents.count(kBackup), hasBackup ? 1U : 0U) << bits;
    }
}

TEST(SlimDocument, AgreesWithTheModel) {
    Random random(258);
    int written = 0;
    for (int round = 0; round < 3000; ++round) {
        Bytes document = buildDocument(randomPlan(random));
        if (round % 2 == 0) damage(document, random);
        const ModelOutcome expected = modelSlim(document);
        FakeFiles files{{{kPath, document}}};
        const SlimOutcome outcome = slim(files);
        ASSERT_EQ(outcome.ok, expected.state == "written" || expected.state == "clean") << round;
        ASSERT_EQ(outcome.alreadyClean, expected.state == "clean") << round;
        ASSERT_EQ(files.contents[kPath], expected.state == "written" ? expected.image : document)
            << round;
        ASSERT_TRUE(outcome.backupPath.empty() || files.contents[kBackup] == document) << round;
        if (!outcome.ok) {
            const bool isBeforeBackup = outcome.backupPath.empty();
            ASSERT_TRUE(isBeforeBackup ||
                        utf8FromWide(outcome.message).find(expected.state) != std::string::npos)
                << round << ' ' << expected.state;
            continue;
        }
        written += outcome.alreadyClean ? 0 : 1;
        ASSERT_EQ(outcome.viewsRemoved, expected.views) << round;
        ASSERT_EQ(outcome.colorsCleared, expected.colors) << round;
        ASSERT_EQ(outcome.previewsRemoved, expected.previews) << round;
    }
    EXPECT_GT(written, 1500);
}

TEST(SlimDocument, LeavesTheOriginalOrItsBackupWhereverItDies) {
    const Bytes document = buildDocument({});
    bool hasFinished = false;
    for (int step = 1; !hasFinished; ++step) {
        FakeFiles files{{{kPath, document}}};
        files.dieAt = step;
        try {
            hasFinished = slim(files).ok;
        } catch (const Died&) {
        }
        EXPECT_TRUE(files.contents[kPath] == document || files.contents[kBackup] == document)
            << step;
        EXPECT_TRUE(files.writes != 0 || files.contents[kPath] == document) << step;
    }
}

TEST(SlimDocument, NamesTheStepThatFailed) {
    const std::wstring backupFailed =
        L"Backup failed (target not writable), aborted. File not modified.";
    const std::wstring writeFailed =
        L"Failed to write back (file may be held by CDR). Backup kept: " + kBackup;
    const std::wstring messages[] = {L"Cannot read file",
                                     backupFailed,
                                     backupFailed,
                                     backupFailed,
                                     L"Failed to unpack ZIP container",
                                     writeFailed,
                                     writeFailed,
                                     writeFailed};
    const Bytes document = buildDocument({});
    for (int step = 1; step <= 8; ++step) {
        FakeFiles files{{{kPath, document}}};
        files.failAt = step;
        const SlimOutcome outcome = slim(files);
        EXPECT_FALSE(outcome.ok) << step;
        EXPECT_EQ(outcome.message, messages[step - 1]) << step;
        EXPECT_EQ(outcome.backupPath.empty(), step <= 4) << step;
        EXPECT_EQ(files.contents.count(kBackup), step <= 4 ? 0U : 1U) << step;
    }

    FakeFiles twice{{{kPath, document}, {kBackup, bytesOf("earlier")}}};
    EXPECT_EQ(slim(twice).message, backupFailed);
    EXPECT_EQ(twice.contents[kBackup], bytesOf("earlier"));
}

TEST(SlimDocument, DoesNotWriteWhatItCannotVerify) {
    const struct {
        Bytes document;
        const wchar_t* message;
        bool hasBackup;
    } cases[] = {
        {rootDat({}),
         L"Legacy format file (riffData, X5 and earlier): not supported yet. Re-save as X6+ in CDR "
         L"first",
         false},
        {zipImage({{"previews/page1.png", bytesOf("png")}}),
         L"Repack verification failed: ZIP structure damaged. File not modified, backup kept.",
         true},
        {zipImage({{"previews/page1.png", bytesOf("png")}, {"mimetype", bytesOf("zip")}}),
         L"Repack verification failed: riffData.cdr not found. File not modified, backup kept.",
         true},
        {overlappingZip("previews/page1.png"),
         L"Repack verification failed: archive too large to repack. File not modified, backup "
         L"kept.",
         true},
    };
    for (const auto& c : cases) {
        FakeFiles files{{{kPath, c.document}}};
        const SlimOutcome outcome = slim(files);
        EXPECT_EQ(outcome.message, c.message);
        EXPECT_EQ(files.writes, 0);
        EXPECT_EQ(files.contents.count(kBackup), c.hasBackup ? 1U : 0U);
    }
}
