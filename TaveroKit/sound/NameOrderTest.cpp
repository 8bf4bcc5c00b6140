#include "sound/NameOrder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace tavero {
namespace {

using testing::ElementsAre;

std::vector<std::string> sorted(std::vector<std::string> names) {
    std::stable_sort(names.begin(), names.end(), localizedCaseInsensitiveLess);
    return names;
}

TEST(NameOrder, LettersCountAndTheirCaseDoesNot) {
    EXPECT_THAT(sorted({"beta", "Gamma", "ALPHA"}), ElementsAre("ALPHA", "beta", "Gamma"));
    EXPECT_FALSE(localizedCaseInsensitiveLess("Mail", "mAIL"));
    EXPECT_FALSE(localizedCaseInsensitiveLess("mAIL", "Mail"));
}

TEST(NameOrder, NamesThatDifferOnlyInCaseKeepTheirOrder) {
    EXPECT_THAT(sorted({"b", "Same", "same", "SAME", "a"}),
                ElementsAre("a", "b", "Same", "same", "SAME"));
}

TEST(NameOrder, AccentsDecideBetweenNamesThatAreOtherwiseEqual) {
    EXPECT_THAT(sorted({"Eclat", "\u00C9clair", "Eclair"}),
                ElementsAre("Eclair", "\u00C9clair", "Eclat"));
}

TEST(NameOrder, AnyBytesHaveAnOrder) {
    EXPECT_TRUE(localizedCaseInsensitiveLess("", "a"));
    EXPECT_FALSE(localizedCaseInsensitiveLess("", ""));
    EXPECT_EQ(sorted({"b", "\xff\xfe", "a", "\xc3"}), sorted({"\xc3", "a", "\xff\xfe", "b"}));
}

} // namespace
} // namespace tavero
