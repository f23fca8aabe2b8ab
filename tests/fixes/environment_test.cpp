#include "fixes/environment.h"

#include <gtest/gtest.h>

namespace {

using Lines = std::vector<std::wstring>;

constexpr std::uint64_t kEightGiB = 8589934592;

const wchar_t* const kPrinterAdvice =
    L"    -> Your default printer is a network printer or offline - the No.1 cause of slow startup "
    L"and random freezes. Temporarily switch to Microsoft Print to PDF via the Fix tab.";
const wchar_t* const kTooManyFontsAdvice =
    L"    -> Too many fonts significantly slow down CDR startup and text operations. Uninstall "
    L"unused fonts.";
const wchar_t* const kManyFontsAdvice =
    L"    -> Font count is on the high side; consider trimming if startup feels slow.";
const wchar_t* const kGdiAdvice =
    L"    -> Large documents can hit this ceiling (watch it on the Dashboard). Advanced users may "
    L"raise the registry value GDIProcessHandleQuota to 20000 and reboot.";
const wchar_t* const kMemoryAdvice =
    L"    -> CDR 2020+ recommends 16GB+ RAM; below 8GB large documents cause heavy paging and "
    L"freezes.";

// A machine with nothing to advise.
EnvironmentFacts healthy() {
    return {{L"Office", false, false, false}, 800, 10001, kEightGiB};
}

Lines reportOf(const EnvironmentFacts& facts) {
    Lines log;
    Shell shell;
    shell.appendLog = [&](const std::wstring& line) { log.push_back(line); };
    OnEnvironmentCheck(shell, [&] {
        EXPECT_EQ(log.size(), 1U) << "the scan runs below its headline";
        return RateEnvironment(facts);
    });
    return log;
}

}  // namespace

TEST(EnvironmentCheck, ReportsEveryItemWithItsAdvice) {
    EXPECT_EQ(reportOf(healthy()),
              (Lines{L"===== Environment Check =====", L"[OK] Default printer: Office",
                     L"[OK] Installed fonts: 800 fonts", L"[OK] GDI handle quota: 10001",
                     L"[OK] Physical memory: 8192 MB", L""}));
    EXPECT_EQ(reportOf({{L"Far away", true, false, false}, 1501, 10000, kEightGiB - 1}),
              (Lines{L"===== Environment Check =====", L"[HIGH RISK] Default printer: Far away",
                     kPrinterAdvice, L"[HIGH RISK] Installed fonts: 1501 fonts",
                     kTooManyFontsAdvice, L"[WARN] GDI handle quota: 10000", kGdiAdvice,
                     L"[WARN] Physical memory: 8191 MB", kMemoryAdvice, L""}));
    EXPECT_EQ(reportOf({}),
              (Lines{L"===== Environment Check =====", L"[OK] Installed fonts: 0 fonts",
                     L"[WARN] GDI handle quota: 10000", kGdiAdvice, L"[WARN] Physical memory: 0 MB",
                     kMemoryAdvice, L""}));
}

TEST(EnvironmentCheck, PraisesAVirtualPrinterOnlyWhenItIsNear) {
    EnvironmentFacts facts = healthy();
    facts.printer = {L"Print to PDF", false, false, true};
    EXPECT_EQ(reportOf(facts).at(1),
              L"[OK] Default printer: Print to PDF (virtual printer - best practice)");
    facts.printer.isOffline = true;
    EXPECT_EQ(reportOf(facts).at(1), L"[HIGH RISK] Default printer: Print to PDF");
    EXPECT_EQ(reportOf(facts).at(2), kPrinterAdvice);
}

TEST(EnvironmentCheck, RatesBetweenTheOuterBounds) {
    for (const int fontCount : {801, 1500}) {
        EnvironmentFacts facts = healthy();
        facts.fontCount = fontCount;
        EXPECT_EQ(reportOf(facts).at(2),
                  L"[WARN] Installed fonts: " + std::to_wstring(fontCount) + L" fonts");
        EXPECT_EQ(reportOf(facts).at(3), kManyFontsAdvice);
    }
    EnvironmentFacts facts = healthy();
    facts.gdiQuota = 0xFFFFFFFF;
    EXPECT_EQ(reportOf(facts).at(3), L"[OK] GDI handle quota: 4294967295");
}
