#include "cloud/signatures.h"

#include <gtest/gtest.h>

#include "tests/cloud/fake_cloud.h"

namespace {

constexpr const char* kGetRequest = "GET /api/mirelo/signatures.php ";
constexpr const char* kVersion7 =
    R"({"version":7,"rules":[{"id":"a-001","title":"A"},{"id":"plugin-001","title":"P"}]})";
constexpr const char* kVersion3 = R"({"version":3,"rules":[{"id":"b-001","title":"B"}]})";

SignatureRuleBase BuiltIn() {
    SignatureRuleBase base;
    LoadBuiltInRules(base);
    return base;
}

}  // namespace

TEST(Signatures, StartUpTakesTheCacheOrStaysWithTheBuiltInRules) {
    const std::string good = kVersion7;
    const struct {
        std::string cache;
        std::wstring status;
        int version;
        std::size_t ruleCount;
    } cases[] = {
        {good, L"Loaded locally cached signature database", 7, 5},
        {"", L"Using built-in base signature database", 0, 4},
        {"no JSON", L"Using built-in base signature database", 0, 4},
        {R"({"version":7,"rules":[]})", L"Using built-in base signature database", 0, 4},
        {good.substr(0, good.size() - 1), L"Using built-in base signature database", 0, 4},
    };
    for (const auto& c : cases) {
        FakeCloud cloud;
        cloud.cache = c.cache;
        SignatureRuleBase base = BuiltIn();
        const SignatureLoad load = LoadSignatureBase(base, cloud.services());
        EXPECT_TRUE(load.loaded);
        EXPECT_EQ(load.status, c.status) << c.cache;
        EXPECT_EQ(load.version, c.version) << c.cache;
        EXPECT_EQ(load.ruleCount, c.ruleCount) << c.cache;
        EXPECT_EQ(cloud.cache, c.cache);
        EXPECT_TRUE(cloud.requests.empty());
    }
}

TEST(Signatures, ACacheCutAnywhereCostsNoRule) {
    const std::string document = kVersion7;
    for (std::size_t length = 0; length < document.size(); ++length) {
        FakeCloud cloud;
        cloud.cache = document.substr(0, length);
        SignatureRuleBase base = BuiltIn();
        EXPECT_EQ(LoadSignatureBase(base, cloud.services()).ruleCount, 4U) << length;
    }
}

TEST(Signatures, TheBackgroundCachesWhatLooksLikeARuleDocument) {
    const struct {
        std::string answer;
        bool updated;
    } cases[] = {
        {kVersion7, true},
        {R"({"rules":[]})", true},
        {"", false},
        {"<html>", false},
        {"[]", false},
        {"{}", false},
        {R"({"rules":{}})", false},
        {std::string(2 << 20, '['), false},
    };
    for (const auto& c : cases) {
        FakeCloud cloud;
        cloud.cache = "old";
        cloud.answer = c.answer;
        EXPECT_EQ(BackgroundUpdate(cloud.services()), c.updated) << c.answer.substr(0, 20);
        EXPECT_EQ(cloud.cache, c.updated ? c.answer : "old");
        EXPECT_EQ(cloud.requests, std::vector<std::string>{kGetRequest});
    }
    FakeCloud unwritable;
    unwritable.answer = kVersion7;
    unwritable.cacheIsWritable = false;
    EXPECT_FALSE(BackgroundUpdate(unwritable.services()));
}

TEST(Signatures, TheButtonReportsEveryOutcome) {
    const struct {
        const char* name;
        bool networkEnabled;
        bool cacheIsWritable;
        std::string answer;
        std::wstring outcome;
        bool cached;
    } cases[] = {
        {"good", true, true, kVersion7, L"Signatures updated to v7 (5 rules)", true},
        {"no cache", true, false, kVersion7, L"Signatures updated to v7 (5 rules)", false},
        {"no version", true, true, R"({"rules":[{"id":"a","title":"A"}]})",
         L"Signatures updated to v5 (5 rules)", true},
        {"older", true, true, kVersion3, L"Cloud data format invalid, ignored", false},
        {"no rules", true, true, R"({"version":9})", L"Cloud data format invalid, ignored", false},
        {"no JSON", true, true, "busy", L"Cloud data format invalid, ignored", false},
        {"nothing", true, true, "", L"Cloud unreachable, keeping current signatures", false},
        {"switched off", false, true, kVersion7, L"Network disabled (can be enabled in settings)",
         false},
    };
    for (const auto& c : cases) {
        FakeCloud cloud;
        cloud.networkEnabled = c.networkEnabled;
        cloud.cacheIsWritable = c.cacheIsWritable;
        cloud.answer = c.answer;
        SignatureRuleBase base = BuiltIn();
        base.version = 5;
        FakeShell report;
        OnUpdateSignatures(report.shell(), base, cloud.services());
        const std::vector<std::wstring> expected = {L"[Cloud] Updating signatures...",
                                                    L"[Cloud] " + c.outcome};
        EXPECT_EQ(report.lines, expected) << c.name;
        EXPECT_EQ(cloud.cache, c.cached ? c.answer : "") << c.name;
        EXPECT_EQ(cloud.requests.size(), c.networkEnabled ? 1U : 0U) << c.name;
    }
}

TEST(Signatures, AHostileServerChangesNothingButTexts) {
    const std::string documents[] = {
        R"({"version":1e999,"rules":[{"id":"a","title":"A"}]})",
        R"({"version":-1e999,"rules":[{"id":"a","title":"A"}]})",
        R"({"version":7,"rules":[{"id":"a","title":"\u0000\r\n\u202E\u0007","advice":"\uD800"}]})",
        R"({"version":7,"rules":[{"id":"a","title":"1"},{"id":"a","title":"2"}]})",
    };
    for (const std::string& document : documents) {
        FakeCloud cloud;
        cloud.answer = document;
        SignatureRuleBase base = BuiltIn();
        const std::wstring outcome = ManualUpdate(base, cloud.services());
        EXPECT_TRUE(outcome.ends_with(L" (5 rules)")) << document;
        EXPECT_EQ(base.rules[0].id, "print-spool-001");
        EXPECT_EQ(base.rules[4].id, "a");
    }
}

TEST(Signatures, SwitchedOffNothingIsAsked) {
    FakeCloud cloud;
    cloud.networkEnabled = false;
    cloud.answer = kVersion7;
    EXPECT_FALSE(BackgroundUpdate(cloud.services()));
    EXPECT_TRUE(cloud.requests.empty());
    EXPECT_EQ(cloud.cache, "");
}

TEST(Signatures, TheToggleSaysTheSameBothWays) {
    FakeCloud cloud;
    FakeShell report;
    OnToggleNetwork(report.shell(), cloud.services());
    EXPECT_FALSE(cloud.networkEnabled);
    OnToggleNetwork(report.shell(), cloud.services());
    EXPECT_TRUE(cloud.networkEnabled);
    const std::vector<std::wstring> expected = {
        L"[Cloud] Network disabled. Signature updates and submissions stop; local features are "
        L"unaffected.",
        L"[Cloud] Network enabled. Signature updates and submissions stop; local features are "
        L"unaffected.",
    };
    EXPECT_EQ(report.lines, expected);
}
