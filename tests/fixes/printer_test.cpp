#include "fixes/printer.h"

#include <gtest/gtest.h>

#include "base/text.h"

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
}

TEST(DefaultPrinter, IsVirtualByItsNameAlone) {
    EXPECT_TRUE(JudgeDefaultPrinter(L"Microsoft Print to PDF", {}).isVirtual);
    EXPECT_TRUE(JudgeDefaultPrinter(L"Print to PDF (Office)", {}).isVirtual);
    EXPECT_FALSE(JudgeDefaultPrinter(L"Print To PDF", {}).isVirtual);

    const PrinterEntry unnamed{L"", L"IP_1", 0x10, 0x80};
    EXPECT_FALSE(JudgeDefaultPrinter(L"", {&unnamed, 1}).isNetwork);
}
