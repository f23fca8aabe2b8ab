// Which frame is to blame: the first, from the top of the stack, that is not ordinary system code.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "diagnosis/frame_category.h"
#include "diagnosis/stack_frame.h"

/// What classification asks about files on disk; both functions are always set.
struct SystemFiles {
    /// The path begins with the system directory's (any case).
    std::function<bool(const std::wstring& path)> isInSystemDirectory;
    /// The file's "CompanyName" contains "Microsoft".
    std::function<bool(const std::wstring& path)> isMicrosoftFile;
};

struct SuspectFrame {
    /// `unknown` when the stack was empty.
    FrameCategory category = FrameCategory::unknown;
    /// Copy of the chosen frame; empty when the stack was empty.
    StackFrame frame;
    /// What is shown as "Suspect module": the frame's module name, its image path where it has no
    /// name, or a fixed label when only system frames were found.
    std::wstring module;
};

/// The category of the frame's module by its name alone: plugin, print, font, cdrCore or
/// thirdParty.
FrameCategory ClassifyModule(const StackFrame& frame);

/// True for waiting and for ordinary system code, by function, by module, or by the file's place
/// and maker.
bool IsSystemFrame(const StackFrame& frame, const SystemFiles& files);

/// The frame to blame in a stack given top first. When every frame is a system frame, one that
/// betrays printing or fonts by its names; else the top frame as `systemOnly`.
SuspectFrame FindSuspect(const std::vector<StackFrame>& frames, const SystemFiles& files);
