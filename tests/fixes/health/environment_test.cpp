#include "fixes/health/environment.h"

#include <gtest/gtest.h>

namespace {

using Lines = std::vector<std::wstring>;

constexpr std::uint64_t kEightGiB = 8589934592;

Lines reportOf(const EnvironmentFacts& facts) {
    Lines log;
    ActionHost host;
    host.appendLog = [&](const std::wstring& line) { log.push_back(line); };
    OnEnvironmentCheck(host, [&] {
        EXPECT_EQ(log.size(), 1U) << "the scan runs below its headline";
        return RateEnvironment(facts);
    });
    return log;
}

}  // namespace

TEST(EnvironmentCheck, ReportsEveryItemWithItsAdvice) {
    EXPECT_EQ(reportOf({{L"Office", false, false, false}, 800, 10001, kEightGiB}),
              (Lines{L"===== Environment Check =====", L"[OK] Default printer: Office",
                     L"[OK] Installed fonts: 800 fonts", L"[OK] GDI handle quota: 10001",
                     L"[OK] Physical memory: 8192 MB", L""}));
    EXPECT_EQ(
        reportOf({{L"Print to PDF", false, true, true}, 1501, 10000, kEightGiB - 1}),
        (Lines{
            L"===== Environment Check =====", L"[HIGH RISK] Default printer: Print to PDF",
            L"    -> Your default printer is a network printer or offline - the No.1 cause of slow "
            L"startup and random freezes. Temporarily switch to Microsoft Print to PDF via the Fix "
            L"tab.",
            L"[HIGH RISK] Installed fonts: 1501 fonts",
            L"    -> Too many fonts significantly slow down CDR startup and text operations. "
            L"Uninstall unused fonts.",
            L"[WARN] GDI handle quota: 10000",
            L"    -> Large documents can hit this ceiling (watch it on the Dashboard). Advanced "
            L"users may raise the registry value GDIProcessHandleQuota to 20000 and reboot.",
            L"[WARN] Physical memory: 8191 MB",
            L"    -> CDR 2020+ recommends 16GB+ RAM; below 8GB large documents cause heavy paging "
            L"and freezes.",
            L""}));
    EXPECT_EQ(reportOf({}).at(1), L"[OK] Installed fonts: 0 fonts");
    EXPECT_EQ(reportOf({}).at(4), L"[WARN] Physical memory: 0 MB");
}
