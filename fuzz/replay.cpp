// Stands in for the fuzzer: runs the target over every file of the folder named on the command
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

int main(int, char** arguments) {
    int replayed = 0;
    const auto run = [&](const std::string& bytes) {
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
        ++replayed;
    };
    for (const auto& entry : std::filesystem::directory_iterator(arguments[1])) {
        std::ifstream file(entry.path(), std::ios::binary);
        const std::string whole{std::istreambuf_iterator<char>(file), {}};
        run(whole);
        // What comes after the headers is alike: there every seventh byte stands for its
        // neighbours.
        for (std::size_t at = 0; at < whole.size(); at += at < 1200 ? 1 : 7) {
            run(whole.substr(0, at));
            std::string flipped = whole;
            for (unsigned bit = 1; bit < 256; bit <<= 1) {
                flipped[at] = static_cast<char>(static_cast<unsigned char>(whole[at]) ^ bit);
                run(flipped);
            }
        }
    }
    std::printf("%d inputs replayed\n", replayed);
    return replayed > 0 ? 0 : 1;
}
