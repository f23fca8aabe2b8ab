#include "cloud/rule_signature_win.h"

#include <gtest/gtest.h>

namespace {

// Made by scripts/sign_rules.sh with a key that nobody keeps.
const EcdsaPair kKey =
    KeyFromHex(
        "fc254653d8a9214571ab82a6bb5fb7662bc93b058b1711b5e602e652385f94e46b0c9c4bc87ecb93984c1d9746"
        "c13eb00d292b014d0e4b6dbec39dfdc3044be3")
        .value();
const std::string kSigned =
    R"({"signature":"N5kV5Sj6JtTv1SKZrdaORwID9zesafwYygRpYl71SkAqHdjjIz2N3aeHQJlLGVQiK5dxelPC0jvKkaXeBb0GHw==",)"
    R"("version":7,"rules":[{"id":"a","title":"A"}]})";

}  // namespace

TEST(RuleSignature, OnlyTheOwnersBytesAreGenuine) {
    EXPECT_TRUE(IsSignedBy(kKey, kSigned));
    EcdsaPair otherKey = kKey;
    std::swap(otherKey[0], otherKey[1]);
    EXPECT_FALSE(IsSignedBy(otherKey, kSigned));
    for (std::size_t i = 0; i < kSigned.size(); ++i) {
        std::string changed = kSigned;
        changed[i] = static_cast<char>(changed[i] ^ 1);
        EXPECT_FALSE(IsSignedBy(kKey, changed)) << i;
        EXPECT_FALSE(IsSignedBy(kKey, kSigned.substr(0, i))) << i;
    }
    for (const std::string& text : {" " + kSigned, kSigned + " ", "{" + kSigned.substr(103),
                                    std::string(R"({"version":8,)" + kSigned.substr(1))}) {
        EXPECT_FALSE(IsSignedBy(kKey, text)) << text;
    }
    EXPECT_FALSE(KeyFromHex("04" + std::string(128, 'a')));
    EXPECT_FALSE(KeyFromHex(std::string(127, 'a') + "g"));
}
