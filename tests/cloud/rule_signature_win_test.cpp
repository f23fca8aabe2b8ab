#include "cloud/rule_signature_win.h"

#include <gtest/gtest.h>

TEST(RuleSignature, OnlyTheOwnersBytesAreGenuine) {
    // Made by scripts/sign_rules.sh with a key that nobody keeps.
    const auto key = KeyFromHex(
        "fc254653d8a9214571ab82a6bb5fb7662bc93b058b1711b5e602e652385f94e46b0c9c4bc87ecb93984c1d9746"
        "c13eb00d292b014d0e4b6dbec39dfdc3044be3");
    const std::string genuine =
        R"({"signature":"N5kV5Sj6JtTv1SKZrdaORwID9zesafwYygRpYl71SkAqHdjjIz2N3aeHQJlLGVQiK5dxelPC0jvKkaXeBb0GHw==",)"
        R"("version":7,"rules":[{"id":"a","title":"A"}]})";
    ASSERT_TRUE(key && IsSignedBy(*key, genuine));
    EcdsaPair otherKey = *key;
    std::swap(otherKey[0], otherKey[1]);
    EXPECT_FALSE(IsSignedBy(otherKey, genuine));
    for (std::size_t i = 0; i < genuine.size(); ++i) {
        std::string changed = genuine;
        changed[i] = static_cast<char>(changed[i] ^ 1);
        EXPECT_FALSE(IsSignedBy(*key, changed)) << i;
        EXPECT_FALSE(IsSignedBy(*key, genuine.substr(0, i))) << i;
    }
    EXPECT_FALSE(IsSignedBy(*key, genuine + " ") || IsSignedBy(*key, "{" + genuine.substr(103)));
    EXPECT_FALSE(KeyFromHex(std::string(127, 'a') + "g") || KeyFromHex(std::string(130, 'a')));
}
