// The interface's fixed texts, by key, in the current language.
#pragma once

#include <cstdint>
#include <string_view>

/// Makes a language current; one beyond the last is taken as English.
void setLanguage(std::int32_t language);

/// The current language's index.
std::int32_t currentLanguage();

/// The text of a key: from the current language's pack, else from the base table in the current
/// language, English or Simplified Chinese; "<missing>" for a key that no table has. The text lives
/// as long as the process.
const wchar_t* tr(std::string_view key);
