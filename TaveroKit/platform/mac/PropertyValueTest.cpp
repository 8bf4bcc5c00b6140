#include "platform/mac/PropertyValue.h"

#include <gtest/gtest.h>

#include <limits>

namespace tavero {
namespace {

constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();

PropertyMap with(PropertyValue value) { return {{"key", std::move(value)}}; }

std::optional<std::int64_t> intOf(PropertyValue value) {
    return intValue(with(std::move(value)), "key");
}

std::optional<std::uint64_t> uint64Of(PropertyValue value) {
    return uint64Value(with(std::move(value)), "key");
}

TEST(PropertyValue, AMissingKeyIsAbsentInEveryKind) {
    const PropertyMap empty;
    EXPECT_EQ(intValue(empty, "key"), std::nullopt);
    EXPECT_EQ(uint64Value(empty, "key"), std::nullopt);
    EXPECT_EQ(boolValue(empty, "key"), std::nullopt);
    EXPECT_EQ(textValue(empty, "key"), nullptr);
    EXPECT_EQ(dataValue(empty, "key"), nullptr);
    EXPECT_EQ(listValue(empty, "key"), nullptr);
    EXPECT_EQ(mapValue(empty, "key"), nullptr);
}

TEST(PropertyValue, AWholeNumberIsRead) {
    EXPECT_EQ(intOf({std::int64_t{-7}}), -7);
    EXPECT_EQ(intOf({most}), most);
    EXPECT_EQ(uint64Of({std::int64_t{7}}), 7u);
}

TEST(PropertyValue, ALargeUnsignedNumberComesAsANegativeOne) {
    EXPECT_EQ(uint64Of({std::int64_t{-1}}), std::numeric_limits<std::uint64_t>::max());
    EXPECT_EQ(uint64Of({least}), 1ull << 63);
}

TEST(PropertyValue, AFractionIsCutOff) {
    EXPECT_EQ(intOf({2.9}), 2);
    EXPECT_EQ(intOf({-2.9}), -2);
    EXPECT_EQ(uint64Of({2.9}), 2u);
}

TEST(PropertyValue, ANumberThatDoesNotFitIsAbsent) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(intOf({9223372036854775808.0}), std::nullopt);
    EXPECT_EQ(intOf({-9223372036854775808.0}), least);
    EXPECT_EQ(intOf({-1e19}), std::nullopt);
    EXPECT_EQ(uint64Of({9223372036854775808.0}), 1ull << 63);
    EXPECT_EQ(uint64Of({18446744073709551616.0}), std::nullopt);
    for (double number : {infinity, -infinity, std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_EQ(intOf({number}), std::nullopt) << number;
        EXPECT_EQ(uint64Of({number}), std::nullopt) << number;
    }
}

TEST(PropertyValue, ABooleanIsNoNumberAndANumberNoBoolean) {
    EXPECT_EQ(intOf({true}), std::nullopt);
    EXPECT_EQ(uint64Of({true}), std::nullopt);
    EXPECT_EQ(boolValue(with({true}), "key"), true);
    EXPECT_EQ(boolValue(with({false}), "key"), false);
    EXPECT_EQ(boolValue(with({std::int64_t{1}}), "key"), std::nullopt);
}

TEST(PropertyValue, TextIsNoNumber) {
    EXPECT_EQ(intOf({std::string("12")}), std::nullopt);
    EXPECT_EQ(*textValue(with({std::string("12")}), "key"), "12");
    EXPECT_EQ(textValue(with({std::int64_t{12}}), "key"), nullptr);
}

TEST(PropertyValue, ListsMapsAndDataAreReadAsTheyAre) {
    const PropertyMap inner{{"a", {std::int64_t{1}}}};
    const PropertyMap properties{{"map", {inner}},
                                 {"list", {PropertyList{{inner}, {true}}}},
                                 {"data", {PropertyData{std::byte{7}}}}};
    EXPECT_EQ(*mapValue(properties, "map"), inner);
    EXPECT_EQ(listValue(properties, "list")->size(), 2u);
    EXPECT_EQ(dataValue(properties, "data")->front(), std::byte{7});
    EXPECT_EQ(mapValue(properties, "list"), nullptr);
    EXPECT_EQ(listValue(properties, "map"), nullptr);
    EXPECT_EQ(dataValue(properties, "map"), nullptr);
}

} // namespace
} // namespace tavero
