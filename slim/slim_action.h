// The Slim action from the file dialog's answer to the summary.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "base/action_host.h"
#include "slim/slim_files.h"

/// The paths in the buffer of a multiple-selection file dialog: one full path, or a folder and the
/// file names in it, each ended by a zero and the list by one more. The buffer's end ends it too.
std::vector<std::wstring> selectedPaths(std::span<const wchar_t> dialogBuffer);

/// The log line for a file dialog that ended with an error, by its `CommDlgExtendedError` code;
/// empty for 0, the user's own cancelling.
std::wstring dialogErrorLine(std::uint32_t code);

/// Asks for confirmation and slims the files that the dialog returned, one after the other. Every
/// outcome goes to the report log.
void slimSelection(std::span<const wchar_t> dialogBuffer, const ActionHost& host,
                   const SlimFiles& files);
