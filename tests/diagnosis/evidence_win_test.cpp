// The evidence of practice programs that hang because of something else than their own code.
#include <windows.h>

#include <gtest/gtest.h>

#include <cstdio>

#include "base/text.h"
#include "diagnosis/capture_action.h"
#include "diagnosis/evidence_sensors_win.h"
#include "diagnosis/stack_capture_win.h"
#include "diagnosis/system_files_win.h"
#include "tests/cdr/practice_process_win.h"
#include "tests/fake_host.h"

TEST(Evidence, Times) {
    for (const wchar_t* way : {L"lock-held-crowd", L"lock-held", L"mutex-held"}) {
        const PracticeProcess practice(way);
        const CdrInstance instance = practice.listed();
        const EvidenceSensors s = SystemEvidence();
        const auto show = [&](const char* what) {
            const ThreadMoment m = s.moment(instance.mainThreadId);
            std::printf("%-10s at %llu used %llu\n", what, m.atUs / 1000, *m.usedUs / 1000);
        };
        CaptureMainThreadStack(instance.pid, instance.mainThreadId);
        for (int i = 0; i < 3; ++i) {
            show("begin");
            Sleep(500);
            show("slept");
            CaptureMainThreadStack(instance.pid, instance.mainThreadId);
            show("captured");
            auto ids = s.threadsOf(instance.pid);
            show("listed");
            std::erase(ids, instance.mainThreadId);
            auto n = s.captureThreads(instance.pid, ids).size();
            show("threads");
            std::printf("%zu of %zu\n", n, ids.size());
        }
    }
}
TEST(Evidence, Explore) {
    for (const wchar_t* way : {L"generated-code"}) {
        const PracticeProcess practice(way);
        const CdrInstance instance = practice.listed();
        LastCapture last;
        for (int i = 0; i < 2; ++i) {
            FakeHost fake;
            SignatureRuleBase rules;
            LoadBuiltInRules(rules);
            const ULONGLONG began = GetTickCount64();
            OnCaptureNow(fake.host(), &instance, rules,
                         {[](WindowHandle, unsigned) { return false; }, CaptureMainThreadStack,
                          kSystemFiles, SystemEvidence()},
                         last);
            std::printf("==== %ls %llu ms\n%s", way, GetTickCount64() - began,
                        utf8FromWide(fake.report()).c_str());
        }
        std::fflush(stdout);
    }
}
