// inflateRaw beside libdeflate and zlib, and without a destination beside itself. Without arguments
// all streams in interleaved rounds; with the name of a stream and of a contender, one decoding of
// it, for counting instructions.
#include <zlib.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "bench/rounds.h"
#include "bench/samples.h"
#include "slim/inflate.h"

#if __has_include(<libdeflate.h>)
#include <libdeflate.h>
#define HAVE_LIBDEFLATE 1
#endif

namespace {

constexpr int kRounds = 21;
constexpr std::size_t kMiB = 1 << 20;

// A sample cut into members, each a stream of its own.
struct Stream {
    std::size_t memberSize;
    std::size_t size;
    std::vector<Bytes> members;
};

Bytes deflated(const std::uint8_t* data, std::size_t size, int level, int strategy) {
    z_stream z = {};
    deflateInit2(&z, level, Z_DEFLATED, -15, 8, strategy);
    Bytes out(deflateBound(&z, static_cast<uLong>(size)));
    z.next_in = const_cast<Bytef*>(data);
    z.avail_in = static_cast<uInt>(size);
    z.next_out = out.data();
    z.avail_out = static_cast<uInt>(out.size());
    deflate(&z, Z_FINISH);
    out.resize(z.total_out);
    deflateEnd(&z);
    return out;
}

struct Recipe {
    std::string name;
    Bytes (*sample)(std::size_t size);
    std::size_t size;
    int level;
    int strategy = Z_DEFAULT_STRATEGY;
    std::size_t memberSize = SIZE_MAX;
    bool isInMean = false;
};

std::vector<Recipe> recipes() {
    struct Kind {
        const char* name;
        Bytes (*sample)(std::size_t size);
        std::size_t size;
    };
    constexpr Kind kinds[] = {
        {"riff-1M", riffSample, kMiB},
        {"riff-16M", riffSample, 16 * kMiB},
        {"palette-1M", paletteSample, kMiB},
        {"bmp-4M", bitmapSample, 4 * kMiB},
        {"pngrows-4M", pngRowsSample, 4 * kMiB},
        {"text-4M", textSample, 4 * kMiB},
        {"exe-16M", executableSample, 16 * kMiB},
    };
    std::vector<Recipe> all;
    for (const Kind& kind : kinds) {
        for (const int level : {1, 6, 9}) {
            all.push_back(
                {kind.name + ("/" + std::to_string(level)), kind.sample, kind.size, level});
            all.back().isInMean = true;
        }
    }
    all.push_back({"text-4M/stored", textSample, 4 * kMiB, 0});
    all.push_back({"period3-4M/6", periodThreeSample, 4 * kMiB, 6});
    for (const Kind& kind : {kinds[0], kinds[2], kinds[5]}) {
        const std::string name = kind.name;
        all.push_back({name + "/fixed", kind.sample, kind.size, 6, Z_FIXED});
        all.push_back({name + "/4K-members", kind.sample, kind.size, 6, Z_DEFAULT_STRATEGY, 4096});
    }
    return all;
}

Stream makeStream(const Recipe& recipe) {
    const Bytes data = recipe.sample(recipe.size);
    Stream stream = {std::min(recipe.memberSize, recipe.size), data.size(), {}};
    for (std::size_t at = 0; at < data.size(); at += stream.memberSize) {
        const std::size_t length = std::min(stream.memberSize, data.size() - at);
        stream.members.push_back(deflated(data.data() + at, length, recipe.level, recipe.strategy));
    }
    return stream;
}

void check(bool decoded, const char* who) {
    if (decoded) return;
    std::printf("%s failed to decode\n", who);
    std::exit(1);
}

std::size_t memberSize(const Stream& stream, std::size_t index) {
    return std::min(stream.memberSize, stream.size - index * stream.memberSize);
}

void decodeOurs(const Stream& stream, Bytes& out) {
    for (std::size_t i = 0; i < stream.members.size(); ++i) {
        std::size_t outSize = memberSize(stream, i);
        std::size_t inSize = stream.members[i].size();
        const int code = inflateRaw(out.data(), &outSize, stream.members[i].data(), &inSize);
        check(code == 0 && outSize == memberSize(stream, i), "inflateRaw");
    }
}

void measureOurs(const Stream& stream) {
    for (std::size_t i = 0; i < stream.members.size(); ++i) {
        std::size_t outSize = 0;
        std::size_t inSize = stream.members[i].size();
        const int code = inflateRaw(nullptr, &outSize, stream.members[i].data(), &inSize);
        check(code == 0 && outSize == memberSize(stream, i), "measuring");
    }
}

void sumOurs(const Stream& stream) {
    for (std::size_t i = 0; i < stream.members.size(); ++i) {
        const Bytes& member = stream.members[i];
        const DecodedSum sum = sumDecoded(member.data(), member.size(), memberSize(stream, i));
        check(sum.code == 0 && sum.length == memberSize(stream, i), "summing up");
    }
}

#if defined(HAVE_LIBDEFLATE)
void decodeLibdeflate(const Stream& stream, Bytes& out) {
    static libdeflate_decompressor* const decompressor = libdeflate_alloc_decompressor();
    for (std::size_t i = 0; i < stream.members.size(); ++i) {
        std::size_t produced = 0;
        const auto result = libdeflate_deflate_decompress(decompressor, stream.members[i].data(),
                                                          stream.members[i].size(), out.data(),
                                                          memberSize(stream, i), &produced);
        check(result == LIBDEFLATE_SUCCESS && produced == memberSize(stream, i), "libdeflate");
    }
}
#endif

void decodeZlib(const Stream& stream, Bytes& out) {
    static z_stream z = {};
    if (z.state == nullptr) inflateInit2(&z, -15);
    for (std::size_t i = 0; i < stream.members.size(); ++i) {
        inflateReset(&z);
        z.next_in = const_cast<Bytef*>(stream.members[i].data());
        z.avail_in = static_cast<uInt>(stream.members[i].size());
        z.next_out = out.data();
        z.avail_out = static_cast<uInt>(memberSize(stream, i));
        check(inflate(&z, Z_FINISH) == Z_STREAM_END, "zlib");
    }
}

std::vector<Contender> contendersFor(const Stream& stream, Bytes& out) {
    std::vector<Contender> contenders = {{"mirelo", [&] { decodeOurs(stream, out); }},
                                         {"zlib", [&] { decodeZlib(stream, out); }},
                                         {"measured", [&] { measureOurs(stream); }},
                                         {"summed", [&] { sumOurs(stream); }}};
#if defined(HAVE_LIBDEFLATE)
    contenders.push_back({"libdeflate", [&] { decodeLibdeflate(stream, out); }});
#endif
    return contenders;
}

int runOnce(const char* name, const char* contender) {
    Bytes out(16 * kMiB);
    for (const Recipe& recipe : recipes()) {
        if (recipe.name != name) continue;
        const Stream stream = makeStream(recipe);
        return runOnce(contendersFor(stream, out), contender);
    }
    std::printf("no such stream\n");
    return 1;
}

// The columns: our time over that of the two forms without a destination, theirs over ours.
constexpr const char* kColumns[] = {"x zlib", "measured", "summed", "x libdeflate"};

void printRatios(const std::vector<double>& ratios) {
    for (const double ratio : ratios)
        std::printf(" %12.3f", ratio);
    std::printf("\n");
    std::fflush(stdout);
}

// A line of the table; the ratios in it.
std::vector<double> report(const Recipe& recipe, const Stream& stream, Bytes& out) {
    const auto standings = measure(contendersFor(stream, out), kRounds);
    std::size_t packed = 0;
    for (const Bytes& member : stream.members)
        packed += member.size();
    std::printf("%-22s %8.2f %10.0f", recipe.name.c_str(), double(stream.size) / double(packed),
                double(stream.size) / standings[0].seconds / 1e6);
    std::vector<double> ratios;
    for (std::size_t i = 1; i < standings.size(); ++i) {
        const bool isOurs = i == 2 || i == 3;
        ratios.push_back(isOurs ? 1 / standings[i].ratio : standings[i].ratio);
    }
    printRatios(ratios);
    return ratios;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc == 3) return runOnce(argv[1], argv[2]);
    const char* const filter = argc == 2 ? argv[1] : "";
#if !defined(HAVE_LIBDEFLATE)
    std::printf("libdeflate is not here: skipped\n");
#endif
    Bytes out(16 * kMiB);
    std::printf("%-22s %8s %10s", "stream", "packed", "MB/s");
    for (const char* const column : kColumns)
        std::printf(" %12s", column);
    std::printf("\n");
    std::vector<std::vector<double>> inMean(std::size(kColumns));
    for (const Recipe& recipe : recipes()) {
        if (std::strstr(recipe.name.c_str(), filter) == nullptr) continue;
        const Stream stream = makeStream(recipe);
        if (stream.size == 0) {
            std::printf("%-22s no such file here: skipped\n", recipe.name.c_str());
            continue;
        }
        const std::vector<double> ratios = report(recipe, stream, out);
        for (std::size_t i = 0; recipe.isInMean && i < ratios.size(); ++i)
            inMean[i].push_back(ratios[i]);
    }
    std::vector<double> means;
    for (const std::vector<double>& ratios : inMean) {
        if (!ratios.empty()) means.push_back(geometricMean(ratios));
    }
    std::printf("%-22s %19s", "geometric mean", "");
    printRatios(means);
}
