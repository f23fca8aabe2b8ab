// Rule documents: reading one of 2 MiB beside a peer, merging it, and matching a deep stack against
// a hundred thousand rules that all nearly fit.
#include <cstdio>
#include <string>

#include "bench/rounds.h"
#include "cloud/json/json.h"
#include "diagnosis/match.h"
#include "diagnosis/rules.h"

#if __has_include(<nlohmann/json.hpp>)
#include <nlohmann/json.hpp>
#define HAVE_PEER 1
#endif

namespace {

constexpr int kRounds = 11;
constexpr std::size_t kDocumentSize = 2 << 20;
constexpr int kManyRules = 100000;

std::string RuleDocument() {
    std::string document = R"({"version": 7, "rules": [)";
    for (int i = 0;; ++i) {
        const std::string n = std::to_string(i);
        const std::string rule =
            "{\"id\": \"hook-" + n + "-001\", \"category\": \"third_party\", \"module\": \"hook" +
            n + "\", \"func\": \"Enum" + n + "Printers\", \"title\": \"Stuck in hook number " + n +
            "\", \"severity\": \"high\", \"advice\": \"Close the capture tool, then start the "
            "program again. Should it happen once more, ask the tool\\u2019s maker for a newer "
            "version.\"}";
        if (document.size() + rule.size() + 2 > kDocumentSize) return document + "]}";
        if (i > 0) document += ",\n";
        document += rule;
    }
}

SignatureRuleBase ManyRules() {
    SignatureRuleBase base;
    for (int i = 0; i < kManyRules; ++i) {
        SignatureRule rule;
        rule.id = std::to_string(i);
        rule.category = FrameCategory::plugin;
        rule.module = L"SlowFilter";
        rule.func = L"ImportPage" + std::to_wstring(i);
        rule.title = L"Stuck";
        base.rules.push_back(std::move(rule));
    }
    return base;
}

std::vector<StackFrame> DeepStack() {
    std::vector<StackFrame> frames(kMaxFrames);
    for (int i = 0; i < kMaxFrames; ++i) {
        StackFrame& frame = frames[static_cast<std::size_t>(i)];
        frame.moduleName = L"slowfilter.cpg";
        frame.imagePath = L"C:\\Program Files\\Corel\\Plugins\\slowfilter.cpg";
        frame.function = L"filters::ImportPages::ImportPagesOfDocument" + std::to_wstring(i);
    }
    return frames;
}

bool allRight = true;

void Check(bool right, const char* who) {
    if (right) return;
    allRight = false;
    std::printf("%s gave a wrong result\n", who);
}

void BenchReading(const std::string& document) {
    std::vector<Contender> contenders = {{"ParseJson", [&] {
                                              const JsonValue value = ParseJson(document);
                                              Check(value.members().size() == 2, "ParseJson");
                                          }}};
#if defined(HAVE_PEER)
    contenders.push_back({"nlohmann", [&] {
                              const auto value = nlohmann::json::parse(document);
                              Check(value.size() == 2, "nlohmann");
                          }});
#else
    std::printf("nlohmann is not here: skipped\n");
#endif
    const std::vector<Standing> standings = measure(contenders, kRounds);
    for (std::size_t i = 0; i < standings.size(); ++i) {
        std::printf("%-12s %7.2f ms %7.0f MB/s %6.2f x ParseJson's time\n",
                    contenders[i].name.c_str(), standings[i].seconds * 1e3,
                    static_cast<double>(document.size()) / standings[i].seconds / 1e6,
                    standings[i].ratio);
    }
}

void BenchRules(const std::string& document) {
    const SignatureRuleBase many = ManyRules();
    const std::vector<StackFrame> frames = DeepStack();
    SuspectFrame suspect;
    suspect.category = FrameCategory::plugin;
    suspect.frame = frames[0];
    const std::vector<Contender> contenders = {
        {"MergeRuleDocument, 2 MiB",
         [&] {
             SignatureRuleBase base;
             Check(MergeRuleDocument(base, document), "MergeRuleDocument");
         }},
        {"MatchRules, 100000 rules x 64 frames",
         [&] { Check(!MatchRules(many, suspect, frames).matched, "MatchRules"); }},
    };
    const std::vector<Standing> standings = measure(contenders, kRounds);
    for (std::size_t i = 0; i < standings.size(); ++i)
        std::printf("%-38s %7.2f ms\n", contenders[i].name.c_str(), standings[i].seconds * 1e3);
}

}  // namespace

int main() {
    const std::string document = RuleDocument();
    BenchReading(document);
    BenchRules(document);
    return allRight ? 0 : 1;
}
