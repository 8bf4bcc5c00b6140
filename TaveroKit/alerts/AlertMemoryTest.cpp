#include "alerts/AlertMemory.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>

namespace tavero {
namespace {

using namespace std::chrono_literals;

constexpr Date newYear2001 = std::chrono::sys_days(std::chrono::year(2001) / 1 / 1);

TEST(AlertMemory, ItComesBackAsItWasStored) {
    AlertMemory memory;
    memory.lastFired = {{"diskFull", newYear2001 + 1500ms}, {"appCPU|/Applications/A|B.app", {}}};
    memory.active = {"diskFull", "gpuBusy"};
    EXPECT_EQ(AlertMemory::decoded(memory.encoded()), memory);
    EXPECT_EQ(AlertMemory::decoded(AlertMemory{}.encoded()), AlertMemory{});
}

TEST(AlertMemory, TimesAreSecondsSinceTheYear2001) {
    EXPECT_EQ((AlertMemory{.lastFired = {{"diskFull", newYear2001 + 1500ms}}}.encoded()),
              R"({"active":[],"lastFired":{"diskFull":1.5}})");
}

TEST(AlertMemory, UnknownMembersAreIgnored) {
    EXPECT_EQ(AlertMemory::decoded(R"({"active":["a"],"lastFired":{},"colour":"red"})"),
              (AlertMemory{.active = {"a"}}));
}

TEST(AlertMemory, AMissingMemberOrOneOfAnotherTypeDecodesToNothing) {
    for (const char* json :
         {"", "{", "null", "[]", "7", "\"text\"", R"({"active":[]})", R"({"lastFired":{}})",
          R"({"active":{},"lastFired":{}})", R"({"active":[],"lastFired":[]})",
          R"({"active":[1],"lastFired":{}})", R"({"active":[],"lastFired":{"a":"1"}})",
          R"({"active":[],"lastFired":{"a":true}})", R"({"active":[],"lastFired":{"a":null}})",
          "\xff\xfe binary", R"({"active":[],"lastFired":{"a":1e999}})"})
        EXPECT_EQ(AlertMemory::decoded(json), std::nullopt) << json;
}

TEST(AlertMemory, ADateBeyondAllReasonIsStillADate) {
    const auto memory = AlertMemory::decoded(R"({"active":[],"lastFired":{"a":1e300,"b":-1e300}})");
    ASSERT_TRUE(memory);
    EXPECT_LT(memory->lastFired.at("b"), newYear2001);
    EXPECT_GT(memory->lastFired.at("a"), newYear2001);
}

TEST(AlertMemory, BytesThatAreNotTextAreReplacedInsteadOfLosingTheRest) {
    const AlertMemory memory{.active = {"appCPU|\xff"}};
    EXPECT_EQ(AlertMemory::decoded(memory.encoded()), (AlertMemory{.active = {"appCPU|\uFFFD"}}));
}

} // namespace
} // namespace tavero
