#include "diagnosis/rules.h"

#include <gtest/gtest.h>

#include "base/text.h"

namespace {

std::string Shown(const SignatureRuleBase& base) {
    std::string text = std::to_string(base.version) + "\n";
    for (const SignatureRule& rule : base.rules) {
        text += rule.id + " " + std::to_string(static_cast<int>(rule.category));
        for (const auto* field :
             {&rule.module, &rule.func, &rule.title, &rule.severity, &rule.advice})
            text += "|" + utf8FromWide(*field);
        text += "\n";
    }
    return text;
}

SignatureRuleBase BaseOfVersion(int version) {
    SignatureRuleBase base;
    base.version = version;
    LoadBuiltInRules(base);
    return base;
}

}  // namespace

TEST(MergeRuleDocument, KeepsTheNewestVersion) {
    for (const std::string version : {"0", "\"9\"", "0.9", "-7", "5.9", "1e999"}) {
        SignatureRuleBase base = BaseOfVersion(5);
        const std::string rules = R"({"rules":[{"id":"a","title":"t"}],"version":)";
        EXPECT_TRUE(MergeRuleDocument(base, rules + version + "}")) << version;
        EXPECT_EQ(base.version, version == "1e999" ? 2147483647 : 5) << version;
    }
}

TEST(MergeRuleDocument, ReplacesInPlaceAndAppends) {
    SignatureRuleBase base = BaseOfVersion(3);
    const std::string kept = Shown(base);
    ASSERT_TRUE(MergeRuleDocument(base, R"({"version":3,"rules":[
        {"id":"Größe","title":"first"},
        "skipped",
        {"id":"font-enum-001","title":"字体","func":"\uD83D\uDE00","category":"third_party"},
        {"id":"FONT-ENUM-001","title":"t","category":"Font","severity":3,"module":4,"advice":{}},
        {"id":"Größe","title":"s","category":"font","module":"m","severity":"","advice":"x"},
        {"title":"without id"}]})"));
    EXPECT_EQ(Shown(base), kept.substr(0, kept.find("font-enum-001")) +
                               "font-enum-001 5||😀|字体|medium|\n" +
                               kept.substr(kept.find("ole-clipboard-001")) +
                               "Größe 2|m||s||x\nFONT-ENUM-001 7|||t|medium|\n");
}
