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
    for (const char* text :
         {"", "no JSON", R"([{"id":"a","title":"t"}])", R"({"version":9})", R"({"rules":[]})",
          R"({"version":9,"rules":[{"id":"a","title":"t"}])",
          R"({"version":9,"rules":{"id":"a","title":"t"}})",
          R"({"version":9,"rules":["a",1,null,[{"id":"a","title":"t"}]]})",
          R"({"version":9,"rules":[{"title":"t"},{"id":"","title":"t"},{"id":1,"title":"t"}]})",
          R"({"version":9,"rules":[{"id":"font-enum-001","advice":"x"},{"id":"a","title":["t"]}]})",
          R"({"version":4,"rules":[{"id":"a","title":"older"}]})"}) {
        SignatureRuleBase base = BaseOfVersion(5);
        EXPECT_FALSE(MergeRuleDocument(base, text)) << text;
        EXPECT_EQ(Shown(base), Shown(BaseOfVersion(5))) << text;
    }
}

TEST(MergeRuleDocument, KeepsTheNewestVersion) {
    const struct {
        bool accepted;
        int versionAfter;
        std::vector<const char*> versions;
    } cases[] = {
        {true, 5, {"0", "null", "\"9\"", "0.9", "-7", "-1e300", "-1e999", "5", "5.9"}},
        {false, 5, {"1", "4.9"}},
        {true, 6, {"6.9"}},
        {true, 2147483647, {"2147483648", "1e300", "1e999"}},
    };
    for (const auto& [accepted, versionAfter, versions] : cases) {
        for (const std::string version : versions) {
            SignatureRuleBase base = BaseOfVersion(5);
            EXPECT_EQ(MergeRuleDocument(
                          base, R"({"rules":[{"id":"a","title":"t"}],"version":)" + version + "}"),
                      accepted)
                << version;
            EXPECT_EQ(base.version, versionAfter) << version;
            EXPECT_EQ(base.rules.size(), accepted ? 5U : 4U) << version;
        }
    }
}

TEST(MergeRuleDocument, ReadsEveryFieldAndItsDefault) {
    const struct {
        const char* element;
        const char* rule;
    } cases[] = {
        {R"("category":"font","module":"m","func":"f","severity":"high","advice":"x","more":[1])",
         "a 2|m|f|t|high|x"},
        {R"("severity":3,"module":4,"func":null,"advice":{},"category":1)", "a 7|||t|medium|"},
        {R"("severity":"","module":"字体","func":"\uD83D\uDE00","advice":"😀")", "a 7|字体|😀|t||😀"},
        {R"("category":"plugin")", "a 0|||t|medium|"},
        {R"("category":"print")", "a 1|||t|medium|"},
        {R"("category":"Print")", "a 7|||t|medium|"},
        {R"("category":"ole")", "a 3|||t|medium|"},
        {R"("category":"cdr_core")", "a 4|||t|medium|"},
        {R"("category":"third_party")", "a 5|||t|medium|"},
        {R"("category":"system_only")", "a 6|||t|medium|"},
    };
    for (const auto& [element, rule] : cases) {
        SignatureRuleBase base;
        EXPECT_TRUE(MergeRuleDocument(
            base, std::string(R"({"rules":[{"id":"a","title":"t",)") + element + "}]}"));
        ASSERT_EQ(base.rules.size(), 1U) << element;
        EXPECT_EQ(Shown(base.rules[0]), rule);
    }
}

TEST(MergeRuleDocument, ReplacesInPlaceAndAppends) {
    SignatureRuleBase base = BaseOfVersion(0);
    ASSERT_TRUE(MergeRuleDocument(base, R"({"version":3,"rules":[
        {"id":"Größe","title":"first"},
        "skipped",
        {"id":"font-enum-001","title":"fonts","func":"EnumFonts"},
        {"id":"FONT-ENUM-001","title":"another id"},
        {"id":"Größe","title":"second"},
        {"title":"without id"}]})"));
    SignatureRuleBase expected = BaseOfVersion(3);
    constexpr auto kUnknown = FrameCategory::unknown;
    expected.rules[1] = {"font-enum-001", kUnknown, L"", L"EnumFonts", L"fonts", L"medium", L""};
    expected.rules.push_back({"Größe", kUnknown, L"", L"", L"second", L"medium", L""});
    expected.rules.push_back({"FONT-ENUM-001", kUnknown, L"", L"", L"another id", L"medium", L""});
    EXPECT_EQ(Shown(base), Shown(expected));
}
