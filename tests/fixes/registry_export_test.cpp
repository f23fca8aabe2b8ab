#include "fixes/registry_export.h"

#include <gtest/gtest.h>

#include "tests/fixes/registry_samples.h"

namespace {

std::wstring textOf(const std::string& file) {
    const std::vector<std::uint8_t> bytes(file.begin(), file.end());
    return WideFromUtf16(bytes.data(), bytes.size());
}

}  // namespace

TEST(RegistryExport, LooksAsWindowsToolsWriteIt) {
    const std::vector<RegistryKeyRecord> keys = {
        {L"Software\\A",
         {{L"", kRegistryText, DataOfText(L"d")},
          {L"a\"b\\", kRegistryText, DataOfText(L"\\\"")},
          {L"n", kRegistryNumber, DataOfNumber(30)},
          {L"x", kRegistryExpandableText, {0x41, 0}},
          {L"q", 11, {1, 0, 0, 0, 0, 0, 0, 0xAF}},
          {L"long", kRegistryBinary, std::vector<std::uint8_t>(27, 0x5A)}}},
        {L"Software\\A\\B", {}},
    };
    const std::wstring bytes25 = [] {
        std::wstring text;
        for (int i = 0; i < 25; ++i)
            text += L"5a,";
        return text;
    }();
    EXPECT_EQ(textOf(WriteRegistryExport(keys)),
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
                  L"[HKEY_CURRENT_USER\\Software\\A\\B]\r\n\r\n");
    EXPECT_EQ(WriteRegistryExport({}).substr(0, 4), std::string("\xFF\xFEW\0", 4));
}

TEST(RegistryExport, ReadsBackEveryTypeAndName) {
    const std::vector<RegistryKeyRecord> keys = {
        {L"Software\\[br]ack\\\u4E2D]", hardRegistryValues()}, {L"Software\\none", {}}};
    EXPECT_EQ(ReadRegistryExport(WriteRegistryExport(keys)), keys);
}

TEST(RegistryExport, NeverTakesADamagedFileForTheWholeOne) {
    const std::vector<RegistryKeyRecord> keys = {{L"Software\\A", hardRegistryValues()}};
    const std::string file = WriteRegistryExport(keys);
    for (std::size_t length = 0; length < file.size(); length += length < 2000 ? 1 : 97)
        ASSERT_NE(ReadRegistryExport(file.substr(0, length)), keys) << length;
    for (std::size_t i = 0; i < file.size(); i += 3) {
        std::string flipped = file;
        flipped[i] = static_cast<char>(flipped[i] ^ 4);
        ASSERT_NE(ReadRegistryExport(flipped), keys) << i;
    }
    // What a line cannot hold is not passed off as held.
    const std::vector<RegistryKeyRecord> broken = {{L"Software\\a\r\nb", {}}};
    EXPECT_NE(ReadRegistryExport(WriteRegistryExport(broken)), broken);
}
