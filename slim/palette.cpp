#include "slim/palette.h"

#include <algorithm>
#include <new>
#include <string_view>

namespace {

constexpr std::string_view kElement = "<color ";
constexpr std::string_view kOpening = "<colors>";
constexpr std::string_view kClosing = "</colors>";
constexpr std::string_view kEmptyList = "<colors><page></page></colors>";

std::string_view asText(ByteView xml) {
    return {reinterpret_cast<const char*>(xml.data()), xml.size()};
}

}  // namespace

std::uint32_t countColorStyles(ByteView xml) {
    const std::string_view text = asText(xml);
    std::uint32_t count = 0;
    for (std::size_t at = text.find(kElement); at != std::string_view::npos;
         at = text.find(kElement, at + kElement.size()))
        ++count;
    return count;
}

bool clearColorStyles(Bytes& xml, std::uint32_t& count) try {
    count = countColorStyles(xml);
    if (count == 0) return true;

    const std::string_view text = asText(xml);
    const std::size_t opening = text.find(kOpening);
    const std::size_t closing = text.rfind(kClosing);
    if (opening == std::string_view::npos || closing == std::string_view::npos) return false;
    if (closing <= opening) return false;

    const std::size_t length = closing + kClosing.size() - opening;
    const auto at = [&](std::size_t position) {
        return xml.begin() + static_cast<std::ptrdiff_t>(position);
    };
    if (length < kEmptyList.size()) xml.insert(at(opening), kEmptyList.size() - length, 0);
    std::copy(kEmptyList.begin(), kEmptyList.end(), at(opening));
    if (length > kEmptyList.size())
        xml.erase(at(opening + kEmptyList.size()), at(opening + length));
    return true;
} catch (const std::bad_alloc&) {
    return false;
}
