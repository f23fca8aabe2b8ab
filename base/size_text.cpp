#include "base/size_text.h"

#include "base/text.h"

std::wstring sizeText(std::uint64_t bytes) {
    if (bytes < 1024) return decimalUnsigned(bytes) + (bytes == 1 ? L" byte" : L" bytes");
    constexpr const wchar_t* kUnits[] = {L" KB", L" MB", L" GB", L" TB"};
    std::size_t unit = 0;
    unsigned shift = 10;
    while (unit + 1 < std::size(kUnits) && (bytes >> shift) >= 1024) {
        ++unit;
        shift += 10;
    }
    const std::uint64_t whole = bytes >> shift;
    const std::uint64_t rest = bytes & ((std::uint64_t{1} << shift) - 1);
    return decimalUnsigned(whole) + L"." + decimalUnsigned(rest * 10 >> shift) + kUnits[unit];
}

std::wstring fileCountText(std::uint64_t count) {
    return decimalUnsigned(count) + (count == 1 ? L" file" : L" files");
}
