// A cloud in memory: what the server would answer, what the cache holds, and what was asked.
#pragma once

#include <string>
#include <vector>

#include "base/shell.h"
#include "cloud/services.h"

struct FakeCloud {
    bool networkEnabled = true;
    std::string cache;
    bool cacheIsWritable = true;
    std::string answer;
    /// "METHOD path body", in order.
    std::vector<std::string> requests;

    CloudServices services();
};

/// Keeps the log and answers every question alike.
struct FakeShell {
    std::vector<std::wstring> lines;
    std::vector<std::wstring> questions;
    bool consents = true;

    Shell shell();
};
