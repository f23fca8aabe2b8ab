#include "diagnosis/classify.h"

#include <gtest/gtest.h>

namespace {

using enum FrameCategory;

StackFrame Frame(const wchar_t* module, const wchar_t* function = L"", const wchar_t* path = L"") {
    StackFrame frame;
    frame.moduleName = module;
    frame.function = function;
    frame.imagePath = path;
    return frame;
}

// A machine whose system directory is S: and whose maker writes "ms" into its files' names.
constexpr SystemFiles kFiles{
    [](const std::wstring& path) { return path.starts_with(L"S:"); },
    [](const std::wstring& path) { return path.find(L"ms") != std::wstring::npos; }};

}  // namespace

TEST(ClassifyModule, GoesByTheNameInAFixedOrder) {
    const struct {
        const wchar_t* module;
        FrameCategory category;
    } cases[] = {
        {L"SlowFilter.CPG", plugin},
        {L"fontprintcorel.cpg", plugin},
        {L".cpg", plugin},
        {L"filter.cpg.dll", thirdParty},
        {L"winspool.drv", print},
        {L"WINSPOOL", print},
        {L"spoolss.dll", print},
        {L"localspl.dll", print},
        {L"win32spl.dll", print},
        {L"win32spl2.dll", thirdParty},
        {L"AcmePrintDrv.dll", print},
        {L"CorelPrintFont.dll", print},
        {L"foo.print.dll", thirdParty},
        {L"foo.print.ocx", print},
        {L"AcmeFonts.dll", font},
        {L"CorelFontManager.exe", font},
        {L"dwrite.dll", font},
        {L"dwritecore.dll", thirdParty},
        {L"ftlib.drv", font},
        {L"ftlib2", thirdParty},
        {L"fontsub.dll", font},
        {L"XcrlFnt12.dll", font},
        {L"CorelDRW.exe", cdrCore},
        {L"acme.corel.dll", cdrCore},
        {L"CrlUtils.dll", cdrCore},
        {L"mycrlutils.dll", thirdParty},
        {L"vgcore.dll", thirdParty},
        {L"", thirdParty},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(ClassifyModule(Frame(c.module, L"", L"C:\\print\\font\\corel.cpg")), c.category)
            << c.module;
    }
}

TEST(IsSystemFrame, KnowsWaitingByTheFunction) {
    for (const wchar_t* wait :
         {L"ZwWaitForAlertByThreadId", L"NtWaitForSingleObject", L"MsgWaitForMultipleObjectsEx",
          L"WaitForMultipleObjects", L"RtlWaitForSingleObject2", L"SleepEx", L"ZwDelayExecution",
          L"GetMessageW", L"ZwRemoveIoCompletion", L"ZwUserGetMessage", L"__MYWAITFORSINGLEOBJECT",
          L"getmessage"}) {
        EXPECT_TRUE(IsSystemFrame(Frame(L"slowfilter.cpg", wait), kFiles)) << wait;
    }
    for (const wchar_t* busy : {L"", L"Sleep", L"WaitOnAddress", L"PeekMessageW"})
        EXPECT_FALSE(IsSystemFrame(Frame(L"slowfilter.cpg", busy), kFiles)) << busy;
}

TEST(IsSystemFrame, KnowsItsModulesWithAndWithoutExtension) {
    for (const std::wstring module :
         {L"ntdll",    L"kernel32", L"kernelbase", L"user32",   L"gdi32",  L"gdi32full", L"msvcrt",
          L"ucrtbase", L"ole32",    L"oleaut32",   L"combase",  L"rpcrt4", L"advapi32",  L"sechost",
          L"shell32",  L"shlwapi",  L"comctl32",   L"comdlg32", L"imm32",  L"msctf",     L"win32u",
          L"d3d11",    L"dxgi",     L"dwmapi",     L"crypt32",  L"ws2_32", L"wininet",   L"urlmon",
          L"clbcatq",  L"propsys",  L"setupapi",   L"cfgmgr32"}) {
        for (const wchar_t* extension : {L"", L".dll", L".DRV", L".local.dll"}) {
            EXPECT_TRUE(IsSystemFrame(Frame((module + extension).c_str()), kFiles))
                << module << extension;
        }
        for (const wchar_t* more : {L"x", L".cpg", L".dll.bak"})
            EXPECT_FALSE(IsSystemFrame(Frame((module + more).c_str()), kFiles)) << module << more;
    }
}

TEST(IsSystemFrame, KnowsOtherFilesByPlaceAndMaker) {
    EXPECT_TRUE(IsSystemFrame(Frame(L"foo", L"", L"S:\\foo_ms.dll"), kFiles));
    EXPECT_FALSE(IsSystemFrame(Frame(L"foo", L"", L"S:\\foo_acme.dll"), kFiles));
    EXPECT_FALSE(IsSystemFrame(Frame(L"foo", L"", L"C:\\foo_ms.dll"), kFiles));
    const SystemFiles everything{[](const std::wstring&) { return true; },
                                 [](const std::wstring&) { return true; }};
    EXPECT_FALSE(IsSystemFrame(Frame(L"foo"), everything));
}

TEST(FindSuspect, BlamesTheFirstFrameThatIsNotTheSystems) {
    const StackFrame wait = Frame(L"ntdll", L"NtWaitForSingleObject", L"S:\\ntdll_ms.dll");
    const StackFrame pump = Frame(L"user32", L"GetMessageW", L"S:\\user32_ms.dll");
    constexpr const wchar_t* kPrintLabel = L"Print subsystem (system)";
    constexpr const wchar_t* kFontLabel = L"Font subsystem (system)";
    constexpr const wchar_t* kWaitLabel = L"System-level wait (submit to analyze further)";

    const struct {
        const char* what;
        std::vector<StackFrame> frames;
        FrameCategory category;
        std::size_t chosen;
        const wchar_t* label;
    } cases[] = {
        {"the first of several candidates",
         {wait, Frame(L"VgCore"), Frame(L"a.cpg"), Frame(L"corel")},
         thirdParty,
         1,
         L"VgCore"},
        {"a plug-in that waits by a system call's name is skipped",
         {wait, Frame(L"a.cpg", L"Hooked_WaitForSingleObject"), Frame(L"CrlGeo.dll")},
         cdrCore,
         2,
         L"CrlGeo.dll"},
        {"the spooler at once, although it belongs to the system and waits",
         {pump, Frame(L"winspool.drv", L"WaitForSingleObject", L"S:\\winspool_ms.drv"),
          Frame(L"a.cpg")},
         print,
         1,
         L"winspool.drv"},
        {"DirectWrite at once", {Frame(L"dwrite", L"", L"S:\\dwrite_ms.dll")}, font, 0, L"dwrite"},
        {"a printer driver below the system's drawing code",
         {Frame(L"gdi32full.dll"), Frame(L"AcmePrint.dll", L"", L"S:\\AcmePrint_ms.dll")},
         print,
         1,
         L"AcmePrint.dll"},
        {"without a name the path is shown",
         {wait, Frame(L"", L"", L"C:\\print.cpg")},
         thirdParty,
         1,
         L"C:\\print.cpg"},
        {"without name and path nothing is shown", {wait, Frame(L"")}, thirdParty, 1, L""},
        {"printing betrayed by a function, in any case",
         {pump, Frame(L"gdi32", L"EnumPRINTers"), Frame(L"gdi32", L"GetGlyphs")},
         print,
         1,
         kPrintLabel},
        {"spooling by a function", {Frame(L"rpcrt4", L"CallSpooler")}, print, 0, kPrintLabel},
        {"printing by a module that its wait made the system's",
         {pump, Frame(L"foo.print.dll", L"GetMessageW")},
         print,
         1,
         kPrintLabel},
        {"spooling by a path", {Frame(L"ole32", L"", L"C:\\Spool\\a.dll")}, print, 0, kPrintLabel},
        {"the upper frame before the graver word",
         {Frame(L"gdi32", L"GetFontData"), Frame(L"gdi32", L"StartPrint")},
         font,
         0,
         kFontLabel},
        {"printing before fonts in one frame",
         {Frame(L"gdi32", L"PrintFontGlyph")},
         print,
         0,
         kPrintLabel},
        {"glyphs by a function", {wait, Frame(L"gdi32", L"getglyphs")}, font, 1, kFontLabel},
        {"fonts by a path", {Frame(L"user32", L"", L"C:\\Fonts\\a.dll")}, font, 0, kFontLabel},
        {"DirectWrite by a path", {Frame(L"gdi32", L"", L"C:\\DWriteX")}, font, 0, kFontLabel},
        {"nothing but waiting", {pump, wait}, systemOnly, 0, kWaitLabel},
    };
    for (const auto& c : cases) {
        // Tells the frames apart, so that the choice can be told from its like.
        std::vector<StackFrame> frames = c.frames;
        for (std::size_t i = 0; i < frames.size(); ++i)
            frames[i].address = i;
        const SuspectFrame suspect = FindSuspect(frames, kFiles);
        EXPECT_EQ(suspect.category, c.category) << c.what;
        EXPECT_EQ(suspect.module, c.label) << c.what;
        EXPECT_EQ(suspect.frame.address, c.chosen) << c.what;
        EXPECT_EQ(suspect.frame.function, c.frames[c.chosen].function) << c.what;
    }
}

TEST(FindSuspect, KnowsNothingOfAnEmptyStack) {
    const SuspectFrame suspect = FindSuspect({}, kFiles);
    EXPECT_EQ(suspect.category, unknown);
    EXPECT_EQ(suspect.module, L"");
}

TEST(ModuleName, KeepsWhatTellsAPlugIn) {
    const struct {
        const wchar_t* reported;
        const wchar_t* path;
        const wchar_t* name;
    } cases[] = {
        {L"slowfilter.cpg", L"C:\\Plugins\\slowfilter.cpg", L"slowfilter.cpg"},
        {L"SlowFilter", L"C:\\Plugins\\SlowFilter.CPG", L"SlowFilter.CPG"},
        {L"a name cut by the library at its", L"a name cut by the library at its end.cpg",
         L"a name cut by the library at its end.cpg"},
        {L"crlcore", L"C:\\Plugins.cpg\\crlcore.dll", L"crlcore"},
        {L"", L"", L""},
    };
    for (const auto& c : cases)
        EXPECT_EQ(ModuleNameOf(c.reported, c.path), c.name);
}
