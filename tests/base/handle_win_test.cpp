#include "base/handle_win.h"

#include <gtest/gtest.h>

namespace {

struct CountingTraits {
    using Type = int;
    static inline int closed = 0;
    static int invalid() { return -1; }
    static void close(int) { SetLastError(static_cast<DWORD>(++closed)); }
};

}  // namespace

TEST(UniqueHandle, ClosesOnceAndKeepsTheLastError) {
    SetLastError(ERROR_ACCESS_DENIED);
    {
        UniqueHandle<CountingTraits> first(0), second(std::move(first));
        EXPECT_FALSE(first);
        second = UniqueHandle<CountingTraits>(7);
        EXPECT_EQ(CountingTraits::closed, 1);
        EXPECT_EQ(*second.receive(), -1);
        *second.receive() = 8;
    }
    EXPECT_EQ(CountingTraits::closed, 3);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_ACCESS_DENIED));
}
