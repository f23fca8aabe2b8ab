#include "slim/riff_chunks.h"

#include <gtest/gtest.h>

#include "tests/slim/document_builder.h"
#include "tests/slim/slim_model.h"

namespace {

Bytes nested(unsigned lists, const Bytes& inside) {
    return lists == 0 ? inside : list("nest", {nested(lists - 1, inside)});
}

// Chunks of all kinds, sound and not: odd lengths, pads that are missing or not zero, sizes that
// lie, bodies that are no chunks.
Bytes randomChunks(Random& random, int depth) {
    Bytes all;
    for (std::size_t i = below(random, 5); i > 0; --i) {
        const std::string id = std::vector{"bmrk", "LIST", "leaf", "LIST"}[below(random, 4)];
        const bool isNested = id == "LIST" && depth > 0;
        Bytes made = chunk(id, isNested ? joined({bytesOf("type"), randomChunks(random, depth - 1)})
                                        : randomBytes(random, below(random, 12)));
        if (below(random, 8) == 0) made.back() = static_cast<std::uint8_t>(random());
        if (below(random, 12) == 0) made.pop_back();
        if (below(random, 12) == 0) made[4] = static_cast<std::uint8_t>(random());
        put(all, made);
    }
    return all;
}

}  // namespace

TEST(RiffChunks, FollowsSevenListsAndKeepsWhatIsBelow) {
    const Bytes view = chunk("bmrk", Bytes(16, 1));
    for (unsigned lists = 0; lists < 13; ++lists) {
        Bytes stream = riff("CDRR", {nested(lists, view)});
        const Bytes left = riff("CDRR", {nested(lists, lists <= 7 ? Bytes() : view)});
        EXPECT_EQ(countRiffChunks(stream, "bmrk"), lists <= 7 ? 1U : 0U) << lists;
        EXPECT_EQ(stripRiffChunks(stream, "bmrk"), lists <= 7 ? 1 : 0) << lists;
        EXPECT_EQ(stream, left) << lists;
    }
}

TEST(RiffChunks, AgreeWithTheModel) {
    Random random(20240131);
    for (int round = 0; round < 8000; ++round) {
        Bytes stream = joined({bytesOf("RIFFsizeCDRR"), randomChunks(random, 10)});
        if (round % 4 == 0) damage(stream, random);
        Bytes model = stream;
        ASSERT_EQ(countRiffChunks(stream, "bmrk"), modelCount(model, "bmrk")) << round;
        ASSERT_EQ(countRiffChunks(stream, "LIST"), modelCount(model, "LIST")) << round;
        ASSERT_EQ(stripRiffChunks(stream, "bmrk"), modelStrip(model, "bmrk")) << round;
        ASSERT_EQ(stream, model) << round;
        ASSERT_EQ(normaliseRiffSizes(stream), modelIsRiff(model)) << round;
        if (modelIsRiff(model)) modelNormalise(model);
        ASSERT_EQ(stream, model) << round;
    }
}
