// The signature rules: what is known about causes of hangs, and how rule documents extend it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "diagnosis/frame_category.h"

struct SignatureRule {
    /// UTF-8, unique in the base, never empty there.
    std::string id;
    FrameCategory category = FrameCategory::unknown;
    /// Patterns: lower-cased "contains"; empty means any.
    std::wstring module;
    std::wstring func;
    /// Never empty in the base.
    std::wstring title;
    /// Free text; "high" and "medium" are in use.
    std::wstring severity;
    std::wstring advice;
};

struct SignatureRuleBase {
    std::vector<SignatureRule> rules;
    int version = 0;
};

/// Replaces the list with the four built-in rules; the version stays.
void LoadBuiltInRules(SignatureRuleBase& base);

/// Takes the rules of a rule document: a JSON object with a number "version" and a non-empty array
/// "rules" of objects with the texts "id", "category", "module", "func", "title", "severity" and
/// "advice". A rule whose id the base knows is replaced in its place, others are appended; elements
/// without an id or a title are passed over. Returns false, and leaves the base as it was, when the
/// text is no such document, when it gives no rule, when its version is at least 1 and older than
/// the base's, or when memory runs out.
bool MergeRuleDocument(SignatureRuleBase& base, std::string_view jsonText);
