#include "slim/slim_action.h"

#include <gtest/gtest.h>

#include "slim/long_path.h"
#include "tests/slim/document_builder.h"
#include "tests/slim/fake_files.h"

namespace {

std::vector<std::wstring> paths(const std::wstring& buffer) {
    return selectedPaths(std::span(buffer.data(), buffer.size()));
}

struct Recorder {
    std::vector<std::wstring> lines;
    std::vector<std::wstring> questions;
    bool answer = true;

    Shell shell() {
        return {[this](std::wstring line) { lines.push_back(std::move(line)); },
                [this](const std::wstring& text, const std::wstring& caption, ConfirmStyle style) {
                    EXPECT_EQ(caption, L"File Slimming Confirmation");
                    EXPECT_EQ(style, ConfirmStyle::question);
                    questions.push_back(text);
                    return answer;
                },
                [](std::wstring) {}};
    }
};

std::vector<std::wstring> logOf(FakeFiles& files, const std::wstring& buffer) {
    Recorder recorder;
    slimSelection(std::span(buffer.data(), buffer.size()), recorder.shell(), files.seam());
    return recorder.lines;
}

const std::wstring kTip =
    L"  Tip: open one slimmed file in CDR to confirm it is fine before batch processing. Slimmed "
    L"files are safe to share.";

}  // namespace

TEST(SlimAction, TakesTheSelectionApart) {
    using Paths = std::vector<std::wstring>;
    const std::wstring end(1, L'\0');
    EXPECT_EQ(paths(end + end), Paths());
    EXPECT_EQ(paths(L"C:\\a b.cdr" + end + end + L"stale"), Paths({L"C:\\a b.cdr"}));
    EXPECT_EQ(paths(L"C:\\d" + end + L"2.cdr" + end + L"1.cdr" + end + end),
              Paths({L"C:\\d\\2.cdr", L"C:\\d\\1.cdr"}));
    EXPECT_EQ(paths(L"C:\\d" + end + L"cut.c"), Paths({L"C:\\d\\cut.c"}));
    std::wstring hundred = L"C:\\d" + end;
    for (int i = 0; i < 100; ++i)
        hundred += L"\u56FE\u7EB8.cdr" + end;
    EXPECT_EQ(paths(hundred + end).size(), 100U);

    EXPECT_EQ(dialogErrorLine(0), L"");
    EXPECT_NE(dialogErrorLine(0x3003).find(L"Selection too long"), std::wstring::npos);
    EXPECT_NE(dialogErrorLine(0xFFFF).find(L"65535"), std::wstring::npos);
}

TEST(SlimAction, ReportsEveryFileAndTheSum) {
    const Bytes document = buildDocument({.views = 3, .styles = 5, .payloadBytes = 1024});
    FakeFiles files{{
        {L"C:\\d\\1.cdr", document},
        {L"C:\\d\\2.cdr", rootDat({})},
        {L"C:\\d\\3.cdr", bytesOf("damaged")},
        {L"C:\\d\\4.cdr",
         buildDocument({.palette = PaletteShape::selfClosed, .views = 0, .previews = false})},
        {L"C:\\d\\5.cdr", zipImage({{"previews/x.png", Bytes(1280, 1)}})},
    }};
    std::wstring buffer = L"C:\\d";
    for (const wchar_t* name : {L"1.cdr", L"2.cdr", L"3.cdr", L"4.cdr", L"5.cdr"})
        buffer += std::wstring(1, L'\0') + name;
    buffer.resize(8192);
    const std::vector<std::wstring> log = logOf(files, buffer);

    ASSERT_EQ(log.size(), 10U);
    EXPECT_EQ(
        log[0].find(L"[Check] 1.cdr: views 3 | color styles 5 | previews 2 (0.4KB) | root.dat "),
        0U);
    EXPECT_EQ(log[1].find(L"  [OK] 1.cdr: "), 0U);
    EXPECT_NE(log[1].find(L"KB (views 3 removed, colors 5 cleared, previews 2 removed)"),
              std::wstring::npos);
    EXPECT_EQ(log[2], L"[Slim] 2.cdr: old format (riffData, X5-). Skipped - save as X6+ first.");
    EXPECT_EQ(log[3],
              L"[Slim] 3.cdr: Not a recognizable CDR file (neither ZIP container nor legacy RIFF)");
    EXPECT_EQ(
        log[4].find(L"[Check] 4.cdr: views 0 | color styles 0 | previews 0 (0.0KB) | root.dat "),
        0U);
    EXPECT_EQ(log[5], L"[Slim] 4.cdr: already clean, nothing to do.");
    EXPECT_EQ(log[6],
              L"[Check] 5.cdr: views 0 | color styles 0 | previews 1 (1.2KB) | root.dat 0.0KB");
    EXPECT_EQ(log[7],
              L"[Slim] 5.cdr failed: Repack verification failed: ZIP structure damaged. File not "
              L"modified, backup kept.");
    EXPECT_EQ(log[8],
              L"[Slim] Done: succeeded 1 / already clean 1 / failed or skipped 3. Backups are "
              L".mirelobak files next to originals.");
    EXPECT_EQ(log[9], kTip);
}

TEST(SlimAction, TouchesNothingWithoutAYes) {
    FakeFiles files{{{L"1.cdr", buildDocument({})}}};
    Recorder recorder;
    recorder.answer = false;
    const std::wstring buffer = L"1.cdr";
    slimSelection(std::span(buffer.data(), buffer.size()), recorder.shell(), files.seam());
    EXPECT_EQ(files.steps, 0);
    EXPECT_TRUE(recorder.lines.empty());
    ASSERT_EQ(recorder.questions.size(), 1U);
    EXPECT_EQ(
        recorder.questions[0].find(
            L"File slimming will be performed on the selected files:\n  - Strip view snapshots "
            L"(clears ALL saved views in View Manager, including yours)\n  - Clear redundant "
            L"color styles (verified: object colors unaffected)\n  - Delete preview/thumbnail "
            L"caches (auto-rebuilt by CDR on open)\nEach file is backed up as .mirelobak next "
            L"to the original first.\nMake sure these files are NOT open in CDR right now. "
            L"Continue?"),
        0U);
}

TEST(SlimAction, ShortensLongNamesAndNeverTheFigures) {
    const std::wstring figures = L" | color styles 5 | previews 2 (0.1KB) | root.dat ";
    for (const std::size_t length : {100U, 160U, 200U, 1000U}) {
        std::wstring name(length, L'n');
        if (sizeof(wchar_t) == 2) {  // a cut inside any of these pairs would leave half a character
            for (std::size_t i = 0; i + 1 < length; i += 2)
                name.replace(i, 2, L"\U0001F600");
        }
        FakeFiles files{{{name, buildDocument({})}}};
        const std::vector<std::wstring> log = logOf(files, name);
        ASSERT_EQ(log.size(), 4U);
        for (const std::wstring& line : {log[0], log[1]}) {
            EXPECT_LE(line.size(), 256U);
            EXPECT_GE(line.size(), std::min<std::size_t>(length + 60, 255U));
            const std::size_t ellipsis = line.find(L'\u2026');
            EXPECT_EQ(ellipsis != std::wstring::npos, length >= 200);
            const bool isCutInPairs = ellipsis != std::wstring::npos && sizeof(wchar_t) == 2;
            EXPECT_TRUE(!isCutInPairs || (line[ellipsis - 1] & 0xFC00) == 0xDC00);
        }
        EXPECT_NE(log[0].find(figures), std::wstring::npos);
        EXPECT_NE(log[1].find(L"previews 2 removed)"), std::wstring::npos);
    }
}

TEST(LongPath, HasTheExtendedForm) {
    EXPECT_EQ(extendedPath(L"C:\\a\\b.cdr"), L"\\\\?\\C:\\a\\b.cdr");
    EXPECT_EQ(extendedPath(L"\\\\server\\share\\b.cdr"), L"\\\\?\\UNC\\server\\share\\b.cdr");
    for (const wchar_t* same : {L"\\\\?\\C:\\a", L"\\\\.\\pipe\\a", L"a\\b.cdr", L"C:b.cdr", L""})
        EXPECT_EQ(extendedPath(same), same);
}
