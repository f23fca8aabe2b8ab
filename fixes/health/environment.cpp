#include "fixes/health/environment.h"

#include "base/text.h"

namespace {

constexpr std::int32_t kOk = 0;
constexpr std::int32_t kWarning = 1;
constexpr std::int32_t kHighRisk = 2;

constexpr std::int32_t kManyFonts = 800;
constexpr std::int32_t kTooManyFonts = 1500;
constexpr std::uint64_t kLittleMemoryBytes = std::uint64_t{8} << 30;

EnvCheckItem RatePrinter(const DefaultPrinterInfo& printer) {
    EnvCheckItem item{L"Default printer", printer.name, kOk, L""};
    if (printer.isNetwork || printer.isOffline) {
        item.level = kHighRisk;
        item.advice =
            L"Your default printer is a network printer or offline - the No.1 cause of slow "
            L"startup and random freezes. Temporarily switch to Microsoft Print to PDF via the Fix "
            L"tab.";
    } else if (printer.isVirtual) {
        item.value += L" (virtual printer - best practice)";
    }
    return item;
}

EnvCheckItem RateFonts(std::int32_t fontCount) {
    EnvCheckItem item{L"Installed fonts", decimal(fontCount) + L" fonts", kOk, L""};
    if (fontCount > kTooManyFonts) {
        item.level = kHighRisk;
        item.advice =
            L"Too many fonts significantly slow down CDR startup and text operations. Uninstall "
            L"unused fonts.";
    } else if (fontCount > kManyFonts) {
        item.level = kWarning;
        item.advice = L"Font count is on the high side; consider trimming if startup feels slow.";
    }
    return item;
}

// The system's own default already deserves the warning: large documents do reach it.
EnvCheckItem RateGdiQuota(std::uint32_t gdiQuota) {
    EnvCheckItem item{L"GDI handle quota", decimalUnsigned(gdiQuota), kOk, L""};
    if (gdiQuota <= kDefaultGdiQuota) {
        item.level = kWarning;
        item.advice =
            L"Large documents can hit this ceiling (watch it on the Dashboard). Advanced users may "
            L"raise the registry value GDIProcessHandleQuota to 20000 and reboot.";
    }
    return item;
}

EnvCheckItem RateMemory(std::uint64_t bytes) {
    EnvCheckItem item{L"Physical memory", decimalUnsigned(bytes >> 20) + L" MB", kOk, L""};
    if (bytes < kLittleMemoryBytes) {
        item.level = kWarning;
        item.advice =
            L"CDR 2020+ recommends 16GB+ RAM; below 8GB large documents cause heavy paging and "
            L"freezes.";
    }
    return item;
}

const wchar_t* RatingTag(std::int32_t level) {
    if (level == kHighRisk) return L"[HIGH RISK]";
    return level == kWarning ? L"[WARN]" : L"[OK]";
}

}  // namespace

EnvCheckResult RateEnvironment(const EnvironmentFacts& facts) {
    EnvCheckResult result{{}, facts.printer, facts.gdiQuota, facts.fontCount};
    if (!facts.printer.name.empty()) result.items.push_back(RatePrinter(facts.printer));
    result.items.push_back(RateFonts(facts.fontCount));
    result.items.push_back(RateGdiQuota(facts.gdiQuota));
    result.items.push_back(RateMemory(facts.physicalMemoryBytes));
    return result;
}

void OnEnvironmentCheck(const ActionHost& host, const std::function<EnvCheckResult()>& scan) {
    host.appendLog(L"===== Environment Check =====");
    const EnvCheckResult result = scan();
    for (const EnvCheckItem& item : result.items) {
        host.appendLog(std::wstring(RatingTag(item.level)) + L" " + item.label + L": " +
                       item.value);
        if (!item.advice.empty()) host.appendLog(L"    -> " + item.advice);
    }
    host.appendLog(L"");
}
