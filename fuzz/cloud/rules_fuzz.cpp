// Any bytes as a rule document: merged, and matched against stacks made of its own patterns.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <set>
#include <string>

#include "cloud/rule_signature.h"
#include "diagnosis/match.h"
#include "diagnosis/rules.h"
#include "fuzz/require.h"

namespace {

const SystemFiles kNoSystemFiles{[](const std::wstring&) { return false; },
                                 [](const std::wstring&) { return false; }};

StackFrame FrameFor(const SignatureRule& rule) {
    StackFrame frame;
    frame.moduleName = rule.module.empty() ? L"plugin.cpg" : rule.module;
    frame.function = rule.func;
    return frame;
}

void CheckBase(const SignatureRuleBase& base) {
    std::set<std::string> ids;
    for (const SignatureRule& rule : base.rules) {
        require(!rule.id.empty() && !rule.title.empty(), "rules have an id and a title");
        require(ids.insert(rule.id).second, "ids are unique");
    }
    require(base.rules.size() >= 4, "no rule is ever lost");
}

void CheckMatch(const SignatureRuleBase& base, const SignatureRule& rule) {
    SuspectFrame suspect;
    suspect.category = rule.category;
    suspect.frame = FrameFor(rule);
    const Diagnosis diagnosis = MatchRules(base, suspect, {suspect.frame});
    require(diagnosis.matched, "a stack made of a rule's patterns matches a rule");
    require(diagnosis.rule->category == rule.category, "a rule matches its own category only");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    SignatureRuleBase base;
    LoadBuiltInRules(base);
    if (const auto rules = TakeSignature(text))
        require(rules->document.size() + 104 == size, "all but the signature is signed");
    const bool accepted = MergeRuleDocument(base, text);
    CheckBase(base);
    require(accepted || (base.rules.size() == 4 && base.version == 0), "a refusal changes nothing");
    if (accepted) {
        const std::size_t ruleCount = base.rules.size();
        const int version = base.version;
        require(MergeRuleDocument(base, text), "an equal version is accepted");
        require(base.rules.size() == ruleCount && base.version == version, "twice is once");
    }
    const std::size_t checked = std::min<std::size_t>(base.rules.size(), 16);
    for (std::size_t i = 0; i < checked; ++i)
        CheckMatch(base, base.rules[i]);
    return 0;
}
