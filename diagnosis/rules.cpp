#include "diagnosis/rules.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "base/text.h"
#include "cloud/json/json.h"

namespace {

int ClampedVersion(const JsonValue& value) {
    if (value.tag() != JsonTag::number || std::isnan(value.number())) return 0;
    constexpr double kLowest = std::numeric_limits<int>::min();
    constexpr double kHighest = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp(value.number(), kLowest, kHighest));
}

std::wstring WideMember(const JsonValue& object, std::string_view key) {
    return wideFromUtf8(Member(object, key).string());
}

SignatureRule RuleFromJson(const JsonValue& element) {
    SignatureRule rule;
    rule.id = Member(element, "id").string();
    rule.category = CategoryFromName(Member(element, "category").string());
    rule.module = WideMember(element, "module");
    rule.func = WideMember(element, "func");
    rule.title = WideMember(element, "title");
    const JsonValue& severity = Member(element, "severity");
    rule.severity = severity.tag() == JsonTag::string ? wideFromUtf8(severity.string()) : L"medium";
    rule.advice = WideMember(element, "advice");
    return rule;
}

std::vector<SignatureRule> RulesFromJson(const std::vector<JsonValue>& elements) {
    std::vector<SignatureRule> rules;
    rules.reserve(elements.size());
    for (const JsonValue& element : elements) {
        SignatureRule rule = RuleFromJson(element);
        if (!rule.id.empty() && !rule.title.empty()) rules.push_back(std::move(rule));
    }
    return rules;
}

// Whatever can fail for want of memory comes before the first change of the list. The index keeps a
// document of a hundred thousand rules from being compared rule by rule.
void TakeRules(std::vector<SignatureRule>& rules, std::vector<SignatureRule> incoming) {
    std::unordered_map<std::string_view, std::size_t> positionOfId;
    positionOfId.reserve(rules.size() + incoming.size());
    for (std::size_t i = 0; i < rules.size(); ++i)
        positionOfId.emplace(rules[i].id, i);

    std::vector<std::size_t> positions;
    positions.reserve(incoming.size());
    std::size_t count = rules.size();
    for (const SignatureRule& rule : incoming) {
        const auto [position, isNew] = positionOfId.try_emplace(rule.id, count);
        if (isNew) ++count;
        positions.push_back(position->second);
    }

    rules.resize(count);
    for (std::size_t i = 0; i < incoming.size(); ++i)
        rules[positions[i]] = std::move(incoming[i]);
}

bool Merge(SignatureRuleBase& base, std::string_view jsonText) {
    const JsonValue document = ParseJson(jsonText);
    const int version = ClampedVersion(Member(document, "version"));
    if (version >= 1 && version < base.version) return false;

    std::vector<SignatureRule> incoming = RulesFromJson(Member(document, "rules").elements());
    if (incoming.empty()) return false;
    TakeRules(base.rules, std::move(incoming));
    if (version > 0) base.version = version;
    return true;
}

}  // namespace

void LoadBuiltInRules(SignatureRuleBase& base) {
    base.rules = {
        {"print-spool-001", FrameCategory::print, L"", L"", L"Stuck in print spooling", L"high",
         L"Your default printer is most likely a network printer or offline - the No.1 cause of "
         L"slow startup and random freezes in CDR. Use 'Temp Virtual Printer' on the Fix tab, or "
         L"set the default printer to Microsoft Print to PDF in system settings."},
        {"font-enum-001", FrameCategory::font, L"", L"", L"Stuck in font enumeration/rendering",
         L"high",
         L"Too many system fonts, or a corrupted font. CDR enumerates all fonts on startup, in the "
         L"text tool and in the font list. Uninstall unused fonts (especially bundled font packs), "
         L"or check recently installed fonts."},
        {"ole-clipboard-001", FrameCategory::ole, L"ole", L"",
         L"Stuck in OLE/clipboard data exchange", L"medium",
         L"Most likely triggered by pasting a large bitmap or an embedded Office object. Use "
         L"'Paste Special - Bitmap' instead, or export the image and then import it."},
        {"plugin-001", FrameCategory::plugin, L"", L"", L"Stuck in a third-party plugin", L"high",
         L"The block happens inside a plugin module. Temporarily move its .cpg file out of the "
         L"Plugins folder to verify, then contact the plugin author or find a replacement."},
    };
}

bool MergeRuleDocument(SignatureRuleBase& base, std::string_view jsonText) {
    try {
        return Merge(base, jsonText);
    } catch (const std::bad_alloc&) {
        return false;
    }
}
