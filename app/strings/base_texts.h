// The base table of interface texts (Simplified Chinese and English).
#pragma once

#include "app/strings/tables.h"

extern const BaseText kBaseTexts[kStringKeys.size()];
