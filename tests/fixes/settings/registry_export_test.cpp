#include "fixes/settings/registry_export.h"

#include <gtest/gtest.h>

TEST(RegistryExport, LooksAsWindowsToolsWriteIt) {
    const std::vector<RegistryKeyRecord> keys = {
        {L"Software\\A",
         {{L"", kRegistryText, DataOfText(L"d")},
          {L"a\"b\\", kRegistryText, DataOfText(L"\\\"")},
          {L"n", kRegistryNumber, DataOfNumber(30)},
          {L"x", kRegistryExpandableText, {0x41, 0}},
          {L"q", 11, {1, 0, 0, 0, 0, 0, 0, 0xAF}},
          {L"long", kRegistryBinary, std::vector<std::uint8_t>(27, 0x5A)}}},
        {L"Software\\A\\B]\u4E2D", {}},
    };
    std::wstring bytes25;
    for (int i = 0; i < 25; ++i)
        bytes25 += L"5a,";
    const std::string file = WriteRegistryExport(keys).value_or("");
    const std::vector<std::uint8_t> bytes(file.begin(), file.end());
    EXPECT_EQ(WideFromUtf16(bytes.data(), bytes.size()),
              L"\uFEFFWindows Registry Editor Version 5.00\r\n\r\n"
              L"[HKEY_CURRENT_USER\\Software\\A]\r\n"
              L"@=\"d\"\r\n"
              L"\"a\\\"b\\\\\"=\"\\\\\\\"\"\r\n"
              L"\"n\"=dword:0000001e\r\n"
              L"\"x\"=hex(2):41,00\r\n"
              L"\"q\"=hex(b):01,00,00,00,00,00,00,af\r\n"
              L"\"long\"=hex:" +
                  bytes25 +
                  L"\\\r\n  5a,5a\r\n\r\n"
                  L"[HKEY_CURRENT_USER\\Software\\A\\B]\u4E2D]\r\n\r\n");
    EXPECT_EQ(file.substr(0, 4), std::string("\xFF\xFEW\0", 4));
    EXPECT_FALSE(WriteRegistryExport({{L"Software\\a\nb", {}}}));
}
