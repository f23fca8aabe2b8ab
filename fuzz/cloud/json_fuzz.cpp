// Any bytes through the JSON reader: what it accepts survives being written and read again, and
// being copied and moved; what another reader accepts, it accepts with the same values.
#include <cstddef>
#include <cstdint>
#include <string>

#include "cloud/json/json.h"
#include "fuzz/cloud/json_text.h"
#include "fuzz/require.h"

#if __has_include(<nlohmann/json.hpp>)
#include <nlohmann/json.hpp>
#endif

namespace {

// Writing a value recurses, unlike the reader.
constexpr std::size_t kLongestChecked = 1 << 14;

// What another reader accepts, ours accepts with the same values: the peer's own rendering, where
// all is decoded and numbers are written anew, must read as the text does. The peer passes over a
// byte-order mark, ends at a zero byte and joins surrogate pairs, which ours does not.
void CompareWithPeer([[maybe_unused]] const std::string& written,
                     [[maybe_unused]] std::string_view text) {
#if __has_include(<nlohmann/json.hpp>)
    // The peer's writer needs kilobytes of stack a level.
    constexpr std::size_t kLongestCompared = 1 << 11;
    for (const std::string_view oddity : {"\xEF\xBB\xBF", "\\ud", "\\uD"}) {
        if (text.find(oddity) != text.npos) return;
    }
    if (text.size() > kLongestCompared || text.find('\0') != text.npos) return;
    const auto theirs = nlohmann::json::parse(text, nullptr, false);
    if (theirs.is_discarded()) return;
    require(JsonText(ParseJson(theirs.dump())) == written, "both readers agree");
#endif
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    JsonValue value = ParseJson(text);
    JsonValue copy = value;
    if (size <= kLongestChecked) {
        const std::string written = JsonText(value);
        require(JsonText(ParseJson(written)) == written, "what is written reads back the same");
        require(JsonText(copy) == written, "a copy is the same");
        CompareWithPeer(written, text);
    }
    copy = Member(copy, "a");
    const JsonValue moved = std::move(value);
    require(value.tag() == JsonTag::null, "a value moved from is null");
    return 0;
}
