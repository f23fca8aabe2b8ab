// Any bytes as a rule document: read, copied, and merged twice.
#include <cstddef>
#include <cstdint>
#include <set>
#include <string>

#include "cloud/json/json.h"
#include "cloud/rule_signature.h"
#include "diagnosis/rules.h"
#include "fuzz/require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const JsonValue value = ParseJson(text);
    JsonValue copy = value;
    require(copy.tag() == value.tag(), "a copy is the same");
    copy = Member(copy, "rules");
    if (const auto rules = TakeSignature(text))
        require(rules->document.size() + 104 == size, "all but the signature is signed");

    SignatureRuleBase base;
    LoadBuiltInRules(base);
    const bool accepted = MergeRuleDocument(base, text);
    const std::size_t count = base.rules.size();
    const int version = base.version;
    require(count >= 4, "no rule is ever lost");
    require(accepted || (count == 4 && version == 0), "a refusal changes nothing");
    std::set<std::string> ids;
    for (const SignatureRule& rule : base.rules)
        require(!rule.id.empty() && !rule.title.empty() && ids.insert(rule.id).second,
                "rules have a title and an id of their own");
    require(MergeRuleDocument(base, text) == accepted, "an equal version is accepted");
    require(base.rules.size() == count && base.version == version, "twice is once");
    return 0;
}
