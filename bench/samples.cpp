#include "bench/samples.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string_view>

namespace {

class Random {
  public:
    explicit Random(std::uint64_t seed) : state_(seed) {}

    std::uint32_t next() {
        state_ = state_ * 6364136223846793005U + 1442695040888963407U;
        return static_cast<std::uint32_t>(state_ >> 32);
    }
    std::uint32_t below(std::uint32_t limit) {
        return static_cast<std::uint32_t>((std::uint64_t{next()} * limit) >> 32);
    }
    // Small numbers often, large ones rarely, either sign.
    int around(int spread) {
        int sum = 0;
        for (int i = 0; i < 4; ++i)
            sum += static_cast<int>(below(static_cast<unsigned>(spread)));
        return sum - 2 * (spread - 1);
    }

  private:
    std::uint64_t state_;
};

void append(Bytes& bytes, std::string_view text) {
    bytes.insert(bytes.end(), text.begin(), text.end());
}

void append32(Bytes& bytes, std::uint32_t number) {
    bytes.resize(bytes.size() + 4);
    writeU32(bytes, bytes.size() - 4, number);
}

void setSize(Bytes& bytes, std::size_t start) {
    writeU32(bytes, start + 4, static_cast<std::uint32_t>(bytes.size() - start - 8));
}

std::size_t beginList(Bytes& bytes, std::string_view id, std::string_view type) {
    const std::size_t start = bytes.size();
    append(bytes, id);
    append32(bytes, 0);
    append(bytes, type);
    return start;
}

void appendPointerLeaf(Bytes& bytes, std::string_view id, std::uint32_t& offset, Random& random) {
    const std::uint32_t length = 4 * (3 + random.below(60));
    append(bytes, id);
    append32(bytes, 16);
    append32(bytes, 1 + random.below(3));
    append32(bytes, length);
    append32(bytes, offset);
    append32(bytes, 0);
    offset += length;
}

void appendOutline(Bytes& bytes, Random& random) {
    const std::size_t start = bytes.size();
    const std::uint32_t points = 3 + random.below(20);
    append(bytes, "loda");
    append32(bytes, 0);
    append32(bytes, 0x90);
    append32(bytes, 5);
    append32(bytes, 0x14);
    append32(bytes, points);
    int x = random.around(500000), y = random.around(500000);
    for (std::uint32_t i = 0; i < points; ++i) {
        x += random.around(3000);
        y += random.around(3000);
        append32(bytes, static_cast<std::uint32_t>(x));
        append32(bytes, static_cast<std::uint32_t>(y));
    }
    for (std::uint32_t i = 0; i < points; ++i) {
        bytes.push_back(static_cast<std::uint8_t>(i == 0 ? 0x0C : 0x40 + 0x40 * random.below(3)));
    }
    if (bytes.size() % 2 != 0) bytes.push_back(0);
    setSize(bytes, start);
}

struct Colour {
    double blue, green, red;
};

struct Shape {
    double x, y, radius;
    Colour from, to;
    bool isRound;
};

Shape randomShape(Random& random, double width, double height) {
    const auto colour = [&] {
        return Colour{double(random.below(256)), double(random.below(256)),
                      double(random.below(256))};
    };
    Shape shape = {random.below(1000) / 1000.0 * width,
                   random.below(1000) / 1000.0 * height,
                   (10 + random.below(130)) / 1000.0 * width,
                   colour(),
                   {},
                   random.below(2) == 0};
    shape.to = random.below(4) == 0 ? colour() : shape.from;
    return shape;
}

// How much of a pixel the shape covers; edges are smooth over one pixel.
double coverage(const Shape& shape, double x, double y) {
    const double dx = std::abs(x - shape.x), dy = std::abs(y - shape.y);
    if (std::max(dx, dy) > shape.radius + 1) return 0;
    const double distance = shape.isRound ? std::sqrt(dx * dx + dy * dy) : std::max(dx, dy);
    return std::clamp(shape.radius - distance + 0.5, 0.0, 1.0);
}

void paint(const Shape& shape, double x, double y, Colour& pixel) {
    const double covered = coverage(shape, x, y);
    if (covered == 0) return;
    const double t = std::clamp((x - shape.x) / (2 * shape.radius) + 0.5, 0.0, 1.0);
    const auto mix = [&](double& under, double from, double to) {
        under += (from + (to - from) * t - under) * covered;
    };
    mix(pixel.blue, shape.from.blue, shape.to.blue);
    mix(pixel.green, shape.from.green, shape.to.green);
    mix(pixel.red, shape.from.red, shape.to.red);
}

Colour photographPixel(double x, double y, Random& random) {
    const double light = 110 + 70 * std::sin(x / 170 + y / 90) +
                         25 * std::sin(x / 23) * std::cos(y / 31) + random.around(3);
    return {light - 12, light, light + 12};
}

}  // namespace

Bytes riffSample(std::size_t size) {
    Random random(1);
    Bytes bytes;
    bytes.reserve(size + 65536);
    beginList(bytes, "RIFF", "CDRR");
    std::uint32_t offset = 0, object = 1;
    while (bytes.size() < size) {
        const std::size_t layer = beginList(bytes, "LIST", "layr");
        appendPointerLeaf(bytes, "flgs", offset, random);
        for (std::uint32_t count = 20 + random.below(50); count > 0; --count) {
            const std::size_t list = beginList(bytes, "LIST", "obj ");
            appendPointerLeaf(bytes, "flgs", offset, random);
            append(bytes, "spid");
            append32(bytes, 4);
            append32(bytes, object++);
            appendPointerLeaf(bytes, "bbox", offset, random);
            const std::size_t group = beginList(bytes, "LIST", "lgob");
            if (random.below(3) == 0) {
                appendPointerLeaf(bytes, "loda", offset, random);
            } else {
                appendOutline(bytes, random);
            }
            setSize(bytes, group);
            setSize(bytes, list);
        }
        setSize(bytes, layer);
    }
    setSize(bytes, 0);
    bytes.resize(size);
    return bytes;
}

Bytes riffWithViews(std::size_t size, bool isEverywhere) {
    const Bytes stream = riffSample(size);
    const auto at = [&](std::size_t position) {
        return stream.begin() + static_cast<std::ptrdiff_t>(position);
    };
    Bytes bytes(at(0), at(12));
    // The sample is cut where its size is reached; the chunk that the cut went through stays out.
    for (std::size_t p = 12; p + 8 <= size && p + 8 + readU32(stream, p + 4) <= size;) {
        const std::size_t views = isEverywhere ? 1 : p == 12 ? 560 : 0;
        for (std::size_t i = 0; i < views; ++i) {
            append(bytes, "bmrk");
            append32(bytes, 16);
            bytes.resize(bytes.size() + 16, 0);
        }
        const std::size_t end = p + 8 + readU32(stream, p + 4);
        bytes.insert(bytes.end(), at(p), at(end));
        p = end;
    }
    setSize(bytes, 0);
    return bytes;
}

Bytes paletteSample(std::size_t size) {
    Random random(2);
    Bytes bytes;
    append(bytes,
           "<palette guid=\"1b0d5f1e-8e43-4f0f-a5f7-6b1d8f2a9c33\" name=\"Document Palette\">\n"
           "<colors><page>\n");
    const char* const models[] = {"CMYK", "CMYK", "CMYK", "RGB", "LAB"};
    while (bytes.size() < size) {
        char line[160];
        const auto tint = [&] { return random.below(3) == 0 ? 0.0 : random.below(256) / 255.0; };
        std::snprintf(line, sizeof line,
                      "<color cs=\"%s\" name=\"Colour %u %s\" tints=\"%.6g,%.6g,%.6g,%.6g\"/>\n",
                      models[random.below(5)], random.below(9000), random.below(2) ? "C" : "U",
                      tint(), tint(), tint(), tint());
        append(bytes, line);
    }
    constexpr std::string_view kEnd = "</page></colors></palette>";
    bytes.resize(size - kEnd.size());
    append(bytes, kEnd);
    return bytes;
}

Bytes bitmapSample(std::size_t size) {
    const auto width = static_cast<std::size_t>(std::sqrt(double(size) / 3)) / 4 * 4;
    Random random(3);
    std::vector<Shape> shapes;
    for (int i = 0; i < 40; ++i)
        shapes.push_back(randomShape(random, double(width), double(width)));
    Bytes bytes(54, 0);
    for (std::size_t y = 0; bytes.size() < size; ++y) {
        for (std::size_t x = 0; x < width; ++x) {
            Colour pixel = {255, 255, 255};
            if (x < width / 4 && y < width / 4) {
                pixel = photographPixel(double(x), double(y), random);
            } else {
                for (const Shape& shape : shapes)
                    paint(shape, double(x), double(y), pixel);
            }
            for (const double channel : {pixel.blue, pixel.green, pixel.red}) {
                bytes.push_back(static_cast<std::uint8_t>(channel));
            }
        }
    }
    bytes.resize(size);
    return bytes;
}

Bytes pngRowsSample(std::size_t size) {
    constexpr std::size_t kWidth = 1024;
    Random random(4);
    Bytes bytes;
    for (std::size_t y = 0; bytes.size() < size; ++y) {
        bytes.push_back(1);
        int before[3] = {0, 0, 0};
        for (std::size_t x = 0; x < kWidth; ++x) {
            const Colour pixel = photographPixel(double(x), double(y), random);
            const int channels[] = {int(pixel.red), int(pixel.green), int(pixel.blue)};
            for (std::size_t i = 0; i < 3; ++i) {
                bytes.push_back(static_cast<std::uint8_t>(channels[i] - before[i]));
                before[i] = channels[i];
            }
        }
    }
    bytes.resize(size);
    return bytes;
}

Bytes textSample(std::size_t size) {
    constexpr std::uint32_t kWords = 6000;
    const std::string_view syllables[] = {"an", "ber", "co",   "den", "er",  "fi",  "gra", "hel",
                                          "in", "ka",  "lo",   "me",  "no",  "or",  "per", "qua",
                                          "re", "sta", "tion", "un",  "ver", "wen", "ti",  "ly"};
    Random random(5);
    std::vector<std::string> words(kWords);
    for (std::string& word : words) {
        for (std::uint32_t count = 1 + random.below(4); count > 0; --count) {
            word += syllables[random.below(std::size(syllables))];
        }
    }
    Bytes bytes;
    bytes.reserve(size + 64);
    bool sentenceBegins = true;
    while (bytes.size() < size) {
        const double rank = std::pow(double(kWords), random.below(1 << 24) / double(1 << 24));
        std::string word = words[static_cast<std::size_t>(rank) - 1];
        if (sentenceBegins) word[0] = static_cast<char>(word[0] - 'a' + 'A');
        append(bytes, word);
        sentenceBegins = random.below(12) == 0;
        const bool paragraphEnds = sentenceBegins && random.below(6) == 0;
        append(bytes, paragraphEnds      ? ".\n\n"
                      : sentenceBegins   ? ". "
                      : random.below(14) ? " "
                                         : ", ");
    }
    bytes.resize(size);
    return bytes;
}

Bytes periodThreeSample(std::size_t size) {
    Bytes bytes(size);
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<std::uint8_t>(0x30 + i % 3 * 0x41);
    return bytes;
}

Bytes executableSample(std::size_t size) {
    const char* const candidates[] = {
        "/usr/lib/gcc/x86_64-linux-gnu/12/cc1plus",
        "/usr/lib/llvm-14/lib/libLLVM-14.so.1",
        "/usr/bin/gdb",
    };
    for (const char* const path : candidates) {
        std::ifstream file(path, std::ios::binary);
        Bytes bytes(size);
        if (file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(size))) {
            return bytes;
        }
    }
    return {};
}
