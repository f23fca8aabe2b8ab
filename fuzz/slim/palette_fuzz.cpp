// Any bytes as a palette: what is cleared is exactly what stands between the outer tags.
#include <string>

#include "fuzz/require.h"
#include "slim/palette.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(data, data + size);
    Bytes xml(data, data + size);
    std::uint32_t count = 99;
    const bool isCleared = clearColorStyles(xml, count);
    require(count == countColorStyles(Bytes(data, data + size)), "one count");

    const std::size_t opening = text.find("<colors>");
    const std::size_t closing = text.rfind("</colors>");
    const bool hasList = opening != text.npos && closing != text.npos && opening < closing;
    require(isCleared == (count == 0 || hasList), "cleared where there is a list");
    std::string expected = text;
    if (isCleared && count != 0)
        expected.replace(opening, closing + 9 - opening, "<colors><page></page></colors>");
    require(expected == std::string(xml.begin(), xml.end()), "nothing else changes");
    return 0;
}
