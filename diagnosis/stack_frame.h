// What a capture records of the hung thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// One walked frame. Texts are empty and numbers 0 where nothing is known.
struct StackFrame {
    /// The frame's program counter.
    std::uint64_t address = 0;
    /// Full path of the module that holds the address, as loaded.
    std::wstring imagePath;
    /// Short name of that module, as the debug-help library reports it.
    std::wstring moduleName;
    /// Symbol at the address, and the address's distance from the symbol's start.
    std::wstring function;
    std::uint64_t displacement = 0;
    std::wstring sourceFile;
    std::uint32_t line = 0;
};

/// The name to keep of a module: as the debug-help library reports it, but a plug-in by its file
/// name. Windows' library leaves extensions out, and ".cpg" is what tells a plug-in from any other
/// module.
std::wstring ModuleNameOf(const std::wstring& reportedName, const std::wstring& imagePath);

/// A capture holds no more frames than this; a damaged stack may repeat one frame for ever.
inline constexpr int kMaxFrames = 64;

/// A report shows no more frames than this; the others are only searched.
inline constexpr std::size_t kShownFrames = 8;

struct CaptureResult {
    /// True when at least one frame was walked.
    bool ok = false;
    /// The failure, as it is shown to the user; empty when `ok`.
    std::wstring error;
    /// Top of the stack first.
    std::vector<StackFrame> frames;
    /// Where the walk was led behind the last frame and could not go on; 0 where it came to an end.
    std::uint64_t stoppedAt = 0;
};

/// The stack of one thread, top first; never empty.
struct ThreadStack {
    std::uint32_t threadId = 0;
    std::vector<StackFrame> frames;
};
