// What happens when memory runs out, at every allocation in turn. A program of its own, because it
// replaces the allocator.
#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <new>

#include "cloud/json/json.h"
#include "slim/slim_document.h"
#include "tests/slim/document_builder.h"
#include "tests/slim/fake_files.h"

namespace {

constexpr long kUnlimited = std::numeric_limits<long>::max();
long allocationsLeft = kUnlimited;
bool failsOnlyOnce = false;

// The test's own files are not what runs out of memory.
class Plenty {
  public:
    Plenty() : kept_(std::exchange(allocationsLeft, kUnlimited)) {}
    Plenty(const Plenty&) = delete;
    Plenty& operator=(const Plenty&) = delete;
    ~Plenty() { allocationsLeft = kept_; }

  private:
    long kept_;
};

SlimFiles withPlenty(SlimFiles files) {
    const auto wrapped = [](auto call) {
        return [call](auto&&... arguments) {
            const Plenty plenty;
            return call(arguments...);
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
        if (failsOnlyOnce) allocationsLeft = kUnlimited;
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

TEST(Memory, JsonGivesNullAndNothingElse) {
    const std::string_view document =
        R"({"a long key that needs memory":[[1,[2]],{"b":"a long text that needs memory"}],"c":1e999})";
    const JsonValue whole = ParseJson(document);
    ASSERT_EQ(whole.tag(), JsonTag::object);
    bool hasFailed = true;
    for (long limit = 0; hasFailed; ++limit) {
        allocationsLeft = limit;
        const JsonValue parsed = ParseJson(document);
        allocationsLeft = limit;
        const JsonValue copy = whole;
        allocationsLeft = kUnlimited;
        for (const JsonValue* value : {&parsed, &copy})
            EXPECT_TRUE(value->tag() == JsonTag::object || value->tag() == JsonTag::null);
        hasFailed = parsed.tag() == JsonTag::null || copy.tag() == JsonTag::null;
        ASSERT_LT(limit, 200);
    }
}

TEST(Memory, SlimsWhollyOrSaysWhichStepFailed) {
    const std::wstring path = L"C:\\plans\\plan.cdr";
    const Bytes document = corpusDocument("x7");
    FakeFiles expected{{{path, document}}};
    ASSERT_TRUE(slimDocument(path, {}, expected.seam()).ok);

    bool hasFailed = true;
    failsOnlyOnce = true;
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
    failsOnlyOnce = false;
}
