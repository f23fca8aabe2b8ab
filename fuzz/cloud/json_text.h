// A value written as JSON text that reads back the same: to compare whole values by. Recursive,
// unlike the reader, so for shallow values only. A zero loses its sign.
#pragma once

#include <cmath>
#include <cstdio>
#include <string>

#include "cloud/json/json.h"

inline std::string JsonText(const std::string& string) {
    std::string text = "\"";
    for (const char c : string)
        text += c == '"' || c == '\\' ? std::string("\\") + c : std::string(1, c);
    return text + '"';
}

inline std::string JsonText(const JsonValue& value) {
    std::string list;
    for (const JsonValue& element : value.elements())
        list += (list.empty() ? "" : ",") + JsonText(element);
    for (const auto& [key, member] : value.members())
        list += (list.empty() ? "" : ",") + JsonText(key) + ":" + JsonText(member);
    switch (value.tag()) {
        case JsonTag::null:
            return "null";
        case JsonTag::boolean:
            return value.boolean() ? "true" : "false";
        case JsonTag::number: {
            if (std::isinf(value.number())) return value.number() < 0 ? "-1e999" : "1e999";
            char digits[40];
            std::snprintf(digits, sizeof digits, "%.17g", value.number() + 0.0);
            return digits;
        }
        case JsonTag::string:
            return JsonText(value.string());
        case JsonTag::array:
            return "[" + list + "]";
        default:
            return "{" + list + "}";
    }
}
