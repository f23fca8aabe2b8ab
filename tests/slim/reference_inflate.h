// DEFLATE as a reader of single bits decodes it: what inflateRaw must agree with.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

struct ReferenceResult {
    int code;
    std::vector<std::uint8_t> output;
    std::size_t consumed;
};

class ReferenceInflate {
  public:
    /// Without a capacity the output is unlimited.
    static ReferenceResult decode(std::span<const std::uint8_t> source,
                                  std::optional<std::size_t> capacity) {
        ReferenceInflate decoder(source, capacity);
        int code = 2;
        try {
            code = decoder.blocks();
        } catch (const InputExhausted&) {
        }
        return {code, std::move(decoder.output_), (decoder.position_ + 7) / 8};
    }

  private:
    struct InputExhausted {};
    struct Code {
        std::array<int, 16> counts{};
        std::vector<int> symbols;
        int left = 1;  // 0 complete, negative over-subscribed, positive incomplete
    };

    ReferenceInflate(std::span<const std::uint8_t> source, std::optional<std::size_t> capacity)
        : source_(source), capacity_(capacity) {}

    static Code build(std::span<const int> lengths) {
        Code code;
        for (const int length : lengths)
            ++code.counts.at(std::size_t(length));
        for (int length = 1; length < 16; ++length) {
            code.left = code.left < 0 ? -1 : 2 * code.left - code.counts.at(std::size_t(length));
            for (std::size_t i = 0; i < lengths.size(); ++i) {
                if (lengths[i] == length) code.symbols.push_back(int(i));
            }
        }
        return code;
    }
    static bool isSingleBit(const Code& code) {
        return code.symbols.size() == 1 && code.counts[1] == 1;
    }

    int bits(int count) {
        int value = 0;
        for (int i = 0; i < count; ++i, ++position_) {
            if (position_ / 8 >= source_.size()) throw InputExhausted();
            value |= (source_[position_ / 8] >> (position_ % 8) & 1) << i;
        }
        return value;
    }

    int symbol(const Code& code) {
        int value = 0, first = 0, index = 0;
        for (std::size_t length = 1; length < 16; ++length) {
            value = 2 * value + bits(1);
            first *= 2;
            const int count = code.counts[length];
            if (value < first + count) return code.symbols.at(std::size_t(index + value - first));
            index += count;
            first += count;
        }
        return -10;
    }

    bool isFull(std::size_t more) const { return capacity_ && *capacity_ - output_.size() < more; }

    int stored() {
        position_ = (position_ + 7) / 8 * 8;
        if (source_.size() - position_ / 8 < 4) return 2;
        const int length = bits(16);
        if ((length ^ bits(16)) != 0xFFFF) return -2;
        const auto data = source_.subspan(position_ / 8);
        if (data.size() < std::size_t(length)) return 2;
        if (isFull(std::size_t(length))) return 1;
        output_.insert(output_.end(), data.begin(), data.begin() + length);
        position_ += 8 * std::size_t(length);
        return 0;
    }

    void fixedCodes() {
        std::array<int, 288> lengths;
        for (int i = 0; i < 288; ++i) {
            lengths[std::size_t(i)] = i < 144 ? 8 : i < 256 ? 9 : i < 280 ? 7 : 8;
        }
        literals_ = build(lengths);
        distances_ = build(std::vector<int>(30, 5));
    }

    int dynamicCodes() {
        constexpr std::size_t kOrder[] = {16, 17, 18, 0, 8,  7, 9,  6, 10, 5,
                                          11, 4,  12, 3, 13, 2, 14, 1, 15};
        const int literals = bits(5) + 257, distances = bits(5) + 1, codeLengths = bits(4) + 4;
        if (literals > 286 || distances > 30) return -3;
        std::vector<int> lengths(19);
        for (int i = 0; i < codeLengths; ++i)
            lengths[kOrder[i]] = bits(3);
        const Code code = build(lengths);
        if (code.left != 0) return -4;
        const auto total = std::size_t(literals + distances);
        for (lengths.clear(); lengths.size() < total;) {
            const int next = symbol(code);
            if (next == 16 && lengths.empty()) return -5;
            const int length = next == 16 ? lengths.back() : next < 16 ? next : 0;
            const int repeat = next < 16    ? 1
                               : next == 16 ? 3 + bits(2)
                               : next == 17 ? 3 + bits(3)
                                            : 11 + bits(7);
            lengths.insert(lengths.end(), std::size_t(repeat), length);
        }
        if (lengths.size() > total) return -6;
        if (lengths[256] == 0) return -9;
        literals_ = build(std::span(lengths).first(std::size_t(literals)));
        distances_ = build(std::span(lengths).subspan(std::size_t(literals)));
        if (literals_.left != 0 && !isSingleBit(literals_)) return -7;
        const bool isSparse = distances_.symbols.empty() || isSingleBit(distances_);
        return distances_.left != 0 && !isSparse ? -8 : 0;
    }

    int match(int lengthSymbol) {
        if (lengthSymbol > 285) return -10;
        const auto range = [this](int symbol, int codesPerBit, int lowest) {
            if (symbol < 2 * codesPerBit) return symbol + lowest;
            const int extra = symbol / codesPerBit - 1;
            return ((codesPerBit + symbol % codesPerBit) << extra) + lowest + bits(extra);
        };
        const int length = lengthSymbol == 285 ? 258 : range(lengthSymbol - 257, 4, 3);
        const int distanceSymbol = symbol(distances_);
        if (distanceSymbol < 0) return distanceSymbol;
        const auto distance = std::size_t(range(distanceSymbol, 2, 1));
        if (distance > output_.size()) return -11;
        if (isFull(std::size_t(length))) return 1;
        for (int i = 0; i < length; ++i)
            output_.push_back(output_[output_.size() - distance]);
        return 0;
    }

    int compressed() {
        for (;;) {
            const int next = symbol(literals_);
            if (next < 0 || next == 256) return next < 0 ? next : 0;
            if (next < 256 && isFull(1)) return 1;
            if (next < 256) {
                output_.push_back(std::uint8_t(next));
            } else if (const int code = match(next); code != 0) {
                return code;
            }
        }
    }

    int blocks() {
        for (;;) {
            const bool isLast = bits(1) != 0;
            const int type = bits(2);
            if (type == 3) return -1;
            if (type == 1) fixedCodes();
            int code = type == 2 ? dynamicCodes() : 0;
            if (code == 0) code = type == 0 ? stored() : compressed();
            if (code != 0 || isLast) return code;
        }
    }

    std::span<const std::uint8_t> source_;
    std::optional<std::size_t> capacity_;
    std::size_t position_ = 0;
    std::vector<std::uint8_t> output_;
    Code literals_, distances_;
};
