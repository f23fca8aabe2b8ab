#include "cloud/rule_signature.h"

namespace {

constexpr std::string_view kBefore = R"({"signature":")";
constexpr std::string_view kBehind = R"(",)";
constexpr std::size_t kBase64Length = 88;
constexpr std::string_view kBase64 =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::string_view kHex = "0123456789abcdef";

// 64 bytes are 21 groups of three and one byte: 86 characters and two of padding. The last
// character's low four bits must be zero, so that there is one way to write each signature.
std::optional<EcdsaPair> PairFromBase64(std::string_view text) {
    if (!text.ends_with("==")) return std::nullopt;
    text.remove_suffix(2);
    EcdsaPair pair{};
    std::uint32_t bits = 0;
    int bitCount = 0;
    auto* byte = pair.begin();
    for (const char c : text) {
        const std::size_t value = kBase64.find(c);
        if (value == std::string_view::npos) return std::nullopt;
        bits = bits << 6 | static_cast<std::uint32_t>(value);
        bitCount += 6;
        if (bitCount < 8) continue;
        bitCount -= 8;
        *byte++ = static_cast<std::uint8_t>(bits >> bitCount);
    }
    if ((bits & 0xFU) != 0) return std::nullopt;
    return pair;
}

}  // namespace

std::optional<SignedRules> TakeSignature(std::string_view signedDocument) {
    constexpr std::size_t kLength = kBefore.size() + kBase64Length + kBehind.size();
    if (signedDocument.size() < kLength || !signedDocument.starts_with(kBefore) ||
        !signedDocument.substr(kLength - kBehind.size()).starts_with(kBehind)) {
        return std::nullopt;
    }
    const auto signature = PairFromBase64(signedDocument.substr(kBefore.size(), kBase64Length));
    if (!signature) return std::nullopt;
    return SignedRules{"{" + std::string(signedDocument.substr(kLength)), *signature};
}

std::optional<EcdsaPair> KeyFromHex(std::string_view digits) {
    EcdsaPair key{};
    if (digits.size() != 2 * key.size()) return std::nullopt;
    for (std::size_t i = 0; i < digits.size(); ++i) {
        const std::size_t value = kHex.find(digits[i]);
        if (value == std::string_view::npos) return std::nullopt;
        key[i / 2] = static_cast<std::uint8_t>(std::size_t{key[i / 2]} * 16 + value);
    }
    return key;
}
