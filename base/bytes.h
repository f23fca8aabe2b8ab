// Whole files and streams in memory, and their little-endian fields.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <span>
#include <vector>

/// Leaves elements that are created without a value uninitialised: a buffer of the size of a file
/// that is about to be read need not be cleared first.
template <typename T>
struct UninitialisedAllocator : std::allocator<T> {
    template <typename U>
    struct rebind {
        using other = UninitialisedAllocator<U>;
    };

    UninitialisedAllocator() = default;
    template <typename U>
    UninitialisedAllocator(const UninitialisedAllocator<U>&) noexcept {}

    template <typename U>
    void construct(U* place) noexcept {
        ::new (static_cast<void*>(place)) U;
    }
};

/// Owning bytes. `resize(n)` leaves the bytes that it adds uninitialised, `resize(n, 0)` does not.
using Bytes = std::vector<std::uint8_t, UninitialisedAllocator<std::uint8_t>>;

/// Bytes that somebody else owns.
using ByteView = std::span<const std::uint8_t>;

/// The fields are read and written byte by byte: no alignment is assumed. The caller has checked
/// that `at` lies inside.
inline std::uint16_t readU16(ByteView bytes, std::size_t at) {
    return static_cast<std::uint16_t>(bytes[at] | (bytes[at + 1] << 8));
}

inline std::uint32_t readU32(ByteView bytes, std::size_t at) {
    // One expression, which compilers turn into one load.
    return std::uint32_t{bytes[at]} | std::uint32_t{bytes[at + 1]} << 8 |
           std::uint32_t{bytes[at + 2]} << 16 | std::uint32_t{bytes[at + 3]} << 24;
}

inline void writeU16(std::span<std::uint8_t> bytes, std::size_t at, std::uint32_t value) {
    bytes[at] = static_cast<std::uint8_t>(value);
    bytes[at + 1] = static_cast<std::uint8_t>(value >> 8);
}

inline void writeU32(std::span<std::uint8_t> bytes, std::size_t at, std::uint32_t value) {
    writeU16(bytes, at, value & 0xFFFFU);
    writeU16(bytes, at + 2, value >> 16);
}
