#include "fixes/printer_win.h"

#include <windows.h>

#include <gtest/gtest.h>
#include <winspool.h>

#include <optional>
#include <vector>

#include "fixes/printer_switch.h"
#include "tests/fixes/environment_registry_win.h"

namespace {

constexpr const wchar_t* kPrintersPath = L"System\\CurrentControlSet\\Control\\Print\\Printers\\";
constexpr const wchar_t* kVirtual = L"Microsoft Print to PDF";

struct StagedPrinter {
    std::wstring name;
    std::wstring port = L"LPT1:";
    DWORD attributes = 0;
};

// Wine's spooler lives in the registry of the process, so its printers can be staged. The spooler
// of Windows is a service of its own: there these tests are skipped.
class StagedPrinters : public testing::Test {
  protected:
    void SetUp() override {
        const HMODULE ntdll = GetModuleHandleW(L"ntdll.dll");
        if (GetProcAddress(ntdll, "wine_get_version") == nullptr) {
            GTEST_SKIP() << "needs Wine's spooler";
        }
        borrowed_.emplace_back(userKey(L"Windows"), L"Device");
        machine_.emplace();
    }
    void TearDown() override {
        machine_.reset();
        while (!borrowed_.empty())
            borrowed_.pop_back();
    }

    void add(const StagedPrinter& printer) {
        const RegistryKey key =
            madeKey(HKEY_LOCAL_MACHINE, std::wstring(kPrintersPath) + printer.name);
        setText(key, L"Name", printer.name);
        setText(key, L"Port", printer.port);
        setText(key, L"Printer Driver", L"wineps.drv");
        setText(key, L"Print Processor", L"WinPrint");
        setNumber(key, L"Attributes", printer.attributes);
        borrowed_.emplace_back(userKey(L"Devices"), printer.name);
        setText(userKey(L"Devices"), printer.name, L"winspool," + printer.port);
    }

    // From now on the spooler refuses to make it the default.
    static void refuse(const std::wstring& name) {
        RegDeleteValueW(userKey(L"Devices").get(), name.c_str());
    }

    static void chooseByHand(const std::wstring& name) {
        setText(userKey(L"Windows"), L"Device", name + L",winspool,LPT1:");
    }

    std::wstring defaultAfterPress() {
        const Shell shell{
            [](const std::wstring&) {},
            [](const std::wstring&, const std::wstring&, ConfirmStyle) { return true; },
            [](const std::wstring&) {}};
        OnTempPrinter(shell, state_, SystemPrinters());
        return QueryDefaultPrinter().name;
    }

    PrinterSwitch state_;

  private:
    static RegistryKey userKey(const std::wstring& name) {
        return madeKey(HKEY_CURRENT_USER,
                       L"Software\\Microsoft\\Windows NT\\CurrentVersion\\" + name);
    }

    std::vector<BorrowedText> borrowed_;
    std::optional<EmptyMachine> machine_;
};

}  // namespace

TEST_F(StagedPrinters, AreReadFromTheSpooler) {
    EXPECT_TRUE(QueryDefaultPrinter().name.empty());

    const struct {
        StagedPrinter printer;
        bool isNetwork;
        bool isOffline;
        bool isVirtual;
    } cases[] = {
        {{L"Local"}, false, false, false},
        {{kVirtual, L"PORTPROMPT:"}, false, false, true},
        {{L"Queue", L"\\\\server\\queue"}, true, false, false},
        {{L"Direct", L"IP_192.168.0.9"}, true, false, false},
        {{L"Shared", L"LPT1:", PRINTER_ATTRIBUTE_NETWORK}, true, false, false},
        {{L"Sleeping", L"LPT1:", PRINTER_ATTRIBUTE_WORK_OFFLINE}, false, true, false},
        {{L"Работа", L"IP_1", PRINTER_ATTRIBUTE_WORK_OFFLINE}, true, true, false},
    };
    for (const auto& c : cases)
        add(c.printer);
    EXPECT_TRUE(QueryDefaultPrinter().name.empty());
    for (const auto& c : cases) {
        ASSERT_TRUE(SystemPrinters().setDefault(c.printer.name)) << c.printer.name;
        const DefaultPrinterInfo printer = QueryDefaultPrinter();
        EXPECT_EQ(printer.name, c.printer.name);
        EXPECT_EQ(printer.isNetwork, c.isNetwork) << c.printer.name;
        EXPECT_EQ(printer.isOffline, c.isOffline) << c.printer.name;
        EXPECT_EQ(printer.isVirtual, c.isVirtual) << c.printer.name;
    }
}

TEST_F(StagedPrinters, AreFoundByTheirExactName) {
    add({L"Queue", L"\\\\server\\queue"});
    chooseByHand(L"queue");
    EXPECT_EQ(QueryDefaultPrinter().name, L"queue");
    EXPECT_FALSE(QueryDefaultPrinter().isNetwork);

    chooseByHand(std::wstring(255, L'n'));
    EXPECT_EQ(QueryDefaultPrinter().name.size(), 255U);
    chooseByHand(std::wstring(256, L'n'));
    EXPECT_TRUE(QueryDefaultPrinter().name.empty());
}

TEST_F(StagedPrinters, AreSwitchedAndRestored) {
    add({L"Office", L"\\\\server\\queue"});
    add({L"Other"});
    chooseByHand(L"Office");
    EXPECT_EQ(defaultAfterPress(), L"Office") << "nothing to switch to";

    add({kVirtual});
    EXPECT_EQ(defaultAfterPress(), kVirtual);
    chooseByHand(L"Other");
    EXPECT_EQ(defaultAfterPress(), L"Office");

    EXPECT_EQ(defaultAfterPress(), kVirtual);
    refuse(L"Office");
    EXPECT_EQ(defaultAfterPress(), kVirtual);
    add({L"Office"});
    RestoreDefaultPrinterAtExit(state_, SystemPrinters());
    EXPECT_EQ(QueryDefaultPrinter().name, L"Office");
}
