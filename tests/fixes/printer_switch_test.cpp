#include "fixes/printer_switch.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using Journal = std::vector<std::wstring>;

const std::wstring kQuestion =
    L"ask Confirm Temp Switch: Temporarily switch the default printer to Microsoft Print to PDF?\n"
    L"Your original default printer is restored automatically when Mirelo exits.\n\nContinue?";
const std::wstring kSwitched =
    L"[Printer] Switched. Original default: Office (auto-restored on exit)";
const std::wstring kActive = L"status Temp virtual printer active - auto restored on exit";
const std::wstring kFailed =
    L"[Printer] Switch failed (already a virtual printer, or blocked by policy).";

// A user, a shell and a spooler; what they were asked goes into one journal.
struct Desk {
    bool answer = true;
    bool refuse = false;
    std::wstring current = L"Office";
    PrinterSwitch state;
    Journal journal;

    Printers printers() {
        return {[this] { return JudgeDefaultPrinter(current, {}); },
                [this](const std::wstring& name) {
                    if (!refuse) current = name;
                    return !refuse;
                }};
    }

    // What one press of the button adds to the journal.
    Journal press() {
        const Shell shell{
            [this](const std::wstring& line) { journal.push_back(line); },
            [this](const std::wstring& text, const std::wstring& caption, ConfirmStyle style) {
                EXPECT_EQ(style, ConfirmStyle::question);
                journal.push_back(L"ask " + caption + L": " + text);
                return answer;
            },
            [this](const std::wstring& text) { journal.push_back(L"status " + text); }};
        journal.clear();
        OnTempPrinter(shell, state, printers());
        return journal;
    }
};

}  // namespace

TEST(TempPrinter, SwitchesAfterYesAndRestoresWithoutAsking) {
    Desk desk;
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(desk.press(), (Journal{kQuestion, kSwitched, kActive}));
        EXPECT_EQ(desk.current, L"Microsoft Print to PDF");
        EXPECT_EQ(desk.press(),
                  (Journal{L"[Printer] Restored default printer: Office", L"status "}));
        EXPECT_EQ(desk.current, L"Office");
    }
}

TEST(TempPrinter, ChangesNothingWithoutASwitch) {
    const struct {
        const wchar_t* current;
        bool answer;
        bool refuse;
        Journal journal;
    } cases[] = {
        {L"Office", false, false, {kQuestion}},
        {L"Office", true, true, {kQuestion, kFailed}},
        {L"", true, false, {kQuestion, kFailed}},
        {L"Print to PDF of the office", true, false, {kQuestion, kFailed}},
    };
    for (const auto& c : cases) {
        Desk desk{c.answer, c.refuse, c.current, {}, {}};
        EXPECT_EQ(desk.press(), c.journal) << c.current;
        EXPECT_EQ(desk.current, c.current);
        desk.refuse = false;
        RestoreDefaultPrinterAtExit(desk.state, desk.printers());
        EXPECT_EQ(desk.current, c.current);
    }
}

TEST(TempPrinter, TriesARefusedRestoreAgainAndAtExit) {
    Desk desk;
    desk.press();
    desk.refuse = true;
    EXPECT_EQ(desk.press(), Journal{});
    EXPECT_EQ(desk.press(), Journal{});
    desk.refuse = false;
    RestoreDefaultPrinterAtExit(desk.state, desk.printers());
    EXPECT_EQ(desk.current, L"Office");
}
