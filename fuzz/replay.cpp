// Stands in for the fuzzer: runs the target over every file of the folders named on the command
// line, whole, cut at every byte, and with every bit flipped. A target must stand such a file in
// any build, not only in the fuzzer's.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

// What comes after the headers is alike: there every seventh byte stands for its neighbours.
constexpr std::size_t kEveryByteUntil = 1200;
constexpr std::size_t kThenEvery = 7;

int run(const std::string& bytes) {
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    return 1;
}

int runDamaged(const std::string& whole) {
    int count = 0;
    for (std::size_t at = 0; at < whole.size(); at += at < kEveryByteUntil ? 1 : kThenEvery) {
        count += run(whole.substr(0, at));
        std::string flipped = whole;
        for (unsigned bit = 1; bit < 256; bit <<= 1) {
            flipped[at] = static_cast<char>(static_cast<unsigned char>(whole[at]) ^ bit);
            count += run(flipped);
        }
    }
    return count;
}

}  // namespace

int main(int count, char** arguments) {
    int replayed = 0;
    for (int i = 1; i < count; ++i) {
        for (const auto& entry : std::filesystem::directory_iterator(arguments[i])) {
            std::ifstream file(entry.path(), std::ios::binary);
            const std::string bytes{std::istreambuf_iterator<char>(file), {}};
            replayed += run(bytes) + runDamaged(bytes);
        }
    }
    std::printf("%d inputs replayed\n", replayed);
    return replayed > 0 ? 0 : 1;
}
