// Signed rule documents: what is signed, and how the signature is carried. Only builds with a key
// ask for one.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// An ECDSA signature or public key on the curve P-256: two numbers of 32 bytes, big end first. A
/// signature is r and s, a key is x and y.
using EcdsaPair = std::array<std::uint8_t, 64>;

struct SignedRules {
    /// The bytes that the signature covers: the document as its author wrote it.
    std::string document;
    EcdsaPair signature{};
};

/// Takes the signature out of a rule document. It must begin with
///     {"signature":"S",
/// to the byte, where S is the signature in 88 characters of base64 (RFC 4648, with padding); what
/// is signed is "{" and all that follows. Nothing when it begins otherwise.
std::optional<SignedRules> TakeSignature(std::string_view signedDocument);

/// A public key from 128 hexadecimal digits; nothing when it is anything else.
std::optional<EcdsaPair> KeyFromHex(std::string_view digits);
