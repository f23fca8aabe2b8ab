// From a suspect to a named, explained diagnosis.
#pragma once

#include <string>
#include <vector>

#include "diagnosis/classify.h"
#include "diagnosis/rules.h"

struct Diagnosis {
    bool matched = false;
    /// The rule in the base it was matched from; null when not matched.
    const SignatureRule* rule = nullptr;
    /// By category; empty when matched.
    std::wstring title;
    std::wstring advice;
};

/// The first rule of the suspect's category that fits, rules with a pattern before rules without;
/// else the category's own title and advice. A module pattern is sought in the suspect frame's
/// module name or image path, a function pattern in any frame's function, both ignoring case.
Diagnosis MatchRules(const SignatureRuleBase& base, const SuspectFrame& suspect,
                     const std::vector<StackFrame>& frames);
