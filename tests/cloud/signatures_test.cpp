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
    for (const std::string& cache :
         {good, std::string(), std::string("no JSON"), std::string(R"({"version":7,"rules":[]})"),
          good.substr(0, good.size() - 1), good.substr(0, 60)}) {
        FakeCloud cloud;
        cloud.cache = cache;
        SignatureRuleBase base = BuiltIn();
        const SignatureLoad load = LoadSignatureBase(base, cloud.services());
        const bool accepted = cache == good;
        EXPECT_TRUE(load.loaded);
        EXPECT_EQ(load.status, accepted ? L"Loaded locally cached signature database"
                                        : L"Using built-in base signature database");
        EXPECT_EQ(load.version, accepted ? 7 : 0) << cache;
        EXPECT_EQ(load.ruleCount, accepted ? 5U : 4U) << cache;
        EXPECT_EQ(cloud.cache, cache);
        EXPECT_TRUE(cloud.requests.empty());
    }
}

TEST(Signatures, TheBackgroundCachesWhatLooksLikeARuleDocument) {
    const struct {
        std::string answer;
        bool updated = false;
        bool networkEnabled = true;
        bool cacheIsWritable = true;
    } cases[] = {
        {kVersion7, true},
        {R"({"rules":[]})", true},
        {""},
        {"<html>"},
        {"[]"},
        {"{}"},
        {R"({"rules":{}})"},
        {std::string(2 << 20, '[')},
        {kVersion7, false, true, false},
        {kVersion7, false, false},
    };
    for (const auto& c : cases) {
        FakeCloud cloud{c.networkEnabled, "old", c.cacheIsWritable, c.answer, {}};
        EXPECT_EQ(BackgroundUpdate(cloud.services()), c.updated) << c.answer.substr(0, 20);
        EXPECT_EQ(cloud.cache, c.updated ? c.answer : "old");
        EXPECT_EQ(cloud.requests, std::vector<std::string>(c.networkEnabled ? 1 : 0, kGetRequest));
    }
}

TEST(Signatures, TheButtonReportsEveryOutcome) {
    const struct {
        std::string answer;
        std::wstring outcome;
        bool cached = false;
        bool networkEnabled = true;
        bool cacheIsWritable = true;
    } cases[] = {
        {kVersion7, L"Signatures updated to v7 (5 rules)", true},
        {kVersion7, L"Signatures updated to v7 (5 rules)", false, true, false},
        {R"({"rules":[{"id":"a","title":"A"}]})", L"Signatures updated to v5 (5 rules)", true},
        {kVersion3, L"Cloud data format invalid, ignored"},
        {R"({"version":9})", L"Cloud data format invalid, ignored"},
        {"busy", L"Cloud data format invalid, ignored"},
        {"", L"Cloud unreachable, keeping current signatures"},
        {kVersion7, L"Network disabled (can be enabled in settings)", false, false},
    };
    for (const auto& c : cases) {
        FakeCloud cloud{c.networkEnabled, "old", c.cacheIsWritable, c.answer, {}};
        SignatureRuleBase base = BuiltIn();
        base.version = 5;
        FakeHost report;
        OnUpdateSignatures(report.host(), base, cloud.services());
        const std::vector<std::wstring> expected = {L"[Cloud] Updating signatures...",
                                                    L"[Cloud] " + c.outcome};
        EXPECT_EQ(report.lines, expected);
        EXPECT_EQ(cloud.cache, c.cached ? c.answer : "old") << c.answer;
        EXPECT_EQ(cloud.requests, std::vector<std::string>(c.networkEnabled ? 1 : 0, kGetRequest));
    }
}

TEST(Signatures, TheToggleSaysTheSameBothWays) {
    FakeCloud cloud;
    FakeHost report;
    for (const wchar_t* state : {L"disabled", L"enabled"}) {
        OnToggleNetwork(report.host(), cloud.services());
        EXPECT_EQ(cloud.networkEnabled, state == std::wstring(L"enabled"));
        EXPECT_EQ(report.lines.back(),
                  std::wstring(L"[Cloud] Network ") + state +
                      L". Signature updates and submissions stop; local features are unaffected.");
    }
}
