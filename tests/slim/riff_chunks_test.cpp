#include "slim/riff_chunks.h"

#include <gtest/gtest.h>

#include "tests/slim/document_builder.h"

TEST(RiffChunks, FollowsSevenListsAndKeepsWhatIsBelow) {
    const Bytes view = chunk("bmrk", Bytes(16, 1));
    Bytes whole = view, rest;
    for (unsigned lists = 0; lists < 13; ++lists) {
        Bytes stream = riff("CDRR", {whole});
        const unsigned expected = lists <= 7 ? 1 : 0;
        EXPECT_EQ(countRiffChunks(stream, "bmrk"), expected) << lists;
        EXPECT_EQ(stripRiffChunks(stream, "bmrk"), static_cast<int>(expected)) << lists;
        EXPECT_EQ(stream, riff("CDRR", {expected != 0 ? rest : whole})) << lists;
        whole = list("nest", {whole});
        rest = list("nest", {rest});
    }
}
