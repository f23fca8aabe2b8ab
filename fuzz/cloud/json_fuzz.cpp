// Any bytes through the JSON reader: what it accepts survives being written and read again, and
// being copied and moved; what another reader accepts, it accepts with the same values.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

#include "base/text.h"
#include "cloud/json.h"
#include "fuzz/require.h"

#if __has_include(<nlohmann/json.hpp>)
#include <nlohmann/json.hpp>
#define HAVE_PEER 1
#endif

namespace {

// The helpers below recurse, unlike the reader.
constexpr std::size_t kLongestChecked = 1 << 14;

void WriteString(std::string& text, const std::string& string) {
    text += '"';
    for (const char c : string) {
        if (c == '"' || c == '\\') text += '\\';
        text += c;
    }
    text += '"';
}

void Write(std::string& text, const JsonValue& value) {
    switch (value.tag()) {
        case JsonTag::null:
            text += "null";
            break;
        case JsonTag::boolean:
            text += value.boolean() ? "true" : "false";
            break;
        case JsonTag::number: {
            char digits[40];
            std::snprintf(digits, sizeof digits, "%.17g", value.number());
            text += std::isinf(value.number()) ? (value.number() < 0 ? "-1e999" : "1e999") : digits;
            break;
        }
        case JsonTag::string:
            WriteString(text, value.string());
            break;
        case JsonTag::array:
            text += '[';
            for (const JsonValue& element : value.elements()) {
                if (text.back() != '[') text += ',';
                Write(text, element);
            }
            text += ']';
            break;
        case JsonTag::object:
            text += '{';
            for (const auto& [key, member] : value.members()) {
                if (text.back() != '{') text += ',';
                WriteString(text, key);
                text += ':';
                Write(text, member);
            }
            text += '}';
            break;
    }
}

std::string Written(const JsonValue& value) {
    std::string text;
    Write(text, value);
    return text;
}

#if defined(HAVE_PEER)
void Compare(const JsonValue& ours, const nlohmann::json& theirs) {
    switch (theirs.type()) {
        case nlohmann::json::value_t::null:
            return require(ours.tag() == JsonTag::null, "null stays null");
        case nlohmann::json::value_t::boolean:
            require(ours.tag() == JsonTag::boolean, "a boolean is one");
            return require(ours.boolean() == theirs.get<bool>(), "booleans agree");
        case nlohmann::json::value_t::string:
            require(ours.tag() == JsonTag::string, "a string is one");
            // Ours keeps surrogate pairs apart; as wide text both are the same.
            return require(wideFromUtf8(ours.string()) == wideFromUtf8(theirs.get<std::string>()),
                           "strings agree");
        case nlohmann::json::value_t::array:
            require(ours.tag() == JsonTag::array, "an array is one");
            require(ours.elements().size() == theirs.size(), "arrays are as long");
            for (std::size_t i = 0; i < theirs.size(); ++i)
                Compare(ours.elements()[i], theirs[i]);
            return;
        case nlohmann::json::value_t::object:
            require(ours.tag() == JsonTag::object, "an object is one");
            for (const auto& [key, member] : ours.members()) {
                if (theirs.contains(key)) Compare(member, theirs[key]);
            }
            return;
        default:
            require(ours.tag() == JsonTag::number, "a number is one");
            return require(ours.number() == theirs.get<double>(), "numbers agree");
    }
}

void CompareWithPeer(const JsonValue& ours, std::string_view text) {
    // The peer passes over a byte-order mark and ends at a zero byte; neither is JSON.
    if (text.starts_with("\xEF\xBB\xBF") || text.find('\0') != text.npos) return;
    const auto theirs = nlohmann::json::parse(text, nullptr, false);
    if (!theirs.is_discarded()) Compare(ours, theirs);
}
#else
void CompareWithPeer(const JsonValue&, std::string_view) {}
#endif

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    JsonValue value = ParseJson(text);
    JsonValue copy = value;
    if (size <= kLongestChecked) {
        const std::string written = Written(value);
        require(Written(ParseJson(written)) == written, "what is written reads back the same");
        require(Written(copy) == written, "a copy is the same");
        CompareWithPeer(value, text);
    }
    copy = Member(copy, "a");
    const JsonValue moved = std::move(value);
    require(value.tag() == JsonTag::null, "a value moved from is null");
    return 0;
}
