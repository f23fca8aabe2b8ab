#include "cloud/json/json.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <sstream>

namespace {

// With strings as they are.
std::string Shown(const JsonValue& value) {
    std::ostringstream text;
    switch (value.tag()) {
        case JsonTag::null:
            return "null";
        case JsonTag::boolean:
            return value.boolean() ? "true" : "false";
        case JsonTag::number:
            text << value.number();
            return text.str();
        case JsonTag::string:
            return "'" + value.string() + "'";
        case JsonTag::array:
            for (const JsonValue& element : value.elements())
                text << Shown(element) << " ";
            return "[ " + text.str() + "]";
        default:
            for (const auto& [key, member] : value.members())
                text << key << ":" << Shown(member) << " ";
            return "{ " + text.str() + "}";
    }
}

}  // namespace

TEST(Json, ReadsWhatIsValid) {
    const std::string_view cases[][2] = {
        {" \t\r\n true \t\r\n ", "true"},
        {"[1 , false,\"x\",null ,\"\"]", "[ 1 false 'x' null '' ]"},
        {"[[],[[ ]],{ \n}]", "[ [ ] [ [ ] ] { } ]"},
        {R"({ "b" : { "c" : [ -0.5 ] } , "" : 1,"a":2})", "{ :1 a:2 b:{ c:[ -0.5 ] } }"},
        {R"({"a":1,"b":2,"\u0061":[3]})", "{ a:[ 3 ] b:2 }"},
        {R"("\u0041\u07FF\u0800\uffff\u00E9 the \u0065nd")",
         "'A\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xC3\xA9 the end'"},
        {R"("\/\b\f\n\r\t\uD83D\uDE00\"\\")", "'/\b\f\n\r\t\xED\xA0\xBD\xED\xB8\x80\"\\'"},
        {"\"\x01\n\xF0\x9F\x98\x80 \xFF\x80\"", "'\x01\n\xF0\x9F\x98\x80 \xFF\x80'"},
    };
    for (const auto& [text, read] : cases)
        EXPECT_EQ(Shown(ParseJson(text)), read) << text;
    EXPECT_EQ(ParseJson(R"("\u0000")").string(), std::string(1, '\0'));
    EXPECT_EQ(&Member(ParseJson("[1]"), "a"), &Member(ParseJson("{\"b\":1}"), "a"));
}

TEST(Json, RefusesEverythingElse) {
    std::istringstream texts(
        "~ ~nul~truex~True~'a'~0x10~-inf~nan~\xEF\xBB\xBF{}~\f1~/**/1~{} x~1 2~[1,]~[,1]~[1 2]~]~[1}"
        "~[1]]~{}}~{,}~{a:1}~{1:1}"
        R"(~{"a":1]~{"a":1,}~{"a"}~{"a":}~{"a" 1}~{"a":1 "b":2}~{"a"::1}~{"a":1,,"b":2}~["a" "b"])"
        R"(~"a""b"~"\x"~"\u12"~"\u12G4"~"a~[1~{"a":1~{"a~"\u004~[true,tru)");
    for (std::string text; std::getline(texts, text, '~');)
        EXPECT_EQ(ParseJson(text).tag(), JsonTag::null) << text;
    EXPECT_EQ(ParseJson(std::string_view("1\0", 2)).tag(), JsonTag::null);
}

TEST(Json, ReadsNumbersAsStrtodDoes) {
    std::istringstream texts(
        "0 +5 007 1.5 -2.25e2 1E-2 .5 5. -.5e1 1-2 1e 1e+ 1e5e5 1.2.3 - + . e5 --1 +-1 -+1 ++1 "
        "1e309 -1e309 4.9e-324 2e-324 -1e-400 +1e999 1e99999999999999999999 "
        "1e-99999999999999999999 9007199254740993 1.7976931348623157e308 1.7976931348623159e308 "
        "2.2250738585072011e-308 0.1e-5000000000 1000e9223372036854775807 "
        "0.0001e-9223372036854775808");
    for (std::string text; texts >> text;) {
        const JsonValue value = ParseJson(text);
        ASSERT_EQ(value.tag(), JsonTag::number) << text;
        EXPECT_EQ(value.number(), std::strtod(text.c_str(), nullptr)) << text;
    }
    EXPECT_TRUE(std::signbit(ParseJson("-0").number()));

    const std::string zeros(2000000, '0');
    EXPECT_EQ(ParseJson("0." + zeros + "1e2000001").number(), 1.0);
    EXPECT_EQ(ParseJson("1" + zeros + "e-2000400").number(), 0.0);
    EXPECT_EQ(ParseJson("1" + zeros).number(), std::numeric_limits<double>::infinity());
}

TEST(Json, NoDepthReachesTheCallStack) {
    for (const auto& [opening, middle, closing] : {std::tuple{"[", "", "]"},
                                                   {"{\"k\":[1,", "0", ",2]}"},
                                                   {"[[],{\"a\":[0]},", "[]", ",[[1]]]"}}) {
        std::string document, rest = middle;
        for (int depth = 0; depth < 100000; ++depth) {
            document += opening;
            rest += closing;
        }
        document += rest;
        JsonValue value = ParseJson(document);
        EXPECT_NE(value.tag(), JsonTag::null);
        JsonValue copy = value;
        value = std::move(copy);
        EXPECT_EQ(copy.tag(), JsonTag::null);
        EXPECT_EQ(ParseJson(document.substr(0, document.size() - 1)).tag(), JsonTag::null);
    }
}
