// Stands in for the fuzzer: runs the target over every file of the folders named on the command
// line. A target must stand such a file in any build, not only in the fuzzer's.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int count, char** arguments) {
    int replayed = 0;
    for (int i = 1; i < count; ++i) {
        for (const auto& entry : std::filesystem::directory_iterator(arguments[i])) {
            std::ifstream file(entry.path(), std::ios::binary);
            const std::string bytes{std::istreambuf_iterator<char>(file), {}};
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()),
                                   bytes.size());
            ++replayed;
        }
    }
    std::printf("%d inputs replayed\n", replayed);
    return replayed > 0 ? 0 : 1;
}
