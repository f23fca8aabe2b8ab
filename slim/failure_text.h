// Failure texts that are set when memory may just have run out.
#pragma once

#include <new>
#include <string>

/// Sets a text without throwing; it stays empty when there is no memory for it either.
inline void setFailureText(std::wstring& text, const wchar_t* value) noexcept {
    text.clear();
    try {
        text = value;
    } catch (const std::bad_alloc&) {
        return;
    }
}
