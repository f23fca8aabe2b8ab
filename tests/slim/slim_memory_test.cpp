// Slimming with every single allocation failing once. A program of its own: it replaces the global
// operator new.
#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

#include "slim/slim_document.h"
#include "tests/slim/document_builder.h"
#include "tests/slim/fake_files.h"

namespace {

// Allocations until one fails; 0 while none is to fail.
long untilFailure = 0;

// The file system of the test is not what runs out of memory.
class Plenty {
  public:
    Plenty() : kept_(untilFailure) { untilFailure = 0; }
    ~Plenty() { untilFailure = kept_; }

  private:
    long kept_;
};

}  // namespace

[[gnu::noinline]] void* operator new(std::size_t size) {
    if (untilFailure != 0 && --untilFailure == 0) throw std::bad_alloc();
    void* memory = std::malloc(size == 0 ? 1 : size);
    if (memory == nullptr) throw std::bad_alloc();
    return memory;
}

[[gnu::noinline]] void operator delete(void* memory) noexcept {
    std::free(memory);
}

[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace {

SlimFiles withPlenty(SlimFiles files) {
    return {
        [=](const std::wstring& path, Bytes& contents) {
            const Plenty plenty;
            return files.readWhole(path, contents);
        },
        [=](const std::wstring& from, const std::wstring& to) {
            const Plenty plenty;
            return files.copyFile(from, to);
        },
        [=](const std::wstring& path, ByteView bytes) {
            const Plenty plenty;
            return files.writeWhole(path, bytes);
        },
        files.localTimestamp,
    };
}

}  // namespace

TEST(SlimMemory, SlimsWhollyOrSaysWhichStepFailed) {
    const std::wstring path = L"C:\\plans\\plan.cdr";
    const Bytes document = buildDocument({.data2 = true});
    FakeFiles expected{{{path, document}}};
    ASSERT_TRUE(slimDocument(path, {}, expected.seam()).ok);

    bool hasFailed = true;
    for (long allocation = 1; hasFailed; ++allocation) {
        FakeFiles files{{{path, document}}};
        const SlimFiles seam = withPlenty(files.seam());
        untilFailure = allocation;
        const SlimOutcome outcome = slimDocument(path, {}, seam);
        hasFailed = untilFailure == 0;
        untilFailure = 0;
        EXPECT_TRUE(outcome.ok || hasFailed) << allocation;
        EXPECT_EQ(outcome.message.empty(), outcome.ok) << allocation;
        EXPECT_EQ(files.contents[path], (outcome.ok ? expected.contents[path] : document))
            << allocation;
        EXPECT_EQ(files.writes, outcome.ok ? 1 : 0) << allocation;
    }
}
