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

Shell FakeShell::shell() {
    return {
        [this](std::wstring text) { lines.push_back(std::move(text)); },
        [this](const std::wstring& text, const std::wstring& caption, ConfirmStyle style) {
            questions.push_back(caption + L"|" + text);
            return style == ConfirmStyle::question && consents;
        },
        [](std::wstring) {},
    };
}
