// Slimming a whole document of 200 MB beside plain copies of its file, and the memory it takes:
//   bench_document make FILE     writes the document
//   bench_document memory FILE   slims it once and says how much memory that took
//   bench_document FILE          slims it in rounds beside copying it twice and reading it once
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include "base/text.h"
#include "bench/rounds.h"
#include "bench/samples.h"
#include "slim/slim_document.h"
#include "tests/slim/document_builder.h"
#ifdef _WIN32
#include <windows.h>

#include <psapi.h>

#include "slim/slim_files_win.h"
#else
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace {

constexpr int kRounds = 9;
constexpr std::size_t kMiB = 1 << 20;

#ifdef _WIN32

bool plainCopy(const std::wstring& from, const std::wstring& to) {
    return CopyFileW(from.c_str(), to.c_str(), FALSE);
}

double peakMemory() {
    PROCESS_MEMORY_COUNTERS counters{};
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return double(counters.PeakWorkingSetSize);
}

#else

bool plainCopy(const std::wstring& from, const std::wstring& to) {
    return std::filesystem::copy_file(from, to, std::filesystem::copy_options::overwrite_existing);
}

double peakMemory() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return 1024.0 * double(usage.ru_maxrss);
}

FileVersion versionOf(const struct stat& status) {
    return {
        std::uint64_t(status.st_dev), std::uint64_t(status.st_ino), std::uint64_t(status.st_size),
        std::uint64_t(status.st_mtim.tv_sec) * 1000000000 + std::uint64_t(status.st_mtim.tv_nsec)};
}

bool readWhole(const std::wstring& path, FileImage& image) {
    const int file = open(utf8FromWide(path).c_str(), O_RDONLY);
    struct stat status {};
    if (file < 0 || fstat(file, &status) != 0) return false;
    const auto size = static_cast<std::size_t>(status.st_size);
    image.version = versionOf(status);
    image.bytes.clear();
    image.bytes.reserve(size + size / 4);
    image.bytes.resize(size);
    const ssize_t count = read(file, image.bytes.data(), size);
    close(file);
    return count == ssize_t(size);
}

bool copyFlushed(const std::wstring& from, const std::wstring& to) {
    if (!plainCopy(from, to)) return false;
    const int file = open(utf8FromWide(to).c_str(), O_WRONLY);
    const bool isFlushed = file >= 0 && fsync(file) == 0;
    close(file);
    return isFlushed;
}

WriteOutcome overwrite(const std::wstring& path, ByteView contents, const FileVersion& expected,
                       const std::wstring&) {
    const int file = open(utf8FromWide(path).c_str(), O_WRONLY);
    struct stat status {};
    if (file < 0 || fstat(file, &status) != 0) return WriteOutcome::failed;
    if (versionOf(status) != expected) return WriteOutcome::changed;
    const bool isWritten =
        write(file, contents.data(), contents.size()) == ssize_t(contents.size()) &&
        ftruncate(file, off_t(contents.size())) == 0 && fsync(file) == 0;
    close(file);
    return isWritten ? WriteOutcome::written : WriteOutcome::failed;
}

// Does what the program does on Windows.
SlimFiles realSlimFiles() {
    return {readWhole, copyFlushed, overwrite, [] { return std::wstring(L"backup"); }};
}

#endif

void check(bool right, const char* what) {
    if (right) return;
    std::printf("%s failed\n", what);
    std::exit(1);
}

Bytes randomBytes(std::mt19937_64& random, std::size_t length) {
    Bytes bytes;
    bytes.reserve(length + 8);
    while (bytes.size() < length)
        put(bytes, random(), 8);
    bytes.resize(length);
    return bytes;
}

// As X7 and later write it: pictures and data files, packed and not, are most of the bytes.
Bytes document() {
    std::mt19937_64 random(1);
    return zipImage({
        {"mimetype", bytesOf("application/x-vnd.corel.zcf.draw.document+zip"), false},
        {"content/data/data1.dat", riffSample(8 * kMiB)},
        {"content/data/Bitmaps.dat", randomBytes(random, 100 * kMiB)},
        {"content/root.dat", riffWithViews(8 * kMiB, false)},
        {"previews/page1.png", pngRowsSample(12 * kMiB)},
        {"color/docPalette.xml", paletteSample(200000)},
        {"embed/embedding1.png", randomBytes(random, 80 * kMiB), false},
        {"META-INF/metadata.xml", bytesOf("<metadata/>")},
    });
}

double megabytes(double bytes) {
    return bytes / 1e6;
}

int make(const std::wstring& path) {
    const Bytes bytes = document();
    std::ofstream file(std::filesystem::path(path), std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()));
    return file.good() ? 0 : 1;
}

int measureMemory(const std::wstring& path) {
    const double before = peakMemory();
    const SlimOutcome outcome = slimDocument(path, {}, realSlimFiles());
    check(outcome.ok && !outcome.alreadyClean, "slimming");
    const double taken = peakMemory() - before;
    std::printf("%.0f MB became %.0f MB; peak memory %.0f MB, %.2f x the file\n",
                megabytes(double(outcome.originalSize)), megabytes(double(outcome.newSize)),
                megabytes(taken), taken / double(outcome.originalSize));
    return 0;
}

int measureTime(const std::wstring& original) {
    const std::wstring path = original + L".plan";
    const std::wstring copies[] = {original + L".copy1", original + L".copy2"};
    std::wstring backup;
    const SlimFiles files = realSlimFiles();
    // Everybody starts with files that are on the disk and creates the others.
    const auto prepare = [&] {
        for (const std::wstring& made : {path, backup, copies[0], copies[1]})
            std::filesystem::remove(made);
        check(files.copyFile(original, path), "a copy");
    };
    const auto slim = [&] {
        const SlimOutcome outcome = slimDocument(path, {}, files);
        check(outcome.ok && !outcome.alreadyClean, "slimming");
        backup = outcome.backupPath;
    };
    const auto copy = [&](bool isFlushed) {
        check(isFlushed ? files.copyFile(path, copies[0]) : plainCopy(path, copies[0]), "a copy");
        check(plainCopy(path, copies[1]), "a copy");
        FileImage image;
        check(files.readWhole(path, image), "reading");
    };
    const std::vector<Contender> contenders = {
        {"slimming", slim, prepare},
        {"two copies, one read", [&] { copy(false); }, prepare},
        {"the same, one copy flushed", [&] { copy(true); }, prepare},
    };
    const std::vector<Standing> standings = measure(contenders, kRounds);
    for (std::size_t i = 0; i < standings.size(); ++i)
        std::printf("%-28s %8.0f ms %8.2f x\n", contenders[i].name.c_str(),
                    standings[i].seconds * 1e3, 1 / standings[i].ratio);
    for (const std::wstring& made : {path, backup, copies[0], copies[1]})
        std::filesystem::remove(made);
    return 0;
}

}  // namespace

int main(int count, char** arguments) {
    const std::string command = count > 1 ? arguments[1] : "";
    const std::wstring file = wideFromUtf8(count > 2 ? arguments[2] : command);
    if (command == "make") return make(file);
    if (command == "memory") return measureMemory(file);
    return measureTime(file);
}
