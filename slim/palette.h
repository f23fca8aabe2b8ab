// The colour styles of a document's palette, an XML text that is searched and not parsed.
#pragma once

#include <cstdint>

#include "base/bytes.h"

/// The number of "<color " elements. The blank keeps "<colors>" out.
std::uint32_t countColorStyles(ByteView xml);

/// Puts an empty list in place of everything from the first "<colors>" to the last "</colors>" and
/// keeps the rest byte for byte; `count` becomes the number of styles in the whole text. With none
/// the text is unchanged and the result true. False, with the text unchanged, when styles are there
/// but no such list is, or when memory is short.
bool clearColorStyles(Bytes& xml, std::uint32_t& count);
