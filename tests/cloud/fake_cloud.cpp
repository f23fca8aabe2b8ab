#include "tests/cloud/fake_cloud.h"

#include "base/text.h"

CloudServices FakeCloud::services() {
    return {
        [this] { return networkEnabled; },
        [this](bool enabled) { networkEnabled = enabled; },
        [this] { return cache; },
        [this](std::string_view body) {
            if (cacheIsWritable) cache = body;
            return cacheIsWritable;
        },
        [this](std::wstring_view method, std::wstring_view path, std::string_view body) {
            requests.push_back(utf8FromWide(method) + " " + utf8FromWide(path) + " " +
                               std::string(body));
            return answer;
        },
    };
}
