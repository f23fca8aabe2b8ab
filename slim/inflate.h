// A decoder for raw DEFLATE streams (RFC 1951), whole buffers only.
#pragma once

#include <cstddef>
#include <cstdint>

/// Decodes the DEFLATE stream at the start of `source` into `dest`; there is no zlib or gzip
/// wrapper. `*destLen` holds the capacity of `dest` and `*sourceLen` the number of input bytes.
/// With a null `dest` the stream is only checked and measured: the capacity does not limit it and
/// no byte is written. When the result is 0 or negative both lengths become the bytes produced and
/// consumed (a byte counts as consumed once one of its bits is); otherwise they keep their values.
/// Within its capacity `dest` may be written beyond the bytes produced. Never throws.
///
/// When several conditions meet, the one that a reader of single bits would meet first decides:
///    0  a block with the final bit was decoded
///    1  the output would exceed the capacity
///    2  the input ends before the stream does
///   -1  block of the reserved type 3
///   -2  stored block whose length does not match its complement
///   -3  more than 286 length codes or more than 30 distance codes
///   -4  the code-length code is over-subscribed or incomplete
///   -5  repeat of a previous length where there is none
///   -6  repeats run past the number of lengths announced
///   -7  the literal/length code is over-subscribed, or incomplete and not a single 1-bit code
///   -8  the same of the distance code, which may also be empty (a block of literals only)
///   -9  no end-of-block symbol
///  -10  bits that no code stands for, or length symbol 286 or 287 of the fixed code
///  -11  a distance that reaches back before the start of the output
int inflateRaw(std::uint8_t* dest, std::size_t* destLen, const std::uint8_t* source,
               std::size_t* sourceLen);

/// What a DEFLATE stream holds, without memory for it.
struct DecodedSum {
    /// As of `inflateRaw`; 1 also where the stream holds more than the limit.
    int code;
    /// The length and the CRC-32 of the output, where the code is 0.
    std::uint64_t length;
    std::uint32_t crc;
};

/// Decodes only to sum up. Work ends soon after `limit` bytes. Never throws.
DecodedSum sumDecoded(const std::uint8_t* source, std::size_t sourceLen, std::uint64_t limit);
