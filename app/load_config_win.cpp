// The program's load configuration (PE format, "The Load Configuration Structure"): libraries of
// the import table come from the system's folder only, so that a file beside the program, in a
// folder of downloads, is not taken for one of them.
#include <windows.h>

#include <cstdint>

namespace {

// By offset, because mingw's headers do not name the one field that counts.
struct LoadConfiguration {
    std::uint32_t size;
    std::uint32_t mark;
    std::uint8_t unused1[0x46];
    std::uint16_t dependentLoadFlags;
    std::uint8_t unused2[0x44];
};
static_assert(sizeof(LoadConfiguration) == 0x94);

}  // namespace

// The linker knows nothing of it: packaging/finish_program.py finds it by the mark, which stands
// where a time would, and enters it into the program's directory.
extern "C" const LoadConfiguration mireloLoadConfiguration;
const LoadConfiguration mireloLoadConfiguration = {
    sizeof(LoadConfiguration), 0x6F6C6D69, {}, LOAD_LIBRARY_SEARCH_SYSTEM32, {}};
