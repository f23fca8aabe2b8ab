// The four ways between the rule base and the server.
#include <gtest/gtest.h>

#include "base/text.h"
#include "cloud/signatures.h"
#include "cloud/submission.h"
#include "tests/diagnosis/frame.h"
#include "tests/fake_host.h"

namespace {

using Lines = std::vector<std::wstring>;
using Requests = std::vector<std::string>;

// What the server would answer, what the cache holds, and what was asked.
struct FakeCloud {
    std::string answer{};
    bool networkEnabled = true;
    std::string cache{};
    Requests requests{};  // "METHOD path body"

    CloudServices services() {
        return {
            [this] { return networkEnabled; },
            [this](bool enabled) { networkEnabled = enabled; },
            [this] { return cache; },
            [this](std::string_view body) {
                cache = body;
                return true;
            },
            [](std::string_view document) { return document.find("forged") == document.npos; },
            [this](std::wstring_view method, std::wstring_view path, std::string_view body) {
                requests.push_back(utf8FromWide(method) + " " + utf8FromWide(path) + " " +
                                   std::string(body));
                return answer;
            },
        };
    }
};

constexpr const char* kVersion7 =
    R"({"version":7,"rules":[{"id":"a-001","title":"A"},{"id":"plugin-001","title":"P"}]})";
constexpr const char* kVersion6 = R"({"version":6,"rules":[{"id":"b-001","title":"B"}]})";
constexpr const char* kVersion8 = R"({"version":8,"rules":[{"id":"b-001","title":"B"}]})";
constexpr const char* kForged = R"({"version":8,"rules":[{"id":"forged","title":"F"}]})";
constexpr const char* kNothingToTake = R"({"version":9,"rules":[{"id":"","title":"B"}]})";

}  // namespace

TEST(Signatures, StartUpTakesTheCacheOrStaysWithTheBuiltInRules) {
    for (const std::string cache : {kVersion7, "", kNothingToTake, kForged, "no JSON"}) {
        FakeCloud cloud{.cache = cache};
        SignatureRuleBase base;
        LoadBuiltInRules(base);
        const SignatureLoad load = LoadSignatureBase(base, cloud.services());
        const bool accepted = cache == kVersion7;
        EXPECT_EQ(load.status, accepted ? L"Loaded locally cached signature database"
                                        : L"Using built-in base signature database");
        EXPECT_EQ(load.version, accepted ? 7 : 0) << cache;
        EXPECT_EQ(load.ruleCount, accepted ? 5U : 4U) << cache;
        EXPECT_TRUE(cloud.cache == cache && cloud.requests.empty());
    }
}

// In the background and by the button: what is cached afterwards, and what the button says.
TEST(Signatures, ADownloadMakesTheCacheBetterOrLeavesItAlone) {
    constexpr const wchar_t* kInvalid = L"Cloud data format invalid, ignored";
    const struct {
        FakeCloud cloud;
        bool cached;
        std::wstring outcome;
    } cases[] = {
        {{kVersion8}, true, L"Signatures updated to v8 (6 rules)"},
        {{kVersion7}, true, L"Signatures updated to v7 (5 rules)"},
        {{kVersion6}, false, kInvalid},
        {{kNothingToTake}, false, kInvalid},
        {{kForged}, false, kInvalid},
        {{"<html>"}, false, kInvalid},
        {{""}, false, L"Cloud unreachable, keeping current signatures"},
        {{kVersion8, false}, false, L"Network disabled (can be enabled in settings)"},
    };
    for (const auto& c : cases) {
        FakeCloud cloud = c.cloud;
        cloud.cache = kVersion7;
        EXPECT_EQ(BackgroundUpdate(cloud.services()), c.cached) << cloud.answer;
        EXPECT_EQ(cloud.cache, c.cached ? cloud.answer : kVersion7);

        cloud.cache = kVersion7;
        SignatureRuleBase base;
        LoadBuiltInRules(base);
        LoadSignatureBase(base, cloud.services());
        FakeHost report;
        OnUpdateSignatures(report.host(), base, cloud.services());
        EXPECT_EQ(report.lines,
                  (Lines{L"[Cloud] Updating signatures...", L"[Cloud] " + c.outcome}));
        EXPECT_EQ(cloud.cache, c.cached ? cloud.answer : kVersion7);
        EXPECT_EQ(cloud.requests,
                  Requests(cloud.networkEnabled ? 2 : 0, "GET /api/mirelo/signatures.php "));
    }
}

TEST(Signatures, TheToggleSaysTheSameBothWays) {
    FakeCloud cloud;
    FakeHost report;
    const std::wstring rest =
        L". Signature updates and submissions stop; local features are unaffected.";
    for (const bool enabled : {false, true}) {
        OnToggleNetwork(report.host(), cloud.services());
        EXPECT_EQ(cloud.networkEnabled, enabled);
    }
    EXPECT_EQ(report.lines,
              (Lines{L"[Cloud] Network disabled" + rest, L"[Cloud] Network enabled" + rest}));
}

TEST(Submission, HoldsNamesAndVersionAndGoesOutOnlyWithConsentAndTheNetwork) {
    LastCapture captured = {
        {Frame(L"ntdll", L"NtDelayExecution", L"C:\\Users\\somebody\\a.dll"), Frame(L"", L"Orphan"),
         Frame(L"slowfilter.cpg"), Frame(L"\u63d2", L"\u0424")},
        FrameCategory::plugin,
        L"25.0.0.230"};
    captured.frames[0].sourceFile = L"secret.cpp";
    const std::string body =
        "POST /api/mirelo/submit.php {\"cdr_version\":\"25.0.0.230\",\"tool_version\":\"0.1.0\","
        "\"category\":0,\"frames\":[{\"module\":\"ntdll\",\"func\":\"NtDelayExecution\"},"
        "{\"module\":\"slowfilter.cpg\"},{\"module\":\"\xE6\x8F\x92\",\"func\":\"\xD0\xA4\"}]}";
    const std::wstring question =
        L"Anonymous Submission|Upload the captured stack features anonymously?\n(Module/function "
        L"names and CDR version only - no file paths, no document content.)\n\nContinue?";
    const wchar_t* noCapture =
        L"No capture data yet. Use 'Capture Now' first; submit when no signature matched.";
    const struct {
        LastCapture capture;
        bool consents;
        FakeCloud cloud;
        std::size_t requests;
        std::wstring line;  // empty: none
    } cases[] = {
        {captured, true, {"{}"}, 1, L"Anonymously submitted 4 frame signatures, thanks!"},
        {captured, true, {""}, 1, L"Submit failed (network unreachable), try again later"},
        {captured, true, {"{}", false}, 0, L"Network disabled, cannot submit"},
        {captured, false, {"{}"}, 0, L""},
        {{}, true, {"{}"}, 0, noCapture},
    };
    for (const auto& c : cases) {
        FakeCloud cloud = c.cloud;
        FakeHost report;
        report.consents = c.consents;
        OnSubmit(report.host(), c.capture, cloud.services());
        EXPECT_EQ(report.lines, Lines(c.line.empty() ? 0 : 1, L"[Submit] " + c.line));
        EXPECT_EQ(report.questions, Lines(c.capture.frames.empty() ? 0 : 1, question));
        EXPECT_EQ(cloud.requests, Requests(c.requests, body));
    }
}
