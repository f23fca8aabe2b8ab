#include "cloud/json/json.h"

#include <gtest/gtest.h>
#include <pthread.h>

#include <cmath>
#include <cstdlib>
#include <functional>
#include <limits>
#include <sstream>

#include "tests/cloud/json_text.h"

namespace {

std::string Repeated(std::string_view text, std::size_t times) {
    std::string repeated;
    repeated.reserve(text.size() * times);
    while (times-- > 0)
        repeated += text;
    return repeated;
}

void OnSmallStack(const std::function<void()>& work) {
    constexpr std::size_t kStackBytes = 1 << 20;
    pthread_attr_t attributes;
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, kStackBytes), 0);
    pthread_t thread{};
    const auto run = [](void* argument) -> void* {
        (*static_cast<const std::function<void()>*>(argument))();
        return nullptr;
    };
    void* argument = const_cast<void*>(static_cast<const void*>(&work));
    ASSERT_EQ(pthread_create(&thread, &attributes, run, argument), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

}  // namespace

TEST(Json, ReadsWhatIsValid) {
    const struct {
        const char* text;
        const char* read;
    } cases[] = {
        {" \t\r\n true \t\r\n ", "true"},
        {"[1 , false,\"x\",null ,\"\"]", R"([1,false,"x",null,""])"},
        {"[[],[[ ]],{ \n}]", "[[],[[]],{}]"},
        {R"({ "b" : { "c" : [ -0.5 ] } , "" : 1,"a":2})", R"({"":1,"a":2,"b":{"c":[-0.5]}})"},
        {R"({"a":1,"b":2,"\u0061":[3]})", R"({"a":[3],"b":2})"},
        {R"({"é":1,"z":2})", R"({"z":2,"é":1})"},
    };
    for (const auto& [text, read] : cases)
        EXPECT_EQ(JsonText(ParseJson(text)), read) << text;
}

TEST(Json, RefusesEverythingElse) {
    std::istringstream texts(
        "~ ~nul~truex~True~'a'~0x10~-inf~nan~\xEF\xBB\xBF{}~\f1~/**/1~{} x~1 2~[1,]~[,1]~[1 2]~]~[1}"
        "~[1]]~{}}~{,}~{a:1}~{1:1}"
        R"(~{"a":1]~{"a":1,}~{"a"}~{"a":}~{"a" 1}~{"a":1 "b":2}~{"a"::1}~{"a":1,,"b":2}~["a" "b"])"
        R"(~"a""b"~"\x"~"\u12"~"\u12G4")");
    for (std::string text; std::getline(texts, text, '~');)
        EXPECT_EQ(ParseJson(text).tag(), JsonTag::null) << text;
    EXPECT_EQ(ParseJson(std::string_view("1\0", 2)).tag(), JsonTag::null);

    const std::string_view document =
        R"({"version":7,"rules":[{"id":"demo-001","t":"\u00e9\n","x":[true,null,-1.5e3]}]})";
    ASSERT_EQ(ParseJson(document).tag(), JsonTag::object);
    for (std::size_t length = 0; length < document.size(); ++length)
        EXPECT_EQ(ParseJson(document.substr(0, length)).tag(), JsonTag::null) << length;
}

TEST(Json, ReadsNumbersAsStrtodDoes) {
    std::istringstream texts(
        "0 +5 007 1.5 -2.25e2 1E-2 .5 5. -.5e1 1-2 1e 1e+ 1e5e5 1.2.3 - + . e5 --1 +-1 -+1 ++1 1e308 "
        "1e309 -1e309 1e-320 4.9e-324 2e-324 -1e-400 +1e999 1e99999999999999999999 "
        "1e-99999999999999999999 9007199254740993 1.7976931348623157e308 1.7976931348623159e308 "
        "2.2250738585072011e-308 0.1e-5000000000 1000e9223372036854775807 "
        "0.0001e-9223372036854775808");
    for (std::string text; texts >> text;) {
        const JsonValue value = ParseJson(text);
        ASSERT_EQ(value.tag(), JsonTag::number) << text;
        EXPECT_EQ(value.number(), std::strtod(text.c_str(), nullptr)) << text;
    }
    EXPECT_TRUE(std::signbit(ParseJson("-0").number()));
}

TEST(Json, ReadsMillionsOfDigits) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    const std::string sevens = Repeated("7", 2000000);
    const std::string zeros = Repeated("0", 2000000);
    EXPECT_EQ(ParseJson(sevens).number(), kInfinity);
    EXPECT_EQ(ParseJson("0." + sevens).number(), 7.0 / 9.0);
    EXPECT_EQ(ParseJson("-0." + sevens + "e-400").number(), 0.0);
    EXPECT_EQ(ParseJson("0." + zeros + "1e2000001").number(), 1.0);
    EXPECT_EQ(ParseJson("0." + zeros + "1e2000400").number(), kInfinity);
    EXPECT_EQ(ParseJson("1" + zeros + "e-2000400").number(), 0.0);
}

TEST(Json, ReadsEscapesAndLeavesOtherBytesAlone) {
    const struct {
        std::string_view text;
        std::string_view string;
    } cases[] = {
        {R"("\"\\\/\b\f\n\r\t")", "\"\\/\b\f\n\r\t"},
        {R"("\u0041\u007f\u0080\u07FF\u0800\uffff\u00e9\u00E9")",
         "A\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xC3\xA9\xC3\xA9"},
        {R"("\uD83D\uDE00 until the \u0065nd")", "\xED\xA0\xBD\xED\xB8\x80 until the end"},
        {R"("\u0000")", std::string_view("\0", 1)},
        {std::string_view("\"a\0b\n\x01\"", 7), std::string_view("a\0b\n\x01", 5)},
        {"\"\xF0\x9F\x98\x80 \xFF\x80\"", "\xF0\x9F\x98\x80 \xFF\x80"},
    };
    for (const auto& c : cases) {
        const JsonValue value = ParseJson(c.text);
        ASSERT_EQ(value.tag(), JsonTag::string) << c.text;
        EXPECT_EQ(value.string(), c.string) << c.text;
    }
}

TEST(Json, AccessorsOfAnotherKindAreEmpty) {
    for (const char* text : {"null", "true", "1", "\"s\"", "[1]", "{\"k\":1}"}) {
        const JsonValue value = ParseJson(text);
        EXPECT_EQ(value.boolean(), value.tag() == JsonTag::boolean) << text;
        EXPECT_EQ(value.number() != 0, value.tag() == JsonTag::number) << text;
        EXPECT_EQ(!value.string().empty(), value.tag() == JsonTag::string) << text;
        EXPECT_EQ(!value.elements().empty(), value.tag() == JsonTag::array) << text;
        EXPECT_EQ(!value.members().empty(), value.tag() == JsonTag::object) << text;
        const JsonValue& member = Member(value, "k");
        EXPECT_EQ(member.tag(), value.tag() == JsonTag::object ? JsonTag::number : JsonTag::null);
    }
    EXPECT_EQ(&Member(JsonValue(), "a"), &Member(ParseJson("{\"b\":1}"), "a"));
}

TEST(Json, CopiesDeeplyAndMovesOut) {
    JsonValue original = ParseJson(R"({"a":[1,{"b":"text long enough for the heap"}],"c":true})");
    const std::string text = JsonText(original);
    const JsonValue copy = original;
    JsonValue moved = std::move(original);
    EXPECT_EQ(original.tag(), JsonTag::null);
    EXPECT_EQ(JsonText(moved), text);
    EXPECT_NE(&Member(moved, "a"), &Member(copy, "a"));
    moved = Member(moved, "a");
    moved = moved.elements()[1];
    EXPECT_EQ(JsonText(moved), R"({"b":"text long enough for the heap"})");
    EXPECT_EQ(JsonText(copy), text);
}

TEST(Json, NoDepthReachesTheCallStack) {
    constexpr std::size_t kTwoMebibytes = 2U << 20;
    OnSmallStack([] {
        for (const std::string& open : {Repeated("[", kTwoMebibytes), Repeated("[", 1000000) + "x",
                                        Repeated("{\"\":", kTwoMebibytes / 4)})
            EXPECT_EQ(ParseJson(open).tag(), JsonTag::null);
    });
    for (const std::string& document :
         {Repeated("[", 500000) + Repeated("]", 500000),
          Repeated("{\"k\":[1,", 100000) + "0" + Repeated(",2]}", 100000),
          Repeated("[[],{\"a\":[0]},", 100000) + "[]" + Repeated(",[[1]]]", 100000)}) {
        OnSmallStack([&] {
            JsonValue value = ParseJson(document);
            ASSERT_NE(value.tag(), JsonTag::null);
            JsonValue copy = value;
            value = std::move(copy);
            value = JsonValue();
        });
    }
}
