// The default printer judged, switched and put back, with a spooler that may refuse.
#include "fixes/health/printer.h"

#include <gtest/gtest.h>

#include <functional>
#include <utility>
#include <vector>

#include "base/text.h"
#include "fixes/health/printer_switch.h"

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
const std::wstring kRestored = L"[Printer] Restored default printer: Office";

// A user, a host and a spooler; what they were asked goes into one journal.
struct Desk {
    bool answer = true;
    bool refuse = false;
    std::wstring current = L"Office";
    std::function<void()> whileAsking;
    PrinterSwitch state;
    Journal journal;

    Printers printers() {
        return {[this] { return JudgeDefaultPrinter(current, {}); },
                [this](const std::wstring& name, const std::wstring& otherwise) {
                    EXPECT_EQ(otherwise, state.savedDefaultPrinter.empty() ? current : L"");
                    if (!refuse) current = name;
                    return !refuse;
                }};
    }

    // What one press of the button adds to the journal.
    Journal press() {
        const ActionHost host{
            [this](const std::wstring& line) { journal.push_back(line); },
            [this](const std::wstring& text, const std::wstring& caption, ConfirmStyle style) {
                EXPECT_EQ(style, ConfirmStyle::question);
                journal.push_back(L"ask " + caption + L": " + text);
                if (const auto meanwhile = std::exchange(whileAsking, {})) meanwhile();
                return answer;
            },
            [this](const std::wstring& text) { journal.push_back(L"status " + text); }};
        journal.clear();
        OnTempPrinter(host, state, printers());
        return journal;
    }
};

}  // namespace

TEST(DefaultPrinter, IsJudgedByPortAttributesAndStatus) {
    const struct {
        PrinterEntry entry;
        bool isNetwork;
        bool isOffline;
    } cases[] = {
        {{L"Office", L"", 0, 0}, false, false},
        {{L"Office", L"LPT1:", ~0x410U, ~0x80U}, false, false},
        {{L"Office", L"\\\\", 0, 0}, true, false},
        {{L"Office", L"\\", 0, 0}, false, false},
        {{L"Office", L"C:\\\\out", 0, 0}, false, false},
        {{L"Office", L"IP_", 0, 0}, true, false},
        {{L"Office", L"IP", 0x10, 0}, true, false},
        {{L"Office", L"ip_10.0.0.9", 0, 0}, false, false},
        {{L"Office", L"LPT1:", 0x400, 0}, false, true},
        {{L"Office", L"IP_10.0.0.9", 0, 0x80}, true, true},
        {{L"office", L"IP_10.0.0.9", 0x410, 0x80}, false, false},
        {{L"Office 2", L"IP_10.0.0.9", 0x410, 0x80}, false, false},
    };
    for (const auto& c : cases) {
        const PrinterEntry entries[] = {c.entry, {L"Office", L"LPT1:", 0, 0}};
        const DefaultPrinterInfo printer = JudgeDefaultPrinter(L"Office", entries);
        EXPECT_EQ(printer.isNetwork, c.isNetwork)
            << utf8FromWide(c.entry.port) << ' ' << c.entry.attributes;
        EXPECT_EQ(printer.isOffline, c.isOffline)
            << utf8FromWide(c.entry.port) << ' ' << c.entry.attributes;
    }
    for (const wchar_t* name : {L"Microsoft Print to PDF", L"Print to PDF (Office)"})
        EXPECT_TRUE(JudgeDefaultPrinter(name, {}).isVirtual);
    EXPECT_FALSE(JudgeDefaultPrinter(L"Print To PDF", {}).isVirtual);
    const PrinterEntry unnamed{L"", L"IP_1", 0x10, 0x80};
    EXPECT_FALSE(JudgeDefaultPrinter(L"", {&unnamed, 1}).isNetwork);
}

TEST(TempPrinter, IsSwitchedAfterYesAndPutBackWithoutAsking) {
    Desk desk;
    const auto press = [&](const std::wstring& current, bool answer, bool refuse) {
        desk.current = current;
        desk.answer = answer;
        desk.refuse = refuse;
        return desk.press();
    };
    EXPECT_EQ(press(L"Office", false, false), Journal{kQuestion});
    EXPECT_EQ(press(L"Office", true, true), (Journal{kQuestion, kFailed}));
    EXPECT_EQ(press(L"", true, false), (Journal{kQuestion, kFailed}));
    EXPECT_EQ(press(L"Print to PDF, far", true, false), (Journal{kQuestion, kFailed}));
    EXPECT_EQ(desk.current, L"Print to PDF, far");
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(press(L"Office", true, false), (Journal{kQuestion, kSwitched, kActive}));
        EXPECT_EQ(desk.current, L"Microsoft Print to PDF");
        EXPECT_EQ(press(L"Other", false, true), Journal{}) << "refused";
        EXPECT_EQ(press(L"Other", false, false), (Journal{kRestored, L"status "}));
        EXPECT_EQ(desk.current, L"Office");
    }
    RestoreDefaultPrinterAtExit(desk.state, desk.printers());
    EXPECT_EQ(desk.current, L"Office");

    // The question has no owner window, so the button can be pressed again while it stands.
    desk.answer = true;
    desk.whileAsking = [&] { desk.press(); };
    EXPECT_EQ(desk.press(), (Journal{kQuestion, kSwitched, kActive, kFailed}));
    RestoreDefaultPrinterAtExit(desk.state, desk.printers());
    EXPECT_EQ(desk.current, L"Office");
}
