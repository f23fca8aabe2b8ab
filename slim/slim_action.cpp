#include "slim/slim_action.h"

#include <algorithm>
#include <string_view>

#include "base/text.h"
#include "slim/document.h"
#include "slim/slim_document.h"

namespace {

constexpr std::size_t kLongestLine = 256;
constexpr std::uint32_t kBufferTooSmall = 0x3003;  // FNERR_BUFFERTOOSMALL

constexpr wchar_t kCaption[] = L"File Slimming Confirmation";
constexpr wchar_t kQuestion[] =
    L"File slimming will be performed on the selected files:\n"
    L"  - Strip view snapshots (clears ALL saved views in View Manager, including yours)\n"
    L"  - Clear redundant color styles (verified: object colors unaffected)\n"
    L"  - Delete preview/thumbnail caches (auto-rebuilt by CDR on open)\n"
    L"Each file is backed up as .mirelobak next to the original first.\n"
    L"Make sure these files are NOT open in CDR right now. Continue?";

struct Counters {
    std::uint32_t succeeded = 0;
    std::uint32_t alreadyClean = 0;
    std::uint32_t failedOrSkipped = 0;
};

// Bytes as kilobytes with one decimal, an exact half rounded to even as printf does. No locale
// and no floating point take part.
std::wstring kilobytes(std::uint64_t bytes) {
    const std::uint64_t scaled = bytes % 1024 * 10;
    std::uint64_t tenths = scaled / 1024;
    const std::uint64_t rest = scaled % 1024;
    if (rest > 512 || (rest == 512 && tenths % 2 != 0)) ++tenths;
    return decimalUnsigned(bytes / 1024 + tenths / 10) + L"." + decimalUnsigned(tenths % 10) +
           L"KB";
}

bool isHighSurrogate(wchar_t c) {
    return (static_cast<std::uint32_t>(c) & 0xFFFFFC00U) == 0xD800;
}

// A line that would be too long loses the end of the name, never a figure.
std::wstring lineWithName(std::wstring_view before, std::wstring_view name,
                          const std::wstring& after) {
    const std::size_t room = kLongestLine - std::min(kLongestLine, before.size() + after.size());
    std::wstring line(before);
    if (name.size() <= room) {
        line += name;
    } else if (room > 0) {
        name = name.substr(0, room - 1);
        if (!name.empty() && isHighSurrogate(name.back())) name.remove_suffix(1);
        line += name;
        line += L'\u2026';
    }
    return line + after;
}

std::wstring_view displayName(std::wstring_view path) {
    const std::size_t slash = path.rfind(L'\\');
    return slash == std::wstring_view::npos ? path : path.substr(slash + 1);
}

std::wstring checkLine(std::wstring_view name, const DocumentAnalysis& analysis) {
    return lineWithName(L"[Check] ", name,
                        L": views " + decimal(analysis.views) + L" | color styles " +
                            decimal(analysis.colorStyles) + L" | previews " +
                            decimal(analysis.previews) + L" (" + kilobytes(analysis.previewBytes) +
                            L") | root.dat " + kilobytes(analysis.rootDatSize));
}

std::wstring slimmedLine(std::wstring_view name, const SlimOutcome& outcome) {
    return lineWithName(L"  [OK] ", name,
                        L": " + kilobytes(outcome.originalSize) + L" -> " +
                            kilobytes(outcome.newSize) + L" (views " +
                            decimal(outcome.viewsRemoved) + L" removed, colors " +
                            decimal(outcome.colorsCleared) + L" cleared, previews " +
                            decimal(outcome.previewsRemoved) + L" removed)");
}

void slimOne(const std::wstring& path, Counters& counters, const ActionHost& host,
             const SlimFiles& files) {
    const std::wstring_view name = displayName(path);
    const std::wstring start = L"[Slim] " + std::wstring(name);
    const DocumentAnalysis analysis = analyseDocument(path, files);
    if (!analysis.recognised || analysis.legacy) {
        ++counters.failedOrSkipped;
        host.appendLog(start + L": " +
                       (analysis.recognised
                            ? L"old format (riffData, X5-). Skipped - save as X6+ first."
                            : analysis.error));
        return;
    }
    host.appendLog(checkLine(name, analysis));

    const SlimOutcome outcome = slimDocument(path, SlimOptions(), files);
    if (!outcome.ok) {
        ++counters.failedOrSkipped;
        host.appendLog(start + L" failed: " + outcome.message);
    } else if (outcome.alreadyClean) {
        ++counters.alreadyClean;
        host.appendLog(start + L": already clean, nothing to do.");
    } else {
        ++counters.succeeded;
        host.appendLog(slimmedLine(name, outcome));
    }
}

}  // namespace

std::vector<std::wstring> selectedPaths(std::span<const wchar_t> dialogBuffer) {
    std::vector<std::wstring> strings;
    const std::wstring_view buffer(dialogBuffer.data(), dialogBuffer.size());
    for (std::size_t at = 0; at < buffer.size() && buffer[at] != 0;) {
        strings.emplace_back(buffer.substr(at, buffer.find(L'\0', at) - at));
        at += strings.back().size() + 1;
    }
    if (strings.size() < 2) return strings;
    const std::wstring folder = strings.front() + L"\\";
    strings.erase(strings.begin());
    for (std::wstring& name : strings)
        name.insert(0, folder);
    return strings;
}

std::wstring dialogErrorLine(std::uint32_t code) {
    if (code == 0) return {};
    if (code == kBufferTooSmall)
        return L"[Slim] Selection too long: the file names together exceed 8192 characters. "
               L"Select fewer files at once.";
    return L"[Slim] The file dialog failed (code " + decimal(code) + L").";
}

void slimSelection(std::span<const wchar_t> dialogBuffer, const ActionHost& host,
                   const SlimFiles& files) {
    if (!host.confirm(kQuestion, kCaption, ConfirmStyle::question)) return;
    Counters counters;
    for (const std::wstring& path : selectedPaths(dialogBuffer))
        slimOne(path, counters, host, files);
    host.appendLog(L"[Slim] Done: succeeded " + decimal(counters.succeeded) + L" / already clean " +
                   decimal(counters.alreadyClean) + L" / failed or skipped " +
                   decimal(counters.failedOrSkipped) +
                   L". Backups are .mirelobak files next to originals.");
    host.appendLog(
        L"  Tip: open one slimmed file in CDR to confirm it is fine before batch processing. "
        L"Slimmed files are safe to share.");
}
