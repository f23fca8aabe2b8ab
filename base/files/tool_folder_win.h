// Where the tool keeps its few files.
#pragma once

#include <string>

/// The tool's folder in the user's roaming application data, "...\Mirelo", whether it exists or
/// not; empty when Windows does not name the application-data folder.
std::wstring toolFolder();
