// Which files belong to Windows itself.
#pragma once

#include <string>

#include "diagnosis/classify.h"

/// True when the path begins with the system directory's, in any case; false when Windows does not
/// name that directory.
bool IsInSystemDirectory(const std::wstring& path);

/// True when the "CompanyName" of the file's version resource contains "Microsoft".
bool IsMicrosoftFile(const std::wstring& path);

inline const SystemFiles kSystemFiles{IsInSystemDirectory, IsMicrosoftFile};
