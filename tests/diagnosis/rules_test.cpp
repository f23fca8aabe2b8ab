#include "diagnosis/rules.h"

#include <gtest/gtest.h>

#include "base/text.h"

namespace {

std::string Shown(const SignatureRule& rule) {
    std::string text = rule.id + " " + std::to_string(static_cast<int>(rule.category));
    for (const std::wstring& field :
         {rule.module, rule.func, rule.title, rule.severity, rule.advice})
        text.append("|").append(utf8FromWide(field));
    return text;
}

std::string Shown(const SignatureRuleBase& base) {
    std::string text = "version " + std::to_string(base.version) + "\n";
    for (const SignatureRule& rule : base.rules)
        text += Shown(rule) + "\n";
    return text;
}

SignatureRuleBase BaseOfVersion(int version) {
    SignatureRuleBase base;
    base.version = version;
    LoadBuiltInRules(base);
    return base;
}

}  // namespace

TEST(Rules, StartWithTheBuiltInFour) {
    SignatureRuleBase base = BaseOfVersion(7);
    base.rules.resize(9);
    LoadBuiltInRules(base);
    EXPECT_EQ(base.version, 7);
    ASSERT_EQ(base.rules.size(), 4U);
    const char* const starts[] = {
        "print-spool-001 1|||Stuck in print spooling|high|Your default printer",
        "font-enum-001 2|||Stuck in font enumeration/rendering|high|Too many system fonts,",
        "ole-clipboard-001 3|ole||Stuck in OLE/clipboard data exchange|medium|Most likely",
        "plugin-001 0|||Stuck in a third-party plugin|high|The block happens",
    };
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_TRUE(Shown(base.rules[i]).starts_with(starts[i])) << Shown(base.rules[i]);
}

TEST(MergeRuleDocument, RefusesWhatGivesNoRule) {
    for (const char* text : {
             "",
             "no JSON",
             R"({"version":9,"rules":[{"id":"a","title":"t"}])",
             R"([{"id":"a","title":"t"}])",
             R"({"version":9})",
             R"({"version":9,"rules":{"id":"a","title":"t"}})",
             R"({"version":9,"rules":[]})",
             R"({"version":9,"rules":["a",1,null,[{"id":"a","title":"t"}]]})",
             R"({"version":9,"rules":[{"title":"t"},{"id":"","title":"t"},{"id":1,"title":"t"}]})",
             R"({"version":9,"rules":[{"id":"font-enum-001","advice":"no title"}]})",
             R"({"version":9,"rules":[{"id":"a","title":["t"]}]})",
             R"({"version":4,"rules":[{"id":"a","title":"older"}]})",
         }) {
        SignatureRuleBase base = BaseOfVersion(5);
        EXPECT_FALSE(MergeRuleDocument(base, text)) << text;
        EXPECT_EQ(Shown(base), Shown(BaseOfVersion(5))) << text;
    }
}

TEST(MergeRuleDocument, KeepsTheNewestVersion) {
    const struct {
        const char* version;
        bool accepted;
        int versionAfter;
    } cases[] = {
        {"0", true, 5},
        {"null", true, 5},
        {"\"9\"", true, 5},
        {"0.9", true, 5},
        {"-7", true, 5},
        {"-1e300", true, 5},
        {"-1e999", true, 5},
        {"1", false, 5},
        {"4.9", false, 5},
        {"5", true, 5},
        {"5.9", true, 5},
        {"6.9", true, 6},
        {"2147483648", true, 2147483647},
        {"1e300", true, 2147483647},
        {"1e999", true, 2147483647},
    };
    for (const auto& c : cases) {
        SignatureRuleBase base = BaseOfVersion(5);
        const std::string text =
            std::string(R"({"version":)") + c.version + R"(,"rules":[{"id":"a","title":"t"}]})";
        EXPECT_EQ(MergeRuleDocument(base, text), c.accepted) << c.version;
        EXPECT_EQ(base.version, c.versionAfter) << c.version;
        EXPECT_EQ(base.rules.size(), c.accepted ? 5U : 4U) << c.version;
    }
    SignatureRuleBase base = BaseOfVersion(5);
    EXPECT_TRUE(MergeRuleDocument(base, R"({"rules":[{"id":"a","title":"t"}]})"));
    EXPECT_EQ(base.version, 5);
}

TEST(MergeRuleDocument, ReadsEveryFieldAndItsDefault) {
    const struct {
        const char* element;
        const char* rule;
    } cases[] = {
        {R"({"id":"a","category":"font","module":"m","func":"f","title":"t","severity":"high",
             "advice":"x","more":[1]})",
         "a 2|m|f|t|high|x"},
        {R"({"id":"a","title":"t"})", "a 7|||t|medium|"},
        {R"({"id":"a","title":"t","severity":3,"module":4,"func":null,"advice":{},"category":1})",
         "a 7|||t|medium|"},
        {R"({"id":"a","title":"t","severity":""})", "a 7|||t||"},
        {R"({"id":"Größe","title":"Größe","module":"字体","func":"\uD83D\uDE00","advice":"😀"})",
         "Größe 7|字体|😀|Größe|medium|😀"},
        {R"({"id":"a","title":"t","category":"plugin"})", "a 0|||t|medium|"},
        {R"({"id":"a","title":"t","category":"print"})", "a 1|||t|medium|"},
        {R"({"id":"a","title":"t","category":"Print"})", "a 7|||t|medium|"},
        {R"({"id":"a","title":"t","category":"ole"})", "a 3|||t|medium|"},
        {R"({"id":"a","title":"t","category":"cdr_core"})", "a 4|||t|medium|"},
        {R"({"id":"a","title":"t","category":"third_party"})", "a 5|||t|medium|"},
        {R"({"id":"a","title":"t","category":"system_only"})", "a 6|||t|medium|"},
        {R"({"id":"a","title":"t","category":"unknown"})", "a 7|||t|medium|"},
    };
    for (const auto& c : cases) {
        SignatureRuleBase base;
        EXPECT_TRUE(MergeRuleDocument(base, std::string(R"({"rules":[)") + c.element + "]}"));
        ASSERT_EQ(base.rules.size(), 1U) << c.element;
        EXPECT_EQ(Shown(base.rules[0]), c.rule);
    }
    // As many units as the platform's wide text needs for one character.
    SignatureRuleBase base;
    MergeRuleDocument(base, R"({"rules":[{"id":"a","title":"\uD83D\uDE00"}]})");
    EXPECT_EQ(base.rules[0].title, L"\U0001F600");
}

TEST(MergeRuleDocument, ReplacesInPlaceAndAppends) {
    SignatureRuleBase base = BaseOfVersion(0);
    ASSERT_TRUE(MergeRuleDocument(base, R"({"version":3,"rules":[
        {"id":"new","title":"first"},
        "skipped",
        {"id":"font-enum-001","title":"fonts","func":"EnumFonts"},
        {"id":"FONT-ENUM-001","title":"another id"},
        {"id":"new","title":"second"},
        {"title":"without id"}]})"));
    SignatureRuleBase expected = BaseOfVersion(3);
    expected.rules[1] = {
        "font-enum-001", FrameCategory::unknown, L"", L"EnumFonts", L"fonts", L"medium", L""};
    expected.rules.push_back({"new", FrameCategory::unknown, L"", L"", L"second", L"medium", L""});
    expected.rules.push_back(
        {"FONT-ENUM-001", FrameCategory::unknown, L"", L"", L"another id", L"medium", L""});
    EXPECT_EQ(Shown(base), Shown(expected));
}
