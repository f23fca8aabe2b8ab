#include "slim/riff_chunks.h"

#include <gtest/gtest.h>

#include "slim/palette.h"
#include "tests/slim/document_builder.h"
#include "tests/slim/slim_model.h"

namespace {

const Bytes kView = chunk("bmrk", Bytes(16, 1));
const Bytes kLeaf = chunk("leaf", bytesOf("odd"));

Bytes nested(unsigned lists, const Bytes& inside) {
    return lists == 0 ? inside : list("nest", {kLeaf, nested(lists - 1, inside)});
}

// Chunks of all kinds, sound and not: odd lengths, pads that are missing or not zero, sizes that
// lie, bodies that are no chunks.
Bytes randomChunks(Random& random, int depth) {
    Bytes all;
    for (std::size_t i = below(random, 5); i > 0; --i) {
        const char* ids[] = {"bmrk", "LIST", "leaf", "LIST"};
        const char* id = ids[below(random, 4)];
        Bytes body = id[0] == 'L' && depth > 0
                         ? joined({bytesOf("type"), randomChunks(random, depth - 1)})
                         : randomBytes(random, below(random, 12));
        Bytes made = chunk(id, body);
        if (below(random, 8) == 0) made.back() = static_cast<std::uint8_t>(random());
        if (below(random, 12) == 0) made.pop_back();
        if (below(random, 12) == 0) made[4] = static_cast<std::uint8_t>(random());
        all = joined({all, made});
    }
    return all;
}

}  // namespace

TEST(RiffChunks, FollowsSevenListsAndKeepsWhatIsBelow) {
    for (unsigned lists = 0; lists < 13; ++lists) {
        Bytes stream = riff("CDRR", {nested(lists, kView), kLeaf});
        const Bytes before = stream;
        const bool isReached = lists <= 7;
        EXPECT_EQ(countRiffChunks(stream, "bmrk"), isReached ? 1U : 0U) << lists;
        EXPECT_EQ(stripRiffChunks(stream, "bmrk"), isReached ? 1 : 0) << lists;
        EXPECT_EQ(stream, isReached ? riff("CDRR", {nested(lists, {}), kLeaf}) : before) << lists;
    }
    Bytes both = riff("CDRR", {kView, nested(12, kView)});
    EXPECT_EQ(stripRiffChunks(both, "bmrk"), 1);
    EXPECT_EQ(both, riff("CDRR", {nested(12, kView)}));
}

TEST(RiffChunks, KeepsWhatDoesNotReadAsChunks) {
    const Bytes compressed = chunk("LIST", bytesOf("cmpr\x78\x9C\xFF\xFF\xFF\xFF\xFF\xFF\xFF!"));
    const Bytes shortBody = chunk("LIST", bytesOf("stlt12"));
    Bytes stream = riff("CDRE", {kView, compressed, shortBody, kView, bytesOf("rest")});
    EXPECT_EQ(stripRiffChunks(stream, "bmrk"), 2);
    EXPECT_EQ(stream, riff("CDRE", {compressed, shortBody, bytesOf("rest")}));
}

TEST(RiffChunks, LeavesOtherBytesAlone) {
    for (const Bytes& other : {Bytes(), bytesOf("RIFF\4\0\0\0CDR"), bytesOf("RIFXxxxxCDRRmore")}) {
        Bytes stream = other;
        EXPECT_EQ(countRiffChunks(stream, "bmrk"), 0U);
        EXPECT_EQ(stripRiffChunks(stream, "bmrk"), kNotRiff);
        EXPECT_FALSE(normaliseRiffSizes(stream));
        EXPECT_EQ(stream, other);
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
        if (!normaliseRiffSizes(stream)) continue;
        modelNormalise(model);
        ASSERT_EQ(stream, model) << round;
    }
}

TEST(Palette, ClearsExactlyTheOuterList) {
    const std::string empty = "<colors><page></page></colors>";
    const struct {
        std::string before;
        bool isCleared;
        std::uint32_t count;
        std::string after;
    } cases[] = {
        {"", true, 0, ""},
        {"<colors><page/></colors>", true, 0, "<colors><page/></colors>"},
        {"<p><colors><color a/><color b/></colors></p>", true, 2, "<p>" + empty + "</p>"},
        {"<cs><color x/></cs><colors></colors>", true, 1, "<cs><color x/></cs>" + empty},
        {"<colors>1</colors><color /><colors>2</colors>!", true, 1, empty + "!"},
        {"<colors><color a/>", false, 1, "<colors><color a/>"},
        {"</colors><color a/><colors>", false, 1, "</colors><color a/><colors>"},
        {"<color a/></colors>", false, 1, "<color a/></colors>"},
    };
    for (const auto& c : cases) {
        Bytes xml = bytesOf(c.before);
        std::uint32_t count = 99;
        EXPECT_EQ(clearColorStyles(xml, count), c.isCleared) << c.before;
        EXPECT_EQ(count, c.count) << c.before;
        EXPECT_EQ(xml, bytesOf(c.after));
    }
}
