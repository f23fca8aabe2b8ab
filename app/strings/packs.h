// The twelve language packs, each in a file of its own beside this one.
#pragma once

#include "app/strings/tables.h"

extern const PackText kTraditionalChineseTexts[kStringKeys.size()];
extern const PackText kCzechTexts[kStringKeys.size()];
extern const PackText kDutchTexts[kStringKeys.size()];
extern const PackText kFrenchTexts[kStringKeys.size()];
extern const PackText kGermanTexts[kStringKeys.size()];
extern const PackText kItalianTexts[kStringKeys.size()];
extern const PackText kJapaneseTexts[kStringKeys.size()];
extern const PackText kPolishTexts[kStringKeys.size()];
extern const PackText kPortugueseTexts[kStringKeys.size()];
extern const PackText kRussianTexts[kStringKeys.size()];
extern const PackText kSpanishTexts[kStringKeys.size()];
extern const PackText kTurkishTexts[kStringKeys.size()];
