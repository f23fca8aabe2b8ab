#include "cdr/metrics.h"

#include "base/text.h"

namespace {

constexpr std::uint32_t kManyHandles = 8000;
constexpr std::uint32_t kCriticalHandles = 9000;

constexpr const wchar_t* kLevelTexts[] = {
    L"OK",
    L"Warning (near handle limit)",
    L"Critical (crash likely)",
};

}  // namespace

int GdiHandleLevel(std::uint32_t gdiHandles) {
    if (gdiHandles > kCriticalHandles) return 2;
    return gdiHandles > kManyHandles ? 1 : 0;
}

std::wstring MetricsLine(const CdrMetrics& metrics) {
    // A hang stands out in capitals.
    const wchar_t* responsive = metrics.responsive ? L"yes" : L"NO";
    return L"[Dashboard] GDI handles: " + decimalUnsigned(metrics.gdiHandles) + L" (" +
           kLevelTexts[GdiHandleLevel(metrics.gdiHandles)] + L")  Working set: " +
           decimalUnsigned(metrics.workingSetMB) + L" MB  Private: " +
           decimalUnsigned(metrics.privateMB) + L" MB  Responsive: " + responsive;
}
