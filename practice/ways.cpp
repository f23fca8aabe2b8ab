#include "practice/ways.h"

#include "practice/libraries.h"
#include "practice/other_threads.h"
#include "practice/own_code.h"

namespace {

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
    HangInLibrary(L"screenhook.dll", "ForwardPointerEvent", handshake.first);
    FreeLibrary(GetModuleHandleW(L"screenhook.dll"));
    HangInLibrary(L"slowfilter.cpg", "ApplySlowFilter", handshake.second);
}

void ApplyPanelEffect(Handshake& handshake) {
    HangInLibrary(L"deepfilter.cpg", "ApplyNestedFilter", handshake.first);
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
    {L"deep-plugin", Face::mainWindow, false, ApplyPanelEffect},
    {L"lock-held", Face::mainWindow, false, SaveDocument},
    {L"lock-held-crowd", Face::mainWindow, false, SaveDocumentInACrowd},
    {L"mutex-held", Face::mainWindow, false, ExportDocument},
    {L"com-wait", Face::mainWindow, false, UpdateLinkedObject},
    {L"own-code", Face::mainWindow, false, RebuildDrawing},
    {L"own-spin", Face::mainWindow, false, SortObjects},
    {L"generated-code", Face::mainWindow, false, RunMacro},
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
