// A chunk and its pad byte; a list, which is a chunk that holds chunks behind its type; a stream,
// which looks like a list of its own kind:
//
//   [id 4][size 4][size bytes][pad byte where the size is odd]
//   ["LIST"][size 4][type 4][chunk][chunk]...
//   ["RIFF"][size 4][form 4][chunk][chunk]...
//
// Pad bytes count in the size of the list around them, but not in their own chunk's.
#include "slim/riff_chunks.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <vector>

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

// Stripping goes through the headers once and only takes notes: what goes, and which lists become
// shorter. A stream in which nothing is found costs that walk, and any other one move of what stays
// behind the first gap, inside its own memory.
//
//   before   ... LIST 64  bmkt  bmrk 16 ....  bmrk 16 ....  loda 3 abc 0  ...
//   gaps                        |<-- 24 -->|<-- 24 -->|
//   after    ... LIST 16  bmkt  loda 3 abc 0  ...

// Bytes that go. A list's new size decides whether a pad byte follows it: one may also come.
struct Gap {
    std::size_t at;
    std::size_t count;
    bool isPadded;

    std::size_t end() const { return at + count; }
};

struct NewSize {
    std::size_t at;
    std::uint32_t size;
};

class Stripper {
  public:
    Stripper(ByteView source, std::uint32_t unwanted) : source_(source), unwanted_(unwanted) {}

    void strip(std::size_t start, std::size_t end, int depth);
    /// Does to the stream, which `source` views, what was noted.
    void apply(Bytes& stream) const;

    int removed() const { return removed_; }

  private:
    std::size_t stripList(std::size_t at, std::size_t size, std::size_t end, int depth);
    void noteGap(Gap gap);

    ByteView source_;
    std::uint32_t unwanted_;
    int removed_ = 0;
    std::size_t gone_ = 0;  // modulo 2^64: more may have come than gone
    bool isLongerAnywhere_ = false;
    std::vector<Gap> gaps_;
    std::vector<NewSize> newSizes_;
};

void Stripper::noteGap(Gap gap) {
    gone_ += gap.count - (gap.isPadded ? 1 : 0);
    isLongerAnywhere_ = isLongerAnywhere_ || gone_ > source_.size();
    const bool isNext = !gaps_.empty() && gaps_.back().end() == gap.at && !gaps_.back().isPadded;
    if (!isNext) return gaps_.push_back(gap);
    gaps_.back().count += gap.count;
    gaps_.back().isPadded = gap.isPadded;
}

void Stripper::strip(std::size_t start, std::size_t end, int depth) {
    for (std::size_t p = start; p + kChunkHeaderSize <= end;) {
        const std::size_t size = chunkSize(source_, p);
        if (size > end - p - kChunkHeaderSize) return;
        const std::uint32_t id = readU32(source_, p);
        const std::size_t next = behind(p, size);
        if (id == unwanted_) {
            ++removed_;
            noteGap({p, std::min(next, end) - p, false});
        } else if (isEnteredList(id, size, depth)) {
            p = stripList(p, size, end, depth);
            continue;
        }
        p = next;
    }
}

// Gives the position behind the list and its pad byte.
std::size_t Stripper::stripList(std::size_t at, std::size_t size, std::size_t end, int depth) {
    const std::size_t body = at + kChunkHeaderSize;
    const std::size_t bodyEnd = body + size;
    const std::size_t next = std::min(bodyEnd + size % 2, end);
    const std::size_t goneBefore = gone_;
    strip(body + kListTypeSize, bodyEnd, depth + 1);

    const std::size_t newSize = size - (gone_ - goneBefore);
    if (newSize != size) newSizes_.push_back({at + 4, static_cast<std::uint32_t>(newSize)});
    const bool hasPad = next > bodyEnd;
    const bool needsPad = newSize % 2 != 0;
    if (hasPad != needsPad || (hasPad && source_[bodyEnd] != 0))
        noteGap({bodyEnd, next - bodyEnd, needsPad});
    return next;
}

void Stripper::apply(Bytes& stream) const {
    Bytes aside;  // for the odd stream that grows before it shrinks
    for (const NewSize& list : newSizes_)
        writeU32(stream, list.at, list.size);
    if (isLongerAnywhere_) aside = stream;
    const std::size_t length = stream.size();
    if (isLongerAnywhere_) stream.resize(length + gaps_.size());

    const std::uint8_t* const source = isLongerAnywhere_ ? aside.data() : stream.data();
    std::size_t filled = gaps_.front().at;
    for (std::size_t i = 0; i < gaps_.size(); ++i) {
        const std::size_t from = gaps_[i].end();
        const std::size_t count = (i + 1 < gaps_.size() ? gaps_[i + 1].at : length) - from;
        if (gaps_[i].isPadded) stream[filled++] = 0;
        if (count != 0) std::memmove(stream.data() + filled, source + from, count);
        filled += count;
    }
    stream.resize(filled);
    writeU32(stream, 4, static_cast<std::uint32_t>(filled - kChunkHeaderSize));
}

// Repairing goes over the top level and one level below it, and follows the parity of positions
// rather than of sizes.

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
    if (stripper.removed() != 0) stripper.apply(stream);
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
