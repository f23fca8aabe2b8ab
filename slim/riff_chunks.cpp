#include "slim/riff_chunks.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace {

constexpr std::size_t kChunkHeaderSize = 8;
constexpr std::size_t kListTypeSize = 4;
constexpr int kDepthLimit = 8;

// Identifiers compare as numbers, read like every other field.
constexpr std::uint32_t identifier(std::string_view fourcc) {
    std::uint32_t id = 0;
    for (std::size_t i = 4; i-- > 0;)
        id = id << 8 | static_cast<std::uint8_t>(fourcc[i]);
    return id;
}

constexpr std::uint32_t kList = identifier("LIST");

std::uint32_t chunkSize(ByteView stream, std::size_t at) {
    return readU32(stream, at + 4);
}

bool isEnteredList(std::uint32_t id, std::size_t size, int depth) {
    return id == kList && size >= kListTypeSize && depth + 1 < kDepthLimit;
}

// Where the next chunk starts, pad byte included. It hangs on the size just loaded, and a walk over
// chunks would wait for one load after the other. A branch on the commonest size, that of the
// leaves which point into other files, is predicted and lets the processor go ahead.
constexpr std::size_t kPointerSize = 16;

inline std::size_t behind(std::size_t at, std::size_t size) {
    if (size == kPointerSize) [[likely]]
        return at + kChunkHeaderSize + kPointerSize;
    return at + kChunkHeaderSize + size + size % 2;
}

std::uint32_t countIn(ByteView stream, std::size_t start, std::size_t end, std::uint32_t wanted,
                      int depth) {
    if (start + kChunkHeaderSize > end) return 0;
    std::uint32_t count = 0;
    for (std::size_t p = start;;) {
        const std::size_t size = chunkSize(stream, p);
        if (size > end - p - kChunkHeaderSize) return count;
        const std::uint32_t id = readU32(stream, p);
        if (id == wanted) ++count;
        if (isEnteredList(id, size, depth)) {
            const std::size_t body = p + kChunkHeaderSize;
            count += countIn(stream, body + kListTypeSize, body + size, wanted, depth + 1);
        }
        // Every position is even, so the pad may follow the parity of the end.
        const std::size_t last = p + size;
        const std::size_t next = last + kChunkHeaderSize + last % 2;
        if (next + kChunkHeaderSize > end) return count;
        p = next;
    }
}

// Rebuilds a stream without some of its chunks. What is kept is remembered as one span of the
// source for as long as it is contiguous, and copied only when something is left out: a stream in
// which nothing is found costs a walk over its headers.
class Stripper {
  public:
    Stripper(ByteView source, std::uint32_t unwanted) : source_(source), unwanted_(unwanted) {}

    void strip(std::size_t start, std::size_t end, int depth);

    int removed() const { return removed_; }

    Bytes finish() {
        flush();
        writeU32(out_, 4, static_cast<std::uint32_t>(out_.size() - kChunkHeaderSize));
        return std::move(out_);
    }

  private:
    std::size_t stripList(std::size_t at, std::size_t size, std::size_t end, int depth);

    void keepUpTo(std::size_t position) { spanEnd_ = position; }
    void skipTo(std::size_t position) {
        flush();
        spanStart_ = spanEnd_ = position;
    }
    std::size_t length() const { return out_.size() + (spanEnd_ - spanStart_); }
    void flush();

    ByteView source_;
    std::uint32_t unwanted_;
    int removed_ = 0;
    Bytes out_;
    std::size_t spanStart_ = 0;
    std::size_t spanEnd_ = kRiffHeaderSize;
};

void Stripper::flush() {
    if (out_.capacity() == 0) out_.reserve(source_.size());
    const std::size_t at = out_.size();
    const std::size_t count = spanEnd_ - spanStart_;
    out_.resize(at + count);
    if (count != 0) std::memcpy(out_.data() + at, source_.data() + spanStart_, count);
    spanStart_ = spanEnd_;
}

void Stripper::strip(std::size_t start, std::size_t end, int depth) {
    std::size_t p = start;
    while (p + kChunkHeaderSize <= end) {
        const std::size_t size = chunkSize(source_, p);
        if (size > end - p - kChunkHeaderSize) break;
        const std::uint32_t id = readU32(source_, p);
        const std::size_t next = behind(p, size);
        if (id == unwanted_) {
            ++removed_;
            keepUpTo(p);
            skipTo(std::min(next, end));
            p = next;
        } else if (isEnteredList(id, size, depth)) {
            keepUpTo(p);
            p = stripList(p, size, end, depth);
        } else {
            p = next;
        }
    }
    keepUpTo(end);
}

// Gives the position behind the list and its pad byte.
std::size_t Stripper::stripList(std::size_t at, std::size_t size, std::size_t end, int depth) {
    const std::size_t body = at + kChunkHeaderSize;
    const std::size_t next = std::min(body + size + size % 2, end);
    keepUpTo(body + kListTypeSize);
    const std::size_t newBody = length() - kListTypeSize;
    strip(body + kListTypeSize, body + size, depth + 1);

    const std::size_t newSize = length() - newBody;
    if (out_.size() > newBody) writeU32(out_, newBody - 4, static_cast<std::uint32_t>(newSize));
    const bool padIsKept = newSize % 2 != 0 && next > body + size && source_[body + size] == 0;
    if (padIsKept) {
        keepUpTo(next);
        return next;
    }
    if (newSize % 2 == 0 && next == body + size) return next;
    skipTo(next);
    if (newSize % 2 != 0) out_.push_back(0);
    return next;
}

// Clamps the size of the chunk at `at` so that it ends at `end` at the latest.
std::size_t clampChunk(Bytes& stream, std::size_t at, std::size_t end) {
    const std::size_t available = end - at - kChunkHeaderSize;
    const std::size_t size = chunkSize(stream, at);
    if (size <= available) return size;
    writeU32(stream, at + 4, static_cast<std::uint32_t>(available));
    return available;
}

void clampChildren(Bytes& stream, std::size_t start, std::size_t end) {
    for (std::size_t q = start; q + kChunkHeaderSize <= end;) {
        const std::size_t last = q + clampChunk(stream, q, end);
        q = last + kChunkHeaderSize + last % 2;
    }
}

void clampChunks(Bytes& stream) {
    const std::size_t end = stream.size();
    for (std::size_t p = kRiffHeaderSize; p + kChunkHeaderSize <= end;) {
        const std::size_t last = p + clampChunk(stream, p, end);
        if (readU32(stream, p) == kList && p + kRiffHeaderSize <= end)
            clampChildren(stream, p + kRiffHeaderSize, last + kChunkHeaderSize);
        p = last + kChunkHeaderSize + last % 2;
    }
}

}  // namespace

bool isRiffStream(ByteView stream) {
    return stream.size() >= kRiffHeaderSize && std::memcmp(stream.data(), "RIFF", 4) == 0;
}

std::uint32_t countRiffChunks(ByteView stream, std::string_view fourcc) {
    if (!isRiffStream(stream)) return 0;
    return countIn(stream, kRiffHeaderSize, stream.size(), identifier(fourcc), 0);
}

int stripRiffChunks(Bytes& stream, std::string_view fourcc) try {
    if (!isRiffStream(stream)) return kNotRiff;
    Stripper stripper(stream, identifier(fourcc));
    stripper.strip(kRiffHeaderSize, stream.size(), 0);
    if (stripper.removed() != 0) stream = stripper.finish();
    return stripper.removed();
} catch (const std::bad_alloc&) {
    return kStripOutOfMemory;
}

bool normaliseRiffSizes(Bytes& stream) try {
    if (!isRiffStream(stream)) return false;
    constexpr std::size_t kLongest = 0xFFFFFFFF;
    const std::size_t padded = (stream.size() + 3) / 4 * 4;
    stream.reserve(padded);
    while (stream.size() < std::min(padded, kLongest))
        stream.push_back(0);
    writeU32(stream, 4, static_cast<std::uint32_t>(stream.size() - kChunkHeaderSize));
    clampChunks(stream);
    return true;
} catch (const std::bad_alloc&) {
    return false;
}
