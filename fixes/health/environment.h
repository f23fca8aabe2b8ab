// The environment check: what is known to make CorelDRAW slow or unstable, rated and reported.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "base/action_host.h"
#include "fixes/health/printer.h"

/// The quota of an untouched system, which does not store one.
inline constexpr std::uint32_t kDefaultGdiQuota = 10000;

/// What the scan reads from the machine. What cannot be read keeps its default.
struct EnvironmentFacts {
    DefaultPrinterInfo printer;
    /// Entries of the system's font list.
    std::int32_t fontCount = 0;
    /// GDI handles that one process may hold.
    std::uint32_t gdiQuota = kDefaultGdiQuota;
    std::uint64_t physicalMemoryBytes = 0;
};

/// One line of the report.
struct EnvCheckItem {
    std::wstring label;
    /// The measured value as shown.
    std::wstring value;
    /// 0 = OK, 1 = warning, 2 = high risk.
    std::int32_t level = 0;
    /// Empty when there is nothing to advise.
    std::wstring advice;
};

struct EnvCheckResult {
    /// In the order of the report.
    std::vector<EnvCheckItem> items;
    DefaultPrinterInfo printer;
    std::uint32_t gdiQuota = kDefaultGdiQuota;
    std::int32_t fontCount = 0;
};

/// Rates the facts: the printer when there is one, the fonts, the GDI handle quota, the memory.
EnvCheckResult RateEnvironment(const EnvironmentFacts& facts);

/// The Environment Check button: one line per item of `scan`'s result, followed by its advice.
void OnEnvironmentCheck(const ActionHost& host, const std::function<EnvCheckResult()>& scan);
