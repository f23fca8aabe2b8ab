// The health of one CorelDRAW process, and how it reads in the report.
#pragma once

#include <cstdint>
#include <string>

/// One reading. The defaults are those of a process that could not be opened.
struct CdrMetrics {
    /// GDI objects in use; CorelDRAW crashes when they run out.
    std::uint32_t gdiHandles = 0;
    /// Memory in whole MiB, rounded down; 0 when it could not be read.
    std::uint64_t workingSetMB = 0;
    std::uint64_t privateMB = 0;
    /// The main window answered, or there was none to ask.
    bool responsive = true;
    /// The process could be opened.
    bool ok = false;
};

/// 0 = fine, 1 = near the system's default limit of 10000 handles, 2 = about to crash.
int GdiHandleLevel(std::uint32_t gdiHandles);

/// The whole report line of a reading.
std::wstring MetricsLine(const CdrMetrics& metrics);
