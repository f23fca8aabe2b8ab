#include "practice/ways.h"

#include <iterator>
#include <string>

#include "practice/own_code.h"

namespace {

std::wstring ProgramFolder() {
    wchar_t path[1024] = {};
    const DWORD length = GetModuleFileNameW(nullptr, path, static_cast<DWORD>(std::size(path)));
    const std::wstring_view file(path, length);
    return std::wstring(file.substr(0, file.rfind(L'\\') + 1));
}

/// Hangs in `function` of a library beside the program or one folder up, and keeps it loaded.
HMODULE HangInLibrary(const wchar_t* library, const char* function, Hang& hang) {
    const std::wstring folder = ProgramFolder();
    HMODULE module = LoadLibraryW((folder + library).c_str());
    if (!module) module = LoadLibraryW((folder + L"..\\" + library).c_str());
    if (!module) EndProcess(kExitLibraryMissing);
    const auto entry = reinterpret_cast<HangFunction>(
        reinterpret_cast<void (*)()>(GetProcAddress(module, function)));
    if (!entry) EndProcess(kExitLibraryMissing);
    entry(hang);
    return module;
}

void ApplyEffect(Handshake& handshake) {
    HangInLibrary(L"slowfilter.cpg", "ApplySlowFilter", handshake.first);
}

void PreviewEffect(Handshake& handshake) {
    HangInLibrary(L"slowfilter.cpg", "ApplyEndlessFilter", handshake.first);
}

void PrintDocument(Handshake& handshake) {
    HangInLibrary(L"acmeprintdrv.dll", "AskPrinterForTrays", handshake.first);
}

void FillFontList(Handshake& handshake) {
    HangInLibrary(L"acmefontpack.dll", "ReadFontFaces", handshake.first);
}

void WeldShapes(Handshake& handshake) {
    HangInLibrary(L"crlgeometry.dll", "IntersectOutlines", handshake.first);
}

void TrackPointer(Handshake& handshake) {
    HangInLibrary(L"screenhook.dll", "ForwardPointerEvent", handshake.first);
}

// Both libraries want the same base: the second takes the place of the first.
void TrackPointerThenApplyEffect(Handshake& handshake) {
    FreeLibrary(HangInLibrary(L"screenhook.dll", "ForwardPointerEvent", handshake.first));
    HangInLibrary(L"slowfilter.cpg", "ApplySlowFilter", handshake.second);
}

constexpr Way kWays[] = {
    {L"plugin-sleep", Face::mainWindow, false, ApplyEffect},
    {L"plugin-spin", Face::mainWindow, false, PreviewEffect},
    {L"print", Face::mainWindow, false, PrintDocument},
    {L"font", Face::mainWindow, false, FillFontList},
    {L"core-dll", Face::mainWindow, false, WeldShapes},
    {L"third-party", Face::mainWindow, false, TrackPointer},
    {L"late-plugin", Face::mainWindow, false, TrackPointerThenApplyEffect},
    {L"stopwatch", Face::mainWindow, false, WatchTheClock},
    {L"own-code", Face::mainWindow, false, RebuildDrawing},
    {L"deep-stack", Face::mainWindow, false, OpenNestedGroups},
    {L"send-message", Face::mainWindow, false, AskSilentWindow},
    {L"system-wait", Face::mainWindow, true, nullptr},
    {L"responsive", Face::mainWindow, false, nullptr},
    {L"exit-on-signal", Face::mainWindow, false, nullptr},  // responsive, under the name of its use
    {L"splash", Face::splash, false, nullptr},
};

}  // namespace

const Way* FindWay(std::wstring_view name) {
    for (const Way& way : kWays) {
        if (way.name == name) return &way;
    }
    return nullptr;
}
