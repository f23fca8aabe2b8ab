#include "diagnosis/match.h"

#include <gtest/gtest.h>

namespace {

using enum FrameCategory;

struct Pattern {
    const char* id;
    FrameCategory category;
    const wchar_t* module;
    const wchar_t* func;
};

SignatureRuleBase BaseOf(const std::vector<Pattern>& patterns) {
    SignatureRuleBase base;
    for (const Pattern& p : patterns)
        base.rules.push_back({p.id, p.category, p.module, p.func, L"title", L"high", L"advice"});
    return base;
}

StackFrame Frame(const wchar_t* module, const wchar_t* path, const wchar_t* function) {
    StackFrame frame;
    frame.moduleName = module;
    frame.imagePath = path;
    frame.function = function;
    return frame;
}

}  // namespace

TEST(MatchRules, TakesTheFirstRuleThatFitsPatternsFirst) {
    const std::vector<StackFrame> frames = {
        Frame(L"ntdll", L"C:\\Windows\\ntdll.dll", L"NtWaitForSingleObject"),
        Frame(L"AcmeSpool", L"C:\\Drivers\\AcmeSpool.dll", L"AskTrays"),
        Frame(L"VGCore", L"C:\\Corel\\VGCore.dll", L"CPage::EnumPrintersOf"),
        Frame(L"CorelDRW", L"C:\\Corel\\CorelDRW.exe", L""),
    };
    const SuspectFrame suspect{print, frames[1], L"AcmeSpool"};

    const struct {
        std::vector<Pattern> rules;
        const char* matched;  // null: none
    } cases[] = {
        {{}, nullptr},
        {{{"any", print, L"", L""}}, "any"},
        {{{"first", print, L"", L""}, {"second", print, L"", L""}}, "first"},
        {{{"any", print, L"", L""}, {"late", print, L"", L"enumPRINTERS"}}, "late"},
        {{{"any", print, L"", L""}, {"a", print, L"ACME", L""}, {"b", print, L"", L"Ask"}}, "a"},
        {{{"module of another frame", print, L"vgcore", L""}}, nullptr},
        {{{"part of the path", print, L"DRIVERS\\acme", L""}}, "part of the path"},
        {{{"both", print, L"spool", L"CPage::"}}, "both"},
        {{{"module only", print, L"spool", L"Unheard"}}, nullptr},
        {{{"function only", print, L"unheard", L"AskTrays"}}, nullptr},
        {{{"across two names", print, L"", L"AskTraysCPage"}}, nullptr},
        {{{"longer", print, L"", L"AskTraysAndMore"}, {"any", print, L"", L""}}, "any"},
        {{{"other", font, L"", L"AskTrays"}, {"7", unknown, L"", L""}}, nullptr},
        {{{"whole", print, L"", L"cpage::enumprintersof"}}, "whole"},
        {{{"short", print, L"", L"tR"}}, "short"},
        {{{"no wildcard", print, L"Acme*", L""}}, nullptr},
    };
    for (const auto& c : cases) {
        const SignatureRuleBase base = BaseOf(c.rules);
        const Diagnosis diagnosis = MatchRules(base, suspect, frames);
        const char* name = c.rules.empty() ? "no rules" : c.rules[0].id;
        ASSERT_EQ(diagnosis.matched, c.matched != nullptr) << name;
        EXPECT_EQ(diagnosis.rule != nullptr, diagnosis.matched) << name;
        EXPECT_EQ(diagnosis.title.empty(), diagnosis.matched) << name;
        EXPECT_EQ(diagnosis.advice.empty(), diagnosis.matched) << name;
        EXPECT_STREQ(diagnosis.matched ? diagnosis.rule->id.c_str() : nullptr, c.matched);
    }
}

TEST(MatchRules, FallsBackByCategory) {
    constexpr const wchar_t* kUnclassified = L"Could not classify automatically";
    const struct {
        FrameCategory category;
        const wchar_t* title;
        const wchar_t* advice;  // as it begins
    } cases[] = {
        {plugin, L"Stuck in a third-party plugin", L"Temporarily move the plugin"},
        {print, L"Likely a print subsystem issue", L"Check the default printer"},
        {font, L"Likely a font issue", L"Trim system fonts"},
        {ole, kUnclassified, L"Copy the raw stack"},
        {cdrCore, L"Blocked in a CDR core module", L"Please submit this stack"},
        {thirdParty, L"Blocked in a third-party component", L"This component"},
        {systemOnly, kUnclassified, L"Copy the raw stack"},
        {unknown, kUnclassified, L"Copy the raw stack"},
    };
    for (const auto& c : cases) {
        const Diagnosis diagnosis = MatchRules({}, {c.category, {}, {}}, {});
        EXPECT_FALSE(diagnosis.matched);
        EXPECT_EQ(diagnosis.title, c.title);
        EXPECT_TRUE(diagnosis.advice.starts_with(c.advice)) << diagnosis.advice;
    }
}
