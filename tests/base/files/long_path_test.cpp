#include "base/files/long_path.h"

#include <gtest/gtest.h>

TEST(LongPath, HasTheExtendedForm) {
    EXPECT_EQ(extendedPath(L"C:\\a\\b.cdr"), L"\\\\?\\C:\\a\\b.cdr");
    EXPECT_EQ(extendedPath(L"\\\\server\\share\\b.cdr"), L"\\\\?\\UNC\\server\\share\\b.cdr");
    for (const wchar_t* same : {L"\\\\?\\C:\\a", L"\\\\.\\pipe\\a", L"a\\b.cdr", L"C:b.cdr", L""})
        EXPECT_EQ(extendedPath(same), same);
}
