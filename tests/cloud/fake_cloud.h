// A cloud in memory: what the server would answer, what the cache holds, and what was asked.
#pragma once

#include <string>
#include <vector>

#include "cloud/services.h"
#include "tests/fake_host.h"

struct FakeCloud {
    bool networkEnabled = true;
    std::string cache;
    bool cacheIsWritable = true;
    std::string answer;
    /// "METHOD path body", in order.
    std::vector<std::string> requests;

    CloudServices services();
};
