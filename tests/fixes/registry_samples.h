// Values of every type, with names and data that are hard to write down.
#pragma once

#include <vector>

#include "fixes/registry_tree.h"

inline std::vector<RegistryValue> hardRegistryValues() {
    std::vector<std::uint8_t> everyByte;
    for (int i = 0; i < 256; ++i)
        everyByte.push_back(static_cast<std::uint8_t>(i));
    std::vector<std::uint8_t> twoStrings = DataOfText(L"one\\");
    const std::vector<std::uint8_t> second = DataOfText(L"\"two\"");
    twoStrings.insert(twoStrings.end(), second.begin(), second.end());
    twoStrings.insert(twoStrings.end(), 2, 0);
    return {
        {L"", kRegistryText, DataOfText(L"the default value")},
        {L"plain", kRegistryText, DataOfText(L"text")},
        {L"empty", kRegistryText, DataOfText(L"")},
        {L"quotes \" and \\ backslashes\\", kRegistryText, DataOfText(LR"(C:\a "b"\)")},
        {L"line\r\nbreak", kRegistryText, DataOfText(L"first\r\nsecond\ttab")},
        {L"\u0429\u4E2D\U0001F600=;[]", kRegistryText, DataOfText(L"\u0429\u4E2D\U0001F600=;[]")},
        {L"no terminator", kRegistryText, {0x41, 0, 0x42, 0}},
        {L"two terminators", kRegistryText, {0x41, 0, 0, 0, 0, 0}},
        {L"half a character", kRegistryText, {0x41, 0, 0x42}},
        {L"nothing", kRegistryText, {}},
        {L"expand", kRegistryExpandableText, DataOfText(L"%TEMP%\\x")},
        {L"binary", kRegistryBinary, everyByte},
        {L"no binary", kRegistryBinary, {}},
        {L"number", kRegistryNumber, DataOfNumber(0x89ABCDEF)},
        {L"short number", kRegistryNumber, {1, 2, 3}},
        {L"none", 0, {1}},
        {L"big-endian", 5, {1, 2, 3, 4}},
        {L"link", 6, {0x41, 0}},
        {L"strings", 7, twoStrings},
        {L"no strings", 7, {}},
        {L"resource list", 8, {9, 8, 7}},
        {L"quad", 11, {1, 2, 3, 4, 5, 6, 7, 0xFF}},
        {L"unknown type", 0x12345, {1, 2}},
        {std::wstring(300, L'n'), kRegistryBinary, everyByte},
    };
}
