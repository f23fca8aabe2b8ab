#include "slim/riff_chunks.h"

#include <gtest/gtest.h>

#include "tests/slim/document_builder.h"

TEST(RiffChunks, StripsWholeChunksAndPutsTheListsAroundThemRight) {
    const std::string view = chunk("bmrk", std::string(16, 'v')), oddView = chunk("bmrk", "odd");
    const std::string leaf = chunk("loda", "odd"), list5 = list("five", "a----");
    const auto nested = [](int lists, std::string chunks) {
        while (lists-- > 0)
            chunks = list("nest", chunks);
        return chunks;
    };
    const struct {
        std::uint32_t views;
        std::string before, after;
    } cases[] = {
        {0, leaf + list("bmkt", leaf), leaf + list("bmkt", leaf)},
        {3, view + oddView + leaf + view, leaf},
        {2, list("doc ", list("bmkt", view + leaf) + oddView), list("doc ", list("bmkt", leaf))},
        {1, view + oddView.substr(0, 10), oddView.substr(0, 10)},
        {1, nested(7, view), nested(7, "")},
        {0, nested(8, view), nested(8, view)},
        // What reads as no chunk stays, and is what makes a list odd; its pad byte becomes a zero.
        {1, list("five", view + "a----").replace(41, 1, "x") + leaf, list5 + leaf},
        // A pad byte that is missing comes, even before the first chunk that goes.
        {1, view + list("full", list5.substr(0, 17)) + leaf, list("full", list5) + leaf},
        {1, list("gggg", list("full", list5.substr(0, 17)) + view) + leaf,
         list("gggg", list("full", list5)) + leaf},
    };
    for (const auto& [views, before, after] : cases) {
        Bytes stream = riff("CDRR", before);
        EXPECT_EQ(countRiffChunks(stream, "bmrk"), views);
        EXPECT_EQ(stripRiffChunks(stream, "bmrk"), static_cast<int>(views));
        EXPECT_EQ(stream, riff("CDRR", after));
    }
}
