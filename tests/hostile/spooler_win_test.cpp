// A spooler that answers when the test lets it, in place of the system's.
#include <windows.h>

#include <gtest/gtest.h>
#include <winspool.h>

#include <atomic>
#include <string>

#include "base/handle_win.h"
#include "fixes/health/printer_switch.h"
#include "fixes/health/printer_win.h"
#include "tests/fake_host.h"

namespace {

constexpr DWORD kLongMs = 10000;
constexpr unsigned kShortMs = 100;

enum class Call { none, get, set };

struct Spooler {
    std::wstring current = L"Office";
    std::atomic<Call> hanging = Call::none;
    KernelHandle released{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    KernelHandle changed{CreateEventW(nullptr, FALSE, FALSE, nullptr)};
    KernelHandle seen{CreateEventW(nullptr, FALSE, FALSE, nullptr)};
    /// Told of a change before the call returns.
    HWND window = nullptr;
};

// Never destroyed: an abandoned call may still be in it.
Spooler* spooler = nullptr;

Spooler& enter(Call call) {
    Spooler& own = *spooler;
    if (own.hanging == call) WaitForSingleObject(own.released.get(), kLongMs);
    return own;
}

}  // namespace

// The header does not declare these as imported: the linker takes a definition of the same name.
extern "C" {

BOOL WINAPI GetDefaultPrinterW(LPWSTR buffer, LPDWORD) {
    wcscpy(buffer, enter(Call::get).current.c_str());
    return TRUE;
}

BOOL WINAPI SetDefaultPrinterW(LPCWSTR name) {
    Spooler& own = enter(Call::set);
    own.current = name;
    if (own.window != nullptr) return SendMessageW(own.window, WM_NULL, 0, 0) == 0;
    SignalObjectAndWait(own.changed.get(), own.seen.get(), kLongMs, FALSE);
    return TRUE;
}

}  // extern "C"

TEST(HostileSpooler, MaySendMessagesToItsCallerAndNoAnswerIsNoPrinter) {
    spooler = new Spooler;
    spooler->window =
        CreateWindowW(L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    EXPECT_TRUE(SystemPrinters(kLongMs).setDefault(L"Other", L""));
    DestroyWindow(spooler->window);
    EXPECT_EQ(SystemPrinters(kLongMs).queryDefault().name, L"Other");
    spooler->hanging = Call::get;
    EXPECT_EQ(SystemPrinters(kShortMs).queryDefault().name, L"");
    SetEvent(spooler->released.get());
}

TEST(HostileSpooler, ASwitchThatComesTooLateIsTakenBack) {
    spooler = new Spooler;
    FakeHost report;
    PrinterSwitch state;
    spooler->hanging = Call::set;
    OnTempPrinter(report.host(), state, SystemPrinters(kShortMs));
    EXPECT_EQ(report.lines.back(),
              L"[Printer] Switch failed (already a virtual printer, or blocked by policy).");
    SetEvent(spooler->released.get());
    for (const std::wstring expected : {L"Microsoft Print to PDF", L"Office"}) {
        ASSERT_EQ(WaitForSingleObject(spooler->changed.get(), kLongMs), WAIT_OBJECT_0);
        EXPECT_EQ(spooler->current, expected);
        SetEvent(spooler->seen.get());
    }
}
