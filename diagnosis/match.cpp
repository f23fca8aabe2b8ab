#include "diagnosis/match.h"

#include <algorithm>
#include <bitset>
#include <string_view>

#include "base/text.h"

namespace {

struct Fallback {
    FrameCategory category;
    const wchar_t* title;
    const wchar_t* advice;
};

constexpr Fallback kFallbacks[] = {
    {FrameCategory::plugin, L"Stuck in a third-party plugin",
     L"Temporarily move the plugin file out to verify."},
    {FrameCategory::print, L"Likely a print subsystem issue",
     L"Check the default printer status, try switching to a virtual printer."},
    {FrameCategory::font, L"Likely a font issue",
     L"Trim system fonts, check recently installed fonts."},
    {FrameCategory::cdrCore, L"Blocked in a CDR core module",
     L"Please submit this stack signature so we can analyze and add it."},
    {FrameCategory::thirdParty, L"Blocked in a third-party component",
     L"This component is not part of CDR itself - submit the signature to confirm its source."},
};

constexpr Fallback kUnclassified = {
    FrameCategory::unknown, L"Could not classify automatically",
    L"Copy the raw stack, or click 'Submit Unknown' to help improve the signature database."};

// Which runs of three characters occur in some texts. A pattern with a run that does not is in none
// of them, which spares nearly every rule of a large base the search through a whole stack.
class RunsOfThree {
  public:
    void add(std::wstring_view text) {
        for (std::size_t i = 0; i + kLength <= text.size(); ++i)
            seen_.set(slot(text.substr(i)));
    }
    [[nodiscard]] bool mayContain(std::wstring_view pattern) const {
        for (std::size_t i = 0; i + kLength <= pattern.size(); ++i) {
            if (!seen_.test(slot(pattern.substr(i)))) return false;
        }
        return true;
    }

  private:
    static constexpr std::size_t kLength = 3;
    static constexpr std::size_t kSlots = 1 << 16;

    static std::size_t slot(std::wstring_view run) {
        std::size_t hash = 0;
        for (std::size_t i = 0; i < kLength; ++i)
            hash = hash * 37 + static_cast<std::size_t>(run[i]);
        return hash % kSlots;
    }

    std::bitset<kSlots> seen_;
};

// Lower-cased once for all rules.
struct MatchedTexts {
    std::wstring suspectModule;
    std::wstring suspectPath;
    std::vector<std::wstring> functions;
    RunsOfThree runs;  // of the functions
};

MatchedTexts TextsToMatch(const SuspectFrame& suspect, const std::vector<StackFrame>& frames) {
    MatchedTexts texts{lowered(suspect.frame.moduleName), lowered(suspect.frame.imagePath), {}, {}};
    for (const StackFrame& frame : frames) {
        std::wstring function = lowered(frame.function);
        const bool known = std::find(texts.functions.begin(), texts.functions.end(), function) !=
                           texts.functions.end();
        if (known || function.empty()) continue;
        texts.runs.add(function);
        texts.functions.push_back(std::move(function));
    }
    return texts;
}

bool ModuleFits(const SignatureRule& rule, const MatchedTexts& texts) {
    if (rule.module.empty()) return true;
    const std::wstring pattern = lowered(rule.module);
    return texts.suspectModule.find(pattern) != std::wstring::npos ||
           texts.suspectPath.find(pattern) != std::wstring::npos;
}

bool FunctionFits(const SignatureRule& rule, const MatchedTexts& texts) {
    if (rule.func.empty()) return true;
    const std::wstring pattern = lowered(rule.func);
    if (!texts.runs.mayContain(pattern)) return false;
    return std::any_of(
        texts.functions.begin(), texts.functions.end(),
        [&](const std::wstring& name) { return name.find(pattern) != std::wstring::npos; });
}

}  // namespace

Diagnosis MatchRules(const SignatureRuleBase& base, const SuspectFrame& suspect,
                     const std::vector<StackFrame>& frames) {
    const MatchedTexts texts = TextsToMatch(suspect, frames);
    for (const bool withPattern : {true, false}) {
        for (const SignatureRule& rule : base.rules) {
            if (rule.category != suspect.category) continue;
            if (withPattern != (!rule.module.empty() || !rule.func.empty())) continue;
            if (ModuleFits(rule, texts) && FunctionFits(rule, texts)) return {true, &rule, {}, {}};
        }
    }
    const auto* fallback =
        std::find_if(std::begin(kFallbacks), std::end(kFallbacks),
                     [&](const Fallback& f) { return f.category == suspect.category; });
    if (fallback == std::end(kFallbacks)) fallback = &kUnclassified;
    return {false, nullptr, fallback->title, fallback->advice};
}
