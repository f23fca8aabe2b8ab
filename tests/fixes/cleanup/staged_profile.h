// A user's folders with the traces of two CorelDRAW versions and much that must not be touched.
#pragma once

#include <string>

#include "base/text.h"
#include "fixes/cleanup/cleanup.h"
#include "tests/base/files/fake_file_system.h"

inline const std::wstring kStagedUser = L"C:\\Users\\Zo\u00eb";

inline const CleanupRoots kStagedRoots = {kStagedUser + L"\\Roaming", kStagedUser + L"\\Local",
                                          kStagedUser + L"\\Local\\Temp"};

struct StagedFile {
    const wchar_t* path;  // from the user's folder
    bool isCleaned;
};

inline constexpr StagedFile kStagedFiles[] = {
    {LR"(Local\Microsoft\Windows\WER\ReportArchive\AppCrash_CorelDRW.exe_1a2b\Report.wer)", true},
    {LR"(Local\Microsoft\Windows\WER\ReportArchive\AppCrash_CorelDRW.exe_1a2b\sub\memory.hdmp)",
     true},
    {LR"(Local\Microsoft\Windows\WER\ReportQueue\AppHang_coreldrw.EXE_77\Report.wer)", true},
    {LR"(Local\Microsoft\Windows\WER\ReportArchive\AppCrash_winword.exe_1\Report.wer)", false},
    {LR"(Local\CrashDumps\CorelDRW.exe.4711.dmp)", true},
    {LR"(Local\CrashDumps\CorelDRW.exe.txt)", false},
    {LR"(Local\CrashDumps\CorelPP.exe.4711.dmp)", false},
    {LR"(Local\Temp\CDR1F3.tmp)", true},
    {LR"(Local\Temp\CDR1F3.tmp.cdr)", false},
    {LR"(Local\Temp\XCDR1.tmp)", false},
    {LR"(Local\Temp\other\CDR2.tmp)", false},
    {LR"(Local\Temp\Corel\errors.log)", true},
    {LR"(Local\Temp\Corel\Backup_of_plan.cdr)", false},
    {LR"(Roaming\Corel\Messages\540\EN\cache.dat)", true},
    {LR"(Roaming\Corel\Messages\index.dat)", false},
    {LR"(Local\Corel\CorelDRAW Graphics Suite X7\Draw\PreviewCache\one.png)", true},
    {L"Local\\Corel\\CorelDRAW Graphics Suite X7\\Draw\\PreviewCache\\a\\b\\\u4E2D\U0001F600'.png",
     true},
    {LR"(Local\Corel\CorelDRAW Graphics Suite X7\Draw\PreviewCache\macros.GMS)", false},
    {LR"(Local\Corel\CorelDRAW Graphics Suite X7\PHOTO-PAINT\PreviewCache\three.png)", true},
    {LR"(Local\Corel\CorelDRAW Graphics Suite 2024\Draw\PreviewCache\four.png)", true},
    {LR"(Local\Corel\CorelDRAW Graphics Suite 2024\Draw\Workspace\mine.cdws)", false},
    {LR"(Local\Corel\PaintShop Pro\Draw\PreviewCache\five.png)", false},
    {LR"(Roaming\Corel\CorelDRAW Graphics Suite X7\Draw\PreviewCache\six.png)", false},
};

inline constexpr std::size_t kStagedCleaned = [] {
    std::size_t count = 0;
    for (const StagedFile& file : kStagedFiles)
        count += file.isCleaned ? 1 : 0;
    return count;
}();

/// The paths at which two snapshots differ, one a line.
template <typename Snapshot>
std::string DifferenceOf(const Snapshot& now, const Snapshot& before) {
    std::string text;
    for (const auto& [path, what] : before)
        if (!now.contains(path) || now.at(path) != what) text += utf8FromWide(path) + "\n";
    for (const auto& [path, what] : now)
        if (!before.contains(path)) text += utf8FromWide(path) + "\n";
    return text;
}
