// The environment rated, the default printer judged, switched and put back.
#include <gtest/gtest.h>

#include <algorithm>

#include "base/text.h"
#include "fixes/health/environment.h"
#include "fixes/health/printer_switch.h"
#include "tests/fake_host.h"

namespace {

using Lines = std::vector<std::wstring>;

constexpr std::uint64_t kEightGiB = 8589934592;

Lines reportOf(const EnvironmentFacts& facts) {
    FakeHost report;
    OnEnvironmentCheck(report.host(), [&] { return RateEnvironment(facts); });
    return report.lines;
}

// A user's desk: the button, and a spooler that may refuse.
struct Desk {
    FakeHost report;
    bool refuse = false;
    std::wstring current = L"Office";
    PrinterSwitch state;

    Printers printers() {
        return {[this] { return JudgeDefaultPrinter(current, {}); },
                [this](const std::wstring& name, const std::wstring& otherwise) {
                    // Only a switch is taken back when it comes too late.
                    EXPECT_EQ(otherwise, state.savedDefaultPrinter.empty() ? current : L"");
                    if (!refuse) current = name;
                    return !refuse;
                }};
    }

    // The line that one press of the button adds; empty for none.
    std::wstring press(const std::wstring& currentNow, bool consents = true, bool refuses = false) {
        current = currentNow;
        refuse = refuses;
        report.consents = consents;
        report.lines.clear();
        report.questions.clear();
        OnTempPrinter(report.host(), state, printers());
        return report.lines.empty() ? L"" : report.lines.back();
    }
};

}  // namespace

TEST(EnvironmentCheck, ReportsEveryItemWithItsAdvice) {
    EXPECT_EQ(reportOf({{L"Office", false, false, false}, 800, 10001, kEightGiB}),
              (Lines{L"===== Environment Check =====", L"[OK] Default printer: Office",
                     L"[OK] Installed fonts: 800 fonts", L"[OK] GDI handle quota: 10001",
                     L"[OK] Physical memory: 8192 MB", L""}));
    const Lines bad = reportOf({{L"Print to PDF", false, true, true}, 1501, 10000, kEightGiB - 1});
    const wchar_t* const expected[] = {
        L"===== Environment Check =====",
        L"[HIGH RISK] Default printer: Print to PDF",
        L"    -> Your default printer is a network printer or offline - the No.1 cause of slow "
        L"startup and random freezes. Temporarily switch to Microsoft Print to PDF via",
        L"[HIGH RISK] Installed fonts: 1501 fonts",
        L"    -> Too many fonts significantly slow down CDR startup",
        L"[WARN] GDI handle quota: 10000",
        L"    -> Large documents can hit this ceiling",
        L"[WARN] Physical memory: 8191 MB",
        L"    -> CDR 2020+ recommends 16GB+ RAM",
        L""};
    EXPECT_TRUE(std::ranges::equal(bad, expected, [](const auto& line, const wchar_t* start) {
        return line.starts_with(start);
    }));
    EXPECT_EQ(reportOf({{}, 1500, 10001, kEightGiB}).at(2),
              L"    -> Font count is on the high side; consider trimming if startup feels slow.");
    EXPECT_EQ(reportOf({{L"Print to PDF", false, false, true}}).at(1),
              L"[OK] Default printer: Print to PDF (virtual printer - best practice)");
}

TEST(DefaultPrinter, IsJudgedByPortAttributesAndStatus) {
    const struct {
        PrinterEntry entry;
        bool isNetwork, isOffline;
    } cases[] = {
        {{L"Office", L"LPT1:", ~0x410U, ~0x80U}, false, false},
        {{L"Office", L"\\\\", 0, 0}, true, false},
        {{L"Office", L"C:\\\\out", 0, 0}, false, false},
        {{L"Office", L"IP_", 0, 0}, true, false},
        {{L"Office", L"IP", 0x10, 0}, true, false},
        {{L"Office", L"LPT1:", 0x400, 0}, false, true},
        {{L"Office", L"IP_10.0.0.9", 0, 0x80}, true, true},
        {{L"office", L"IP_10.0.0.9", 0x410, 0x80}, false, false},
    };
    for (const auto& c : cases) {
        const PrinterEntry entries[] = {c.entry, {L"Office", L"LPT1:", 0, 0}};
        const DefaultPrinterInfo printer = JudgeDefaultPrinter(L"Office", entries);
        EXPECT_EQ(printer.isNetwork, c.isNetwork) << utf8FromWide(c.entry.port);
        EXPECT_EQ(printer.isOffline, c.isOffline) << utf8FromWide(c.entry.port);
    }
    EXPECT_TRUE(JudgeDefaultPrinter(L"Print to PDF (Office)", {}).isVirtual);
    EXPECT_FALSE(JudgeDefaultPrinter(L"Print To PDF", {}).isVirtual);
}

TEST(TempPrinter, IsSwitchedAfterYesAndPutBackWithoutAsking) {
    constexpr const wchar_t* kFailed =
        L"[Printer] Switch failed (already a virtual printer, or blocked by policy).";
    Desk desk;
    EXPECT_EQ(desk.press(L"Office", false), L"");
    EXPECT_EQ(desk.press(L"Office", true, true), kFailed);
    EXPECT_EQ(desk.press(L"Print to PDF, far"), kFailed);
    EXPECT_EQ(desk.report.questions,
              Lines{L"Confirm Temp Switch|Temporarily switch the default printer to Microsoft "
                    L"Print to PDF?\nYour original default printer is restored automatically when "
                    L"Mirelo exits.\n\nContinue?"});
    EXPECT_EQ(desk.current, L"Print to PDF, far");
    EXPECT_EQ(desk.press(L"Office"),
              L"[Printer] Switched. Original default: Office (auto-restored on exit)");
    EXPECT_EQ(desk.report.status, L"Temp virtual printer active - auto restored on exit");
    EXPECT_EQ(desk.current, L"Microsoft Print to PDF");
    EXPECT_EQ(desk.press(L"Other", false, true), L"") << "refused";
    EXPECT_EQ(desk.press(L"Other", false), L"[Printer] Restored default printer: Office");
    EXPECT_EQ(desk.report.status, L"");
    EXPECT_EQ(desk.report.questions, Lines{});
    desk.press(L"Office");
    desk.refuse = false;
    RestoreDefaultPrinterAtExit(desk.state, desk.printers());
    EXPECT_EQ(desk.current, L"Office");
}
