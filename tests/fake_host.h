// The program around an action: keeps what it was told and answers every question alike.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/action_host.h"

struct FakeHost {
    std::vector<std::wstring> lines;
    /// "caption|text", in order.
    std::vector<std::wstring> questions;
    std::vector<ConfirmStyle> styles;
    std::wstring status;
    bool consents = true;

    ActionHost host() {
        return {
            [this](std::wstring text) { lines.push_back(std::move(text)); },
            [this](const std::wstring& text, const std::wstring& caption, ConfirmStyle style) {
                questions.push_back(caption + L"|" + text);
                styles.push_back(style);
                return consents;
            },
            [this](std::wstring text) { status = std::move(text); },
        };
    }

    [[nodiscard]] std::wstring report() const {
        std::wstring whole;
        for (const std::wstring& line : lines)
            whole += line + L"\n";
        return whole;
    }
};

inline bool holds(const std::wstring& text, const std::wstring& part) {
    return text.find(part) != std::wstring::npos;
}

inline void expectParts(const std::wstring& text, const std::vector<std::wstring>& parts) {
    for (const std::wstring& part : parts)
        EXPECT_TRUE(holds(text, part)) << part << " is not in: " << text;
}
