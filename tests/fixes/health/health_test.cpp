// The environment rated, the default printer judged, switched and put back.
#include <gtest/gtest.h>

#include "fixes/health/environment.h"
#include "fixes/health/printer_switch.h"
#include "tests/fake_host.h"

namespace {

constexpr std::uint64_t kEightGiB = 8589934592;

struct Desk {
    FakeHost fake;
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

    std::wstring press(const std::wstring& currentNow, bool consents = true, bool refuses = false) {
        current = currentNow;
        refuse = refuses;
        fake.consents = consents;
        fake.lines.clear();
        OnTempPrinter(fake.host(), state, printers());
        return fake.report();
    }
};

}  // namespace

TEST(EnvironmentCheck, ReportsEveryItemWithItsAdvice) {
    const auto reportOf = [](const EnvironmentFacts& facts) {
        FakeHost fake;
        OnEnvironmentCheck(fake.host(), [&] { return RateEnvironment(facts); });
        return fake.report();
    };
    expectParts(
        reportOf({{L"Print to PDF", false, true, true}, 1501, 10000, kEightGiB - 1}),
        {L"\n[HIGH RISK] Default printer: Print to PDF\n    -> Your default printer is a network "
         L"printer or offline - the No.1 cause of slow startup and random freezes. Temporarily ",
         L"\n[HIGH RISK] Installed fonts: 1501 fonts\n    -> Too many fonts significantly slow ",
         L"\n[WARN] GDI handle quota: 10000\n    -> Large documents can hit this ceiling",
         L"\n[WARN] Physical memory: 8191 MB\n    -> CDR 2020+ recommends 16GB+ RAM"});
    expectParts(
        reportOf({{L"Print to PDF", false, false, true}, 1500, 10001, kEightGiB}),
        {L"===== Environment Check =====\n[OK] Default printer: Print to PDF (virtual printer - "
         L"best practice)\n[WARN] Installed fonts: 1500 fonts\n    -> Font count is on the high "
         L"side; consider ",
         L"[OK] GDI handle quota: 10001\n[OK] Physical memory: 8192 MB\n\n"});
}

TEST(DefaultPrinter, IsJudgedByPortAttributesAndStatus) {
    const struct {
        PrinterEntry entry;
        bool isNetwork, isOffline;
    } cases[] = {
        {{L"Office", L"C:\\\\out", ~0x410U, ~0x80U}, false, false},
        {{L"Office", L"\\\\", 0x400, 0}, true, true},
        {{L"Office", L"IP_", 0, 0x80}, true, true},
        {{L"Office", L"IP", 0x10, 0}, true, false},
        {{L"office", L"IP_10.0.0.9", 0x410, 0x80}, false, false},
    };
    for (const auto& c : cases) {
        const PrinterEntry entries[] = {c.entry, {L"Office", L"LPT1:", 0, 0}};
        const DefaultPrinterInfo printer = JudgeDefaultPrinter(L"Office", entries);
        EXPECT_TRUE(printer.isNetwork == c.isNetwork && printer.isOffline == c.isOffline)
            << std::wstring(c.entry.port);
    }
    EXPECT_TRUE(JudgeDefaultPrinter(L"Print to PDF (Office)", {}).isVirtual);
}

TEST(TempPrinter, IsSwitchedAfterYesAndPutBackWithoutAsking) {
    constexpr const wchar_t* kFailed =
        L"[Printer] Switch failed (already a virtual printer, or blocked by policy).\n";
    Desk desk;
    EXPECT_EQ(desk.press(L"Office", false), L"");
    EXPECT_EQ(desk.press(L"Office", true, true), kFailed);
    EXPECT_EQ(desk.press(L"Print to PDF, far"), kFailed);
    EXPECT_EQ(desk.fake.questions.at(2),
              L"Confirm Temp Switch|Temporarily switch the default printer to Microsoft Print to "
              L"PDF?\nYour original default printer is restored automatically when Mirelo exits."
              L"\n\nContinue?");
    EXPECT_EQ(desk.press(L"Office"),
              L"[Printer] Switched. Original default: Office (auto-restored on exit)\n");
    EXPECT_EQ(desk.fake.status, L"Temp virtual printer active - auto restored on exit");
    EXPECT_EQ(desk.current, L"Microsoft Print to PDF");
    EXPECT_EQ(desk.press(L"Other", false, true), L"") << "refused";
    EXPECT_EQ(desk.press(L"Other", false), L"[Printer] Restored default printer: Office\n");
    EXPECT_EQ(desk.fake.questions.size(), 4U);
    desk.press(L"Office");
    desk.refuse = false;
    RestoreDefaultPrinterAtExit(desk.state, desk.printers());
    EXPECT_EQ(desk.current, L"Office");
}
