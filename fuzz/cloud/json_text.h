// A value written as JSON text that reads back the same: to compare whole values by. Recursive,
// unlike the reader, so for shallow values only. A zero loses its sign.
#pragma once

#include <cmath>
#include <cstdio>
#include <string>

#include "cloud/json/json.h"

inline void AppendJsonText(std::string& text, const std::string& string) {
    text += '"';
    for (const char c : string) {
        if (c == '"' || c == '\\') text += '\\';
        text += c;
    }
    text += '"';
}

inline void AppendJsonText(std::string& text, const JsonValue& value) {
    const auto begin = text.size();
    const auto separate = [&] {
        if (text.size() > begin + 1) text += ',';
    };
    switch (value.tag()) {
        case JsonTag::null:
            text += "null";
            return;
        case JsonTag::boolean:
            text += value.boolean() ? "true" : "false";
            return;
        case JsonTag::number: {
            char digits[40];
            std::snprintf(digits, sizeof digits, "%.17g", value.number() + 0.0);
            text += std::isinf(value.number()) ? (value.number() < 0 ? "-1e999" : "1e999") : digits;
            return;
        }
        case JsonTag::string:
            return AppendJsonText(text, value.string());
        case JsonTag::array:
            text += '[';
            for (const JsonValue& element : value.elements()) {
                separate();
                AppendJsonText(text, element);
            }
            text += ']';
            return;
        case JsonTag::object:
            text += '{';
            for (const auto& [key, member] : value.members()) {
                separate();
                AppendJsonText(text, key);
                text += ':';
                AppendJsonText(text, member);
            }
            text += '}';
            return;
    }
}

inline std::string JsonText(const JsonValue& value) {
    std::string text;
    AppendJsonText(text, value);
    return text;
}
