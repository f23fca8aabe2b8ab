// What happens when memory runs out, at every allocation in turn. A program of its own, because it
// replaces the allocator.
#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <new>

#include "slim/slim_document.h"
#include "tests/slim/document_builder.h"
#include "tests/slim/fake_files.h"

namespace {

constexpr long kUnlimited = std::numeric_limits<long>::max();
long allocationsLeft = kUnlimited;

// The test's own files are not what runs out of memory.
SlimFiles withPlenty(SlimFiles files) {
    const auto wrapped = [](auto call) {
        return [call](auto&&... arguments) {
            const long kept = std::exchange(allocationsLeft, kUnlimited);
            const auto result = call(arguments...);
            allocationsLeft = kept;
            return result;
        };
    };
    return {wrapped(files.readWhole), wrapped(files.copyFile), wrapped(files.overwrite),
            files.localTimestamp};
}

}  // namespace

// The compiler pairs malloc with free only where it sees both sides of the replacement.
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"

[[gnu::noinline]] void* operator new(std::size_t size) {
    if (allocationsLeft != kUnlimited && allocationsLeft-- <= 0) {
        allocationsLeft = kUnlimited;  // only once
        throw std::bad_alloc();
    }
    if (void* memory = std::malloc(size == 0 ? 1 : size)) return memory;
    throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* memory) noexcept {
    std::free(memory);
}
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

TEST(Memory, SlimsWhollyOrSaysWhichStepFailed) {
    const std::wstring path = L"C:\\plans\\plan.cdr";
    const Bytes document = corpusDocument("x7");
    FakeFiles expected{{{path, document}}};
    ASSERT_TRUE(slimDocument(path, {}, expected.seam()).ok);

    bool hasFailed = true;
    for (long limit = 0; hasFailed; ++limit) {
        FakeFiles files{{{path, document}}};
        const SlimFiles seam = withPlenty(files.seam());
        allocationsLeft = limit;
        const SlimOutcome outcome = slimDocument(path, {}, seam);
        hasFailed = allocationsLeft == kUnlimited;
        allocationsLeft = kUnlimited;
        EXPECT_TRUE(outcome.ok || hasFailed) << limit;
        EXPECT_EQ(outcome.message.empty(), outcome.ok) << limit;
        EXPECT_EQ(files.contents[path], (outcome.ok ? expected.contents[path] : document)) << limit;
        EXPECT_EQ(files.writes, outcome.ok ? 1 : 0) << limit;
        ASSERT_LT(limit, 5000);
    }
}
