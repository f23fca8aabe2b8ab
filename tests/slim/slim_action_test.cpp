#include "slim/slim_action.h"

#include <gtest/gtest.h>

#include "tests/fake_host.h"
#include "tests/slim/document_builder.h"
#include "tests/slim/fake_files.h"

using Lines = std::vector<std::wstring>;

TEST(SlimAction, TakesTheSelectionApart) {
    const std::wstring end(1, L'\0');
    const std::pair<std::wstring, Lines> cases[] = {
        {end + end, {}},
        {L"C:\\a b.cdr" + end + end + L"stale", {L"C:\\a b.cdr"}},
        {L"C:\\d" + end + L"2.cdr" + end + L"1.cdr" + end + end,
         {L"C:\\d\\2.cdr", L"C:\\d\\1.cdr"}},
        {L"C:\\d" + end + L"cut.c", {L"C:\\d\\cut.c"}},
    };
    for (const auto& [buffer, paths] : cases)
        EXPECT_EQ(selectedPaths(buffer), paths);
    EXPECT_EQ(dialogErrorLine(0), L"");
    EXPECT_NE(dialogErrorLine(0xFFFF).find(L"65535"), std::wstring::npos);
}

TEST(SlimAction, AsksFirst) {
    FakeFiles files{{{L"x.cdr", corpusDocument("x7")}}};
    FakeHost refusing;
    refusing.consents = false;
    slimSelection(std::wstring(L"x.cdr"), refusing.host(), files.seam());
    EXPECT_EQ(refusing.questions,
              Lines{L"File Slimming Confirmation|"
                    L"File slimming will be performed on the selected files:\n"
                    L"  - Strip view snapshots (clears ALL saved views in View Manager, "
                    L"including yours)\n"
                    L"  - Clear redundant color styles (verified: object colors unaffected)\n"
                    L"  - Delete preview/thumbnail caches (auto-rebuilt by CDR on open)\n"
                    L"Each file is backed up as .mirelobak next to the original first.\n"
                    L"Make sure these files are NOT open in CDR right now. Continue?"});
    EXPECT_EQ(refusing.styles, std::vector{ConfirmStyle::question});
    EXPECT_TRUE(refusing.lines.empty() && files.steps == 0);
}

TEST(SlimAction, ReportsEveryFileAndTheSum) {
    FakeFiles files{{
        {L"C:\\d\\1.cdr", corpusDocument("x7")},
        {L"C:\\d\\2.cdr", corpusDocument("bare-riff")},
        {L"C:\\d\\3.cdr", bytesOf("damaged")},
        {L"C:\\d\\4.cdr", corpusDocument("x7-clean")},
        {L"C:\\d\\5.cdr", zipImage({{"previews/x.png", Bytes(1280, 1)}})},
    }};
    std::wstring buffer = L"C:\\d";
    for (const wchar_t* name : {L"1.cdr", L"2.cdr", L"3.cdr", L"4.cdr", L"5.cdr"})
        buffer += std::wstring(1, L'\0') + name;
    FakeHost report;
    slimSelection(buffer, report.host(), files.seam());
    const Lines expected = {
        L"[Check] 1.cdr: views 3 | color styles 5 | previews 2 (0.0KB) | root.dat 0.8KB",
        L"  [OK] 1.cdr: 3.2KB -> 2.7KB (views 3 removed, colors 5 cleared, previews 2 removed)",
        L"[Slim] 2.cdr: old format (riffData, X5-). Skipped - save as X6+ first.",
        L"[Slim] 3.cdr: Not a recognizable CDR file (neither ZIP container nor legacy RIFF)",
        L"[Check] 4.cdr: views 0 | color styles 0 | previews 0 (0.0KB) | root.dat 0.7KB",
        L"[Slim] 4.cdr: already clean, nothing to do.",
        L"[Check] 5.cdr: views 0 | color styles 0 | previews 1 (1.2KB) | root.dat 0.0KB",
        L"[Slim] 5.cdr failed: Repack verification failed: ZIP structure damaged. File not "
        L"modified, backup kept.",
        L"[Slim] Done: succeeded 1 / already clean 1 / failed or skipped 3. Backups are .mirelobak "
        L"files next to originals.",
        L"  Tip: open one slimmed file in CDR to confirm it is fine before batch processing. "
        L"Slimmed files are safe to share."};
    EXPECT_EQ(report.lines, expected);
}

// Where characters have two halves, a cut between any of them would leave one.
TEST(SlimAction, ShortensLongNamesAndNeverTheFigures) {
    for (const std::size_t length : {30U, 80U, 200U, 201U}) {
        std::wstring name(length % 2, L'n');
        for (std::size_t i = 0; i < length; ++i)
            name += L"\U0001F600";
        FakeFiles files{{{name, corpusDocument("x7")}}};
        FakeHost report;
        slimSelection(name, report.host(), files.seam());
        ASSERT_EQ(report.lines.size(), 4U);
        for (const std::wstring& line : {report.lines[0], report.lines[1]}) {
            const std::size_t ellipsis = line.find(L'\u2026');
            EXPECT_EQ(ellipsis != line.npos, name.size() >= 200);
            EXPECT_TRUE(ellipsis == line.npos || line[ellipsis - 1] == name.back());
            EXPECT_TRUE(line.size() <= 256 &&
                        line.size() >= std::min<std::size_t>(name.size() + 60, 255));
            EXPECT_TRUE(line.ends_with(L"KB") || line.ends_with(L" previews 2 removed)"));
        }
    }
}
