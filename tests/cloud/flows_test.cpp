// The four ways between the rule base and the server.
#include <gtest/gtest.h>

#include "cloud/signatures.h"
#include "cloud/submission.h"
#include "tests/cloud/fake_cloud.h"

namespace {

using Requests = std::vector<std::string>;

const std::string kVersion7 =
    R"({"version":7,"rules":[{"id":"a-001","title":"A"},{"id":"plugin-001","title":"P"}]})";
constexpr const char* kVersion6 = R"({"version":6,"rules":[{"id":"b-001","title":"B"}]})";
constexpr const char* kVersion8 = R"({"version":8,"rules":[{"id":"b-001","title":"B"}]})";
constexpr const char* kForged = R"({"version":8,"rules":[{"id":"forged","title":"F"}]})";
constexpr const char* kNoVersion = R"({"rules":[{"id":"b-001","title":"B"}]})";
constexpr const char* kNothingToTake = R"({"version":9,"rules":[{"id":"","title":"B"}]})";

SignatureRuleBase BuiltIn() {
    SignatureRuleBase base;
    LoadBuiltInRules(base);
    return base;
}

StackFrame Frame(std::wstring module, std::wstring function) {
    StackFrame frame;
    frame.moduleName = std::move(module);
    frame.function = std::move(function);
    frame.imagePath = L"C:\\Users\\somebody\\secret.dll";
    frame.sourceFile = L"secret.cpp";
    return frame;
}

const LastCapture kCaptured = {{Frame(L"ntdll", L"NtDelayExecution"), Frame(L"", L"Orphan"),
                                Frame(L"slowfilter.cpg", L""), Frame(L"\u63d2\u4ef6", L"\u0424")},
                               FrameCategory::plugin,
                               L"25.0.0.230"};

constexpr const char* kCapturedBody =
    "POST /api/mirelo/submit.php {\"cdr_version\":\"25.0.0.230\",\"tool_version\":\"0.1.0\","
    "\"category\":0,\"frames\":[{\"module\":\"ntdll\",\"func\":\"NtDelayExecution\"},"
    "{\"module\":\"slowfilter.cpg\"},{\"module\":\"\xE6\x8F\x92\xE4\xBB\xB6\",\"func\":\"\xD0\xA4\"}]}";

}  // namespace

TEST(Signatures, StartUpTakesTheCacheOrStaysWithTheBuiltInRules) {
    for (const std::string& cache :
         {kVersion7, std::string(), std::string("no JSON"), std::string(kNothingToTake),
          std::string(kForged), kVersion7.substr(0, kVersion7.size() - 1)}) {
        FakeCloud cloud{.cache = cache};
        SignatureRuleBase base = BuiltIn();
        const SignatureLoad load = LoadSignatureBase(base, cloud.services());
        const bool accepted = cache == kVersion7;
        EXPECT_TRUE(load.loaded);
        EXPECT_EQ(load.status, accepted ? L"Loaded locally cached signature database"
                                        : L"Using built-in base signature database");
        EXPECT_EQ(load.version, accepted ? 7 : 0) << cache;
        EXPECT_EQ(load.ruleCount, accepted ? 5U : 4U) << cache;
        EXPECT_EQ(cloud.cache, cache);
        EXPECT_TRUE(cloud.requests.empty());
    }
}

// In the background and by the button: what is cached afterwards, and what the button says.
TEST(Signatures, ADownloadMakesTheCacheBetterOrLeavesItAlone) {
    constexpr const wchar_t* kInvalid = L"Cloud data format invalid, ignored";
    const struct {
        FakeCloud cloud;
        bool cached = false;
        std::wstring outcome;
    } cases[] = {
        {{kVersion8}, true, L"Signatures updated to v8 (6 rules)"},
        {{kVersion7}, true, L"Signatures updated to v7 (5 rules)"},
        {{kNoVersion}, true, L"Signatures updated to v7 (6 rules)"},
        {{kVersion8, true, false}, false, L"Signatures updated to v8 (6 rules)"},
        {{kVersion6}, false, kInvalid},
        {{kNothingToTake}, false, kInvalid},
        {{kForged}, false, kInvalid},
        {{R"({"version":9,"rules":[]})"}, false, kInvalid},
        {{"<html>"}, false, kInvalid},
        {{std::string(2 << 20, '[')}, false, kInvalid},
        {{""}, false, L"Cloud unreachable, keeping current signatures"},
        {{kVersion8, false}, false, L"Network disabled (can be enabled in settings)"},
    };
    for (const auto& c : cases) {
        const Requests asked(c.cloud.networkEnabled ? 1 : 0, "GET /api/mirelo/signatures.php ");
        FakeCloud cloud = c.cloud;
        cloud.cache = kVersion7;
        EXPECT_EQ(BackgroundUpdate(cloud.services()), c.cached) << c.cloud.answer.substr(0, 60);
        EXPECT_EQ(cloud.cache, c.cached ? c.cloud.answer : kVersion7);
        EXPECT_EQ(cloud.requests, asked);

        cloud = c.cloud;
        cloud.cache = kVersion7;
        SignatureRuleBase base = BuiltIn();
        LoadSignatureBase(base, cloud.services());
        FakeHost report;
        OnUpdateSignatures(report.host(), base, cloud.services());
        EXPECT_EQ(report.lines, (std::vector<std::wstring>{L"[Cloud] Updating signatures...",
                                                           L"[Cloud] " + c.outcome}));
        EXPECT_EQ(cloud.cache, c.cached ? c.cloud.answer : kVersion7);
        EXPECT_EQ(cloud.requests, asked);
    }
}

TEST(Signatures, TheToggleSaysTheSameBothWays) {
    FakeCloud cloud;
    FakeHost report;
    for (const bool enabled : {false, true}) {
        OnToggleNetwork(report.host(), cloud.services());
        EXPECT_EQ(cloud.networkEnabled, enabled);
        EXPECT_EQ(report.lines.back(),
                  std::wstring(L"[Cloud] Network ") + (enabled ? L"enabled" : L"disabled") +
                      L". Signature updates and submissions stop; local features are unaffected.");
    }
}

TEST(Submission, HoldsNamesAndVersionAndGoesOutOnlyWithConsentAndTheNetwork) {
    const struct {
        bool captured, consents;
        FakeCloud cloud;
        std::size_t requests;
        std::wstring line;  // empty: none
    } cases[] = {
        {true, true, {"{}"}, 1, L"Anonymously submitted 4 frame signatures, thanks!"},
        {true, true, {""}, 1, L"Submit failed (network unreachable), try again later"},
        {true, true, {"{}", false}, 0, L"Network disabled, cannot submit"},
        {true, false, {"{}"}, 0, L""},
        {false,
         true,
         {"{}"},
         0,
         L"No capture data yet. Use 'Capture Now' first; submit when no signature matched."},
    };
    for (const auto& c : cases) {
        FakeCloud cloud = c.cloud;
        FakeHost report;
        report.consents = c.consents;
        OnSubmit(report.host(), c.captured ? kCaptured : LastCapture(), cloud.services());
        EXPECT_EQ(report.lines,
                  std::vector<std::wstring>(c.line.empty() ? 0 : 1, L"[Submit] " + c.line));
        EXPECT_EQ(report.questions,
                  std::vector<std::wstring>(
                      c.captured ? 1 : 0,
                      L"Anonymous Submission|Upload the captured stack features "
                      L"anonymously?\n(Module/function names and CDR version only - no file paths, "
                      L"no document content.)\n\nContinue?"));
        EXPECT_EQ(cloud.requests, Requests(c.requests, kCapturedBody));
    }
}
