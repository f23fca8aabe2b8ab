// crc32 beside libdeflate and zlib. Without arguments all sizes in interleaved rounds; with a size
// and the name of a contender, one call, for counting instructions.
#include <cstdio>
#include <cstdlib>
#include <string>

#include "bench/rounds.h"
#include "bench/samples.h"
#include "slim/crc32.h"

#if __has_include(<zlib.h>)
#include <zlib.h>
#define HAVE_ZLIB 1
#endif
#if __has_include(<libdeflate.h>)
#include <libdeflate.h>
#define HAVE_LIBDEFLATE 1
#endif

namespace {

constexpr int kRounds = 21;
constexpr std::size_t kSizes[] = {4096, 4096 + 13, 65536, 1 << 20, 64 << 20};

std::uint32_t result;

std::vector<Contender> contendersFor(const Bytes& data) {
    std::vector<Contender> contenders = {
        {"mirelo", [&] { result = crc32(data.data(), data.size()); }}};
#if defined(HAVE_ZLIB)
    contenders.push_back({"zlib", [&] {
                              result =
                                  static_cast<std::uint32_t>(crc32_z(0, data.data(), data.size()));
                          }});
#endif
#if defined(HAVE_LIBDEFLATE)
    contenders.push_back(
        {"libdeflate", [&] { result = libdeflate_crc32(0, data.data(), data.size()); }});
#endif
    return contenders;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc == 3) {
        const Bytes data = periodThreeSample(static_cast<std::size_t>(std::atol(argv[1])));
        return runOnce(contendersFor(data), argv[2]);
    }
#if !defined(HAVE_ZLIB)
    std::printf("zlib is not here: skipped\n");
#endif
#if !defined(HAVE_LIBDEFLATE)
    std::printf("libdeflate is not here: skipped\n");
#endif
    std::printf("%-10s %10s", "bytes", "MB/s");
    const Bytes none;
    for (const Contender& each : contendersFor(none)) {
        if (each.name != "mirelo") std::printf(" %12s", ("x " + each.name).c_str());
    }
    std::printf("\n");
    for (const std::size_t size : kSizes) {
        const Bytes data = periodThreeSample(size);
        const auto standings = measure(contendersFor(data), kRounds);
        std::printf("%-10zu %10.0f", size, double(size) / standings[0].seconds / 1e6);
        for (std::size_t i = 1; i < standings.size(); ++i)
            std::printf(" %12.2f", standings[i].ratio);
        std::printf("\n");
    }
}
