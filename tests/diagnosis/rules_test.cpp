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

constexpr const char* kBuiltIn =
    "print-spool-001 1|||Stuck in print spooling|high|Your default printer is most likely a "
    "network printer or offline - the No.1 cause of slow startup and random freezes in CDR. Use "
    "'Temp Virtual Printer' on the Fix tab, or set the default printer to Microsoft Print to PDF "
    "in system settings.\n"
    "font-enum-001 2|||Stuck in font enumeration/rendering|high|Too many system fonts, or a "
    "corrupted font. CDR enumerates all fonts on startup, in the text tool and in the font list. "
    "Uninstall unused fonts (especially bundled font packs), or check recently installed fonts.\n"
    "ole-clipboard-001 3|ole||Stuck in OLE/clipboard data exchange|medium|Most likely triggered "
    "by pasting a large bitmap or an embedded Office object. Use 'Paste Special - Bitmap' "
    "instead, or export the image and then import it.\n"
    "plugin-001 0|||Stuck in a third-party plugin|high|The block happens inside a plugin module. "
    "Temporarily move its .cpg file out of the Plugins folder to verify, then contact the plugin "
    "author or find a replacement.\n";

}  // namespace

TEST(Rules, StartWithTheBuiltInFour) {
    SignatureRuleBase base;
    base.version = 7;
    base.rules.resize(9);
    LoadBuiltInRules(base);
    EXPECT_EQ(Shown(base), std::string("version 7\n") + kBuiltIn);
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
        EXPECT_EQ(Shown(base), std::string("version 5\n") + kBuiltIn) << text;
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
    const std::string builtIn = kBuiltIn;
    const std::size_t fontRule = builtIn.find("font-enum-001");
    const std::size_t oleRule = builtIn.find("ole-clipboard-001");
    std::string expected = "version 3\n";
    expected += builtIn.substr(0, fontRule);
    expected += "font-enum-001 7||EnumFonts|fonts|medium|\n";
    expected += builtIn.substr(oleRule);
    expected += "new 7|||second|medium|\nFONT-ENUM-001 7|||another id|medium|\n";
    EXPECT_EQ(Shown(base), expected);
}
