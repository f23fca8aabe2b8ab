// Stripping views from a RIFF stream beside a copy of it. Without arguments all streams in
// interleaved rounds; with the name of a stream and of a contender, one run, for counting
// instructions.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "bench/rounds.h"
#include "bench/samples.h"
#include "slim/riff_chunks.h"

namespace {

constexpr int kRounds = 21;
struct Stream {
    const char* name;
    std::size_t size;
    bool isEverywhere;
};

constexpr Stream kStreams[] = {
    {"1M/views-together", 1 << 20, false},
    {"1M/views-everywhere", 1 << 20, true},
    {"16M/views-together", 16 << 20, false},
    {"16M/views-everywhere", 16 << 20, true},
};

std::vector<Contender> contendersFor(const Bytes& original, Bytes& stream, Bytes& copy) {
    copy.resize(original.size());
    const auto strip = [&] {
        if (stripRiffChunks(stream, "bmrk") > 0) return;
        std::printf("nothing was stripped\n");
        std::exit(1);
    };
    return {{"mirelo", strip, [&] { stream = original; }},
            {"memcpy", [&] { std::memcpy(copy.data(), original.data(), original.size()); }}};
}

}  // namespace

int main(int argc, char** argv) {
    std::printf("%-22s %10s %10s\n", "stream", "MB/s", "x memcpy");
    for (const Stream& each : kStreams) {
        if (argc == 3 && std::strcmp(argv[1], each.name) != 0) continue;
        const Bytes original = riffWithViews(each.size, each.isEverywhere);
        Bytes stream, copy;
        const auto contenders = contendersFor(original, stream, copy);
        if (argc == 3) return runOnce(contenders, argv[2]);
        const auto standings = measure(contenders, kRounds);
        std::printf("%-22s %10.0f %10.2f\n", each.name,
                    double(original.size()) / standings[0].seconds / 1e6, standings[1].ratio);
    }
}
