// The clipboard.
#pragma once

#include <string>

#include "base/action_host.h"

/// Puts text on the clipboard in the name of a window. A clipboard that another program holds is
/// left alone without a word; when memory runs out it stays empty.
void copyToClipboard(WindowHandle owner, const std::wstring& text);
