#include "diagnosis/match.h"

#include <gtest/gtest.h>

#include "tests/diagnosis/frame.h"

namespace {

using enum FrameCategory;

SignatureRule Rule(std::string id, std::wstring module, std::wstring func,
                   FrameCategory category = print) {
    return {std::move(id), category, std::move(module), std::move(func), L"title", L"high", L"x"};
}

}  // namespace

TEST(MatchRules, TakesTheFirstRuleThatFitsPatternsFirst) {
    const std::vector<StackFrame> frames = {
        Frame(L"ntdll", L"NtWaitForSingleObject"),
        Frame(L"AcmeSpool", L"AskTrays", L"C:\\Drivers\\AcmeSpool.dll"),
        Frame(L"VGCore", L"CPage::EnumPrintersOf"), Frame(L"CorelDRW", L"StackTraysOpen")};
    const SignatureRule any = Rule("any", L"", L"");
    const struct {
        std::string matched;  // empty: none
        std::vector<SignatureRule> rules;
    } cases[] = {
        {"any", {any, Rule("second", L"", L"")}},
        {"late", {any, Rule("late", L"", L"enumPRINTERS")}},
        {"a", {any, Rule("a", L"ACME", L""), Rule("b", L"", L"Ask")}},
        {"", {Rule("the module of another frame", L"vgcore", L"")}},
        {"path", {Rule("path", L"DRIVERS\\acme", L"")}},
        {"both", {Rule("both", L"spool", L"CPage::")}},
        {"", {Rule("module only", L"spool", L"Unheard")}},
        {"", {Rule("across two names", L"", L"AskTraysOpen")}},
        {"any", {Rule("longer than the name", L"", L"AskTraysAndMore"), any}},
        {"", {Rule("other", L"", L"AskTrays", font), Rule("7", L"", L"", unknown)}},
        {"whole", {Rule("whole", L"", L"cpage::enumprintersof")}},
        {"", {Rule("no wildcard", L"Acme*", L"")}},
    };
    for (const auto& [matched, rules] : cases) {
        const SignatureRuleBase base{rules, 0};
        const Diagnosis diagnosis = MatchRules(base, {print, frames[1], L"AcmeSpool"}, frames);
        const std::string& name = rules[0].id;
        ASSERT_EQ(diagnosis.rule != nullptr, diagnosis.matched) << name;
        EXPECT_EQ(diagnosis.matched ? diagnosis.rule->id : "", matched) << name;
        EXPECT_EQ(diagnosis.title, diagnosis.matched ? L"" : L"Likely a print subsystem issue");
    }
}
