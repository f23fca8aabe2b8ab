#include "diagnosis/classify.h"

#include <algorithm>
#include <string_view>

#include "base/text.h"

namespace {

// Compared without their extension.
constexpr std::wstring_view kSystemModules[] = {
    L"ntdll.dll",     L"kernel32.dll", L"kernelbase.dll", L"user32.dll",  L"gdi32.dll",
    L"gdi32full.dll", L"msvcrt.dll",   L"ucrtbase.dll",   L"ole32.dll",   L"oleaut32.dll",
    L"combase.dll",   L"rpcrt4.dll",   L"advapi32.dll",   L"sechost.dll", L"shell32.dll",
    L"shlwapi.dll",   L"comctl32.dll", L"comdlg32.dll",   L"imm32.dll",   L"msctf.dll",
    L"win32u.dll",    L"d3d11.dll",    L"dxgi.dll",       L"dwmapi.dll",  L"crypt32.dll",
    L"ws2_32.dll",    L"wininet.dll",  L"urlmon.dll",     L"clbcatq.dll", L"propsys.dll",
    L"setupapi.dll",  L"cfgmgr32.dll",
};
static_assert(std::size(kSystemModules) == 32);

constexpr std::wstring_view kWaitFunctions[] = {
    L"ZwWaitFor",
    L"NtWaitFor",
    L"MsgWaitFor",
    L"WaitForMultipleObjects",
    L"WaitForSingleObject",
    L"SleepEx",
    L"ZwDelayExecution",
    L"GetMessage",
    L"ZwRemoveIoCompletion",
    L"ZwUserGetMessage",
};
static_assert(std::size(kWaitFunctions) == 10);

bool Contains(std::wstring_view text, std::wstring_view part) {
    return text.find(part) != std::wstring_view::npos;
}

template <std::size_t N>
bool IsOneOf(std::wstring_view text, const std::wstring_view (&list)[N]) {
    return std::find(std::begin(list), std::end(list), text) != std::end(list);
}

// Cut at the first dot, so that "foo.bar.dll" is "foo"; a plug-in keeps its extension.
std::wstring_view Stripped(std::wstring_view lowerName) {
    for (const std::wstring_view extension : {L".dll", L".drv", L".exe"}) {
        if (lowerName.ends_with(extension)) return lowerName.substr(0, lowerName.find(L'.'));
    }
    return lowerName;
}

bool IsWaiting(const std::wstring& function) {
    if (function.empty()) return false;
    const std::wstring lower = lowered(function);
    return std::any_of(std::begin(kWaitFunctions), std::end(kWaitFunctions),
                       [&](std::wstring_view wait) { return Contains(lower, lowered(wait)); });
}

// Texts of a frame that may betray a subsystem although its module counts as the system's.
struct LoweredFrame {
    std::wstring module;
    std::wstring path;
    std::wstring function;

    [[nodiscard]] bool moduleContains(std::wstring_view part) const {
        return Contains(module, part) || Contains(path, part);
    }
    [[nodiscard]] bool betraysPrinting() const {
        return moduleContains(L"print") || moduleContains(L"spool") ||
               Contains(function, L"print") || Contains(function, L"spool");
    }
    [[nodiscard]] bool betraysFonts() const {
        return moduleContains(L"font") || moduleContains(L"dwrite") ||
               Contains(function, L"font") || Contains(function, L"glyph");
    }
};

SuspectFrame SuspectInSystemCode(const std::vector<StackFrame>& frames) {
    for (const StackFrame& frame : frames) {
        const LoweredFrame lower{lowered(frame.moduleName), lowered(frame.imagePath),
                                 lowered(frame.function)};
        if (lower.betraysPrinting()) {
            return {FrameCategory::print, frame, L"Print subsystem (system)"};
        }
        if (lower.betraysFonts()) return {FrameCategory::font, frame, L"Font subsystem (system)"};
    }
    return {FrameCategory::systemOnly, frames.front(),
            L"System-level wait (submit to analyze further)"};
}

}  // namespace

FrameCategory ClassifyModule(const StackFrame& frame) {
    constexpr std::wstring_view kPrintModules[] = {L"winspool", L"spoolss", L"localspl",
                                                   L"win32spl"};
    constexpr std::wstring_view kFontModules[] = {L"dwrite", L"ftlib", L"fontsub"};

    const std::wstring full = lowered(frame.moduleName);
    const std::wstring_view base = Stripped(full);
    if (full.ends_with(L".cpg")) return FrameCategory::plugin;
    if (IsOneOf(base, kPrintModules) || Contains(base, L"print")) return FrameCategory::print;
    if (Contains(base, L"font") || IsOneOf(base, kFontModules) || Contains(base, L"crlfnt")) {
        return FrameCategory::font;
    }
    if (Contains(full, L"corel") || full.starts_with(L"crl")) return FrameCategory::cdrCore;
    return FrameCategory::thirdParty;
}

bool IsSystemFrame(const StackFrame& frame, const SystemFiles& files) {
    if (IsWaiting(frame.function)) return true;
    const std::wstring full = lowered(frame.moduleName);
    const std::wstring_view base = Stripped(full);
    for (const std::wstring_view module : kSystemModules) {
        if (base == Stripped(module)) return true;
    }
    return !frame.imagePath.empty() && files.isInSystemDirectory(frame.imagePath) &&
           files.isMicrosoftFile(frame.imagePath);
}

SuspectFrame FindSuspect(const std::vector<StackFrame>& frames, const SystemFiles& files) {
    if (frames.empty()) return {};
    for (const StackFrame& frame : frames) {
        const FrameCategory category = ClassifyModule(frame);
        const bool blamedEvenInSystemCode =
            category == FrameCategory::print || category == FrameCategory::font;
        if (blamedEvenInSystemCode || !IsSystemFrame(frame, files)) {
            return {category, frame, frame.moduleName.empty() ? frame.imagePath : frame.moduleName};
        }
    }
    return SuspectInSystemCode(frames);
}
