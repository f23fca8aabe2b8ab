// Where the tool keeps its few files.
#pragma once

#include <string>

/// The tool's folder in the user's roaming application data, "...\Mirelo", whether it exists or
/// not; empty when Windows does not name the application-data folder.
///
/// A file server may hold the application data, and not answer: that counts as no name.
std::wstring toolFolder();

/// Creates it where it is missing. A failure shows when something is written there.
void makeToolFolder();
