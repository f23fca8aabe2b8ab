// What the reader does when memory runs out, at every allocation in turn.
#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <new>

#include "cloud/json/json.h"

namespace {

constexpr long kUnlimited = std::numeric_limits<long>::max();
long allocationsLeft = kUnlimited;

}  // namespace

// The compiler pairs malloc with free only where it sees both sides of the replacement.
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"

void* operator new(std::size_t size) {
    if (allocationsLeft != kUnlimited && allocationsLeft-- <= 0) throw std::bad_alloc();
    if (void* memory = std::malloc(size == 0 ? 1 : size)) return memory;
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

TEST(JsonMemory, RunningOutGivesNullAndNothingElse) {
    const std::string_view document =
        R"({"a long key that needs memory":[[1,[2]],{"b":"a long text that needs memory"}],"c":1e999})";
    const JsonValue whole = ParseJson(document);
    ASSERT_EQ(whole.tag(), JsonTag::object);
    int refusedParses = 0;
    int refusedCopies = 0;
    for (long limit = 0;; ++limit) {
        allocationsLeft = limit;
        JsonValue parsed = ParseJson(document);
        allocationsLeft = limit;
        const JsonValue copy = whole;
        // Taking a value apart needs no memory at all.
        allocationsLeft = 0;
        const JsonTag parsedTag = parsed.tag();
        parsed = JsonValue();
        allocationsLeft = kUnlimited;

        if (parsedTag == JsonTag::object && copy.tag() == JsonTag::object) break;
        refusedParses += parsedTag == JsonTag::null ? 1 : 0;
        refusedCopies += copy.tag() == JsonTag::null ? 1 : 0;
        ASSERT_LT(limit, 200);
    }
    EXPECT_GT(refusedParses, 10);
    EXPECT_GT(refusedCopies, 5);
}
