// A cloud in memory: what the server would answer, what the cache holds, and what was asked.
#pragma once

#include <string>
#include <vector>

#include "base/text.h"
#include "cloud/services.h"
#include "tests/fake_host.h"

struct FakeCloud {
    std::string answer{};
    bool networkEnabled = true;
    bool cacheIsWritable = true;
    std::string cache{};
    /// "METHOD path body", in order.
    std::vector<std::string> requests{};

    CloudServices services() {
        return {
            [this] { return networkEnabled; },
            [this](bool enabled) { networkEnabled = enabled; },
            [this] { return cache; },
            [this](std::string_view body) {
                if (cacheIsWritable) cache = body;
                return cacheIsWritable;
            },
            [](std::string_view document) { return document.find("forged") == document.npos; },
            [this](std::wstring_view method, std::wstring_view path, std::string_view body) {
                requests.push_back(utf8FromWide(method) + " " + utf8FromWide(path) + " " +
                                   std::string(body));
                return answer;
            },
        };
    }
};
