#include "diagnosis/classify.h"

#include <gtest/gtest.h>

#include "tests/diagnosis/frame.h"

namespace {

using enum FrameCategory;

// A machine whose system directory is S: and whose maker writes "ms" into its files' names.
const SystemFiles kFiles{
    [](const std::wstring& path) { return path.starts_with(L"S:"); },
    [](const std::wstring& path) { return path.find(L"ms") != std::wstring::npos; }};

}  // namespace

TEST(ClassifyModule, GoesByTheNameInAFixedOrder) {
    const struct {
        FrameCategory category;
        std::vector<const wchar_t*> modules;
    } cases[] = {
        {plugin, {L"SlowFilter.CPG", L"fontprintcorel.cpg", L".cpg"}},
        {print, {L"winspool.drv", L"WINSPOOL", L"spoolss.dll", L"localspl.dll", L"win32spl.dll"}},
        {print, {L"AcmePrintDrv.dll", L"CorelPrintFont.dll", L"foo.print.ocx"}},
        {font, {L"AcmeFonts.dll", L"CorelFontManager.exe", L"dwrite.dll", L"ftlib.drv"}},
        {font, {L"fontsub.dll", L"XcrlFnt12.dll"}},
        {cdrCore, {L"CorelDRW.exe", L"acme.corel.dll", L"CrlUtils.dll"}},
        {thirdParty, {L"filter.cpg.dll", L"win32spl2.dll", L"foo.print.dll", L"dwritecore.dll"}},
        {thirdParty, {L"ftlib2", L"mycrlutils.dll", L"vgcore.dll", L""}},
    };
    for (const auto& [category, modules] : cases) {
        for (const wchar_t* module : modules) {
            EXPECT_EQ(ClassifyModule(Frame(module, L"", L"C:\\print\\font\\corel.cpg")), category)
                << module;
        }
    }
}

TEST(IsSystemFrame, GoesByFunctionModuleAndFile) {
    const SystemFiles everything{[](const std::wstring&) { return true; },
                                 [](const std::wstring&) { return true; }};
    for (const StackFrame& frame :
         {Frame(L"a.cpg", L"ZwWaitForAlertByThreadId"),
          Frame(L"a.cpg", L"__MYWAITFORSINGLEOBJECT2"), Frame(L"a.cpg", L"getmessage"),
          Frame(L"ntdll"), Frame(L"NTDLL.dll"), Frame(L"cfgmgr32.DRV"),
          Frame(L"gdi32full.local.dll"), Frame(L"foo", L"", L"S:\\foo_ms.dll")})
        EXPECT_TRUE(IsSystemFrame(frame, kFiles)) << frame.moduleName << " " << frame.function;
    for (const StackFrame& frame :
         {Frame(L"a.cpg"), Frame(L"a.cpg", L"Sleep"), Frame(L"a.cpg", L"PeekMessageW"),
          Frame(L"ntdllx"), Frame(L"ntdll.cpg"), Frame(L"ntdll.dll.bak"),
          Frame(L"foo", L"", L"S:\\foo_acme.dll"), Frame(L"foo", L"", L"C:\\foo_ms.dll")})
        EXPECT_FALSE(IsSystemFrame(frame, kFiles)) << frame.moduleName << " " << frame.function;
    EXPECT_FALSE(IsSystemFrame(Frame(L"foo"), everything)) << "no path to ask about";
}

TEST(FindSuspect, BlamesTheFirstFrameThatIsNotTheSystems) {
    const StackFrame wait = Frame(L"ntdll", L"NtWaitForSingleObject", L"S:\\ntdll_ms.dll");
    const StackFrame pump = Frame(L"user32", L"GetMessageW", L"S:\\user32_ms.dll");
    constexpr const wchar_t* kPrint = L"Print subsystem (system)";
    constexpr const wchar_t* kFont = L"Font subsystem (system)";
    constexpr const wchar_t* kWait = L"System-level wait (submit to analyze further)";
    const struct {
        FrameCategory category;
        std::uint64_t chosen;
        const wchar_t* module;
        std::vector<StackFrame> frames;
    } cases[] = {
        {thirdParty, 1, L"VgCore", {wait, Frame(L"VgCore"), Frame(L"a.cpg"), Frame(L"corel")}},
        {cdrCore, 2, L"Crl.dll", {wait, Frame(L"a.cpg", L"MySleepEx"), Frame(L"Crl.dll")}},
        // Printing and fonts at once, even where they belong to the system and wait.
        {print, 1, L"winspool", {pump, Frame(L"winspool", L"SleepEx", L"S:\\ms.drv"), pump}},
        {font, 0, L"dwrite", {Frame(L"dwrite", L"", L"S:\\dwrite_ms.dll"), Frame(L"a.cpg")}},
        {print, 1, L"AcmePrint.dll", {Frame(L"gdi32full.dll"), Frame(L"AcmePrint.dll", L"")}},
        // Without a name the path is shown, which tells nothing else.
        {thirdParty, 1, L"C:\\print.cpg", {wait, Frame(L"", L"", L"C:\\print.cpg")}},
        // Nothing but system frames: what betrays a subsystem, printing before fonts in one frame.
        {print, 1, kPrint, {pump, Frame(L"gdi32", L"EnumPRINTers"), Frame(L"gdi32", L"GetGlyphs")}},
        {print, 0, kPrint, {Frame(L"rpcrt4", L"CallSpooler")}},
        {print, 1, kPrint, {pump, Frame(L"foo.print.dll", L"GetMessageW")}},
        {print, 0, kPrint, {Frame(L"ole32", L"", L"C:\\Spool\\a.dll")}},
        {print, 0, kPrint, {Frame(L"gdi32", L"PrintFontGlyph")}},
        {font, 0, kFont, {Frame(L"gdi32", L"GetFontData"), Frame(L"gdi32", L"StartPrint")}},
        {font, 1, kFont, {wait, Frame(L"gdi32", L"getglyphs")}},
        {font, 0, kFont, {Frame(L"gdi32", L"", L"C:\\DWriteX")}},
        {systemOnly, 0, kWait, {pump, wait}},
    };
    for (const auto& c : cases) {
        // Tells the frames apart, so that the choice can be told from its like.
        std::vector<StackFrame> frames = c.frames;
        for (std::size_t i = 0; i < frames.size(); ++i)
            frames[i].address = i;
        const SuspectFrame suspect = FindSuspect(frames, kFiles);
        EXPECT_EQ(suspect.category, c.category) << c.module;
        EXPECT_EQ(suspect.module, c.module);
        EXPECT_EQ(suspect.frame.address, c.chosen) << c.module;
        EXPECT_EQ(suspect.frame.function, frames[c.chosen].function) << c.module;
    }
    EXPECT_EQ(FindSuspect({}, kFiles).category, unknown);
    EXPECT_EQ(FindSuspect({}, kFiles).module, L"");
}

TEST(ModuleName, KeepsWhatTellsAPlugIn) {
    EXPECT_EQ(ModuleNameOf(L"Slow", L"C:\\Plugins\\Slow.CPG"), L"Slow.CPG");
    EXPECT_EQ(ModuleNameOf(L"cut at i", L"cut at its end.cpg"), L"cut at its end.cpg");
    EXPECT_EQ(ModuleNameOf(L"crlcore", L"C:\\Plugins.cpg\\crlcore.dll"), L"crlcore");
    EXPECT_EQ(ModuleNameOf(L"", L""), L"");
}
