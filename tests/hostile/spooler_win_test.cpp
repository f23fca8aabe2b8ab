// A spooler that answers when the test lets it, in place of the system's.
#include <windows.h>

#include <gtest/gtest.h>
#include <winspool.h>

#include <mutex>
#include <set>
#include <string>

#include "base/handle_win.h"
#include "fixes/health/printer_switch.h"
#include "fixes/health/printer_win.h"
#include "tests/fake_host.h"

namespace {

constexpr DWORD kLongMs = 20000;
constexpr unsigned kShortMs = 100;

struct Spooler {
    std::mutex mutex;
    std::wstring current = L"Office";
    std::wstring port = L"LPT1:";
    DWORD status = 0;
    /// Calls by these names wait until `released` is set.
    std::set<std::string> hanging;
    KernelHandle released{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    KernelHandle changed{CreateEventW(nullptr, FALSE, FALSE, nullptr)};

    void enter(const char* call) {
        bool waits = false;
        {
            const std::lock_guard lock(mutex);
            waits = hanging.contains(call);
        }
        if (waits) WaitForSingleObject(released.get(), kLongMs);
    }
};

// Never destroyed: an abandoned call may still be in it.
Spooler* spooler = nullptr;

}  // namespace

// The header does not declare these as imported: the linker takes a definition of the same name.
extern "C" {

BOOL WINAPI GetDefaultPrinterW(LPWSTR buffer, LPDWORD size) {
    Spooler* const own = spooler;
    own->enter("get");
    const std::lock_guard lock(own->mutex);
    if (*size <= own->current.size()) return FALSE;
    wcscpy(buffer, own->current.c_str());
    return TRUE;
}

BOOL WINAPI SetDefaultPrinterW(LPCWSTR name) {
    Spooler* const own = spooler;
    own->enter("set");
    const std::lock_guard lock(own->mutex);
    own->current = name;
    SetEvent(own->changed.get());
    return TRUE;
}

BOOL WINAPI EnumPrintersW(DWORD, LPWSTR, DWORD, LPBYTE buffer, DWORD size, LPDWORD needed,
                          LPDWORD count) {
    Spooler* const own = spooler;
    own->enter("enum");
    *needed = sizeof(PRINTER_INFO_2W);
    *count = 0;
    if (size < *needed) return FALSE;
    static wchar_t name[] = L"Office";
    auto* printer = reinterpret_cast<PRINTER_INFO_2W*>(buffer);
    printer->pPrinterName = name;
    printer->pPortName = own->port.data();
    printer->Status = own->status;
    *count = 1;
    return TRUE;
}

}  // extern "C"

namespace {

DefaultPrinterInfo query() {
    return SystemPrinters(kShortMs).queryDefault();
}

class HostileSpooler : public testing::Test {
  protected:
    void SetUp() override { spooler = new Spooler; }
    // What still hangs comes to its end before the next test has a spooler of its own.
    void TearDown() override { SetEvent(spooler->released.get()); }

    static void hang(std::set<std::string> calls) {
        const std::lock_guard lock(spooler->mutex);
        spooler->hanging = std::move(calls);
    }
    static bool becomesDefault(std::wstring_view name) {
        while (WaitForSingleObject(spooler->changed.get(), kLongMs) == WAIT_OBJECT_0) {
            const std::lock_guard lock(spooler->mutex);
            if (spooler->current == name) return true;
        }
        return false;
    }
};

}  // namespace

TEST_F(HostileSpooler, OfTheStatusOnlyOfflineIsOffline) {
    constexpr DWORD kOffline = PRINTER_STATUS_OFFLINE;
    for (const DWORD status : {DWORD{PRINTER_STATUS_ERROR}, DWORD{PRINTER_STATUS_PAUSED},
                               DWORD{PRINTER_STATUS_PAPER_OUT}, kOffline}) {
        spooler->status = status;
        EXPECT_EQ(query().isOffline, status == kOffline) << status;
    }
}

TEST_F(HostileSpooler, NoAnswerIsNoPrinterOrOneJudgedByItsName) {
    spooler->port = L"\\\\gone\\queue";
    EXPECT_TRUE(query().isNetwork);
    hang({"enum"});
    EXPECT_EQ(query().name, L"Office");
    EXPECT_FALSE(query().isNetwork);
    hang({"get"});
    EXPECT_EQ(query().name, L"");
}

TEST_F(HostileSpooler, ASwitchThatComesTooLateIsTakenBack) {
    FakeHost report;
    PrinterSwitch state;
    hang({"set"});
    OnTempPrinter(report.host(), state, SystemPrinters(kShortMs));
    EXPECT_EQ(report.lines.back(),
              L"[Printer] Switch failed (already a virtual printer, or blocked by policy).");
    hang({});
    SetEvent(spooler->released.get());
    EXPECT_TRUE(becomesDefault(L"Office"));
}

TEST_F(HostileSpooler, ARestoreThatComesLateHolds) {
    FakeHost report;
    PrinterSwitch state;
    OnTempPrinter(report.host(), state, SystemPrinters(kShortMs));
    EXPECT_TRUE(becomesDefault(L"Microsoft Print to PDF"));
    hang({"set"});
    const std::size_t lineCount = report.lines.size();
    OnTempPrinter(report.host(), state, SystemPrinters(kShortMs));
    EXPECT_EQ(report.lines.size(), lineCount);
    // The program ends although nobody answers; whoever answers late still gives the printer back.
    RestoreDefaultPrinterAtExit(state, SystemPrinters(kShortMs));
    EXPECT_EQ(state.savedDefaultPrinter, L"Office");
    SetEvent(spooler->released.get());
    EXPECT_TRUE(becomesDefault(L"Office"));
}
