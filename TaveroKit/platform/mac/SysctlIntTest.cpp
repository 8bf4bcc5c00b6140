#include "platform/mac/SysctlInt.h"

#include "platform/sim/SimMachine.h"

#include <gtest/gtest.h>

#include <limits>

namespace tavero {
namespace {

std::vector<std::byte> bytes(std::initializer_list<int> values) {
    std::vector<std::byte> bytes;
    for (int value : values) bytes.push_back(static_cast<std::byte>(value));
    return bytes;
}

TEST(SysctlInt, AnUnknownNameIsAbsent) {
    EXPECT_EQ(sysctlInt(*SimMachine().kernel(), "hw.nothing"), std::nullopt);
}

TEST(SysctlInt, FourBytesAreSigned) {
    SimMachine sim;
    sim.state().sysctls["positive"] = bytes({0x10, 0x27, 0, 0});
    sim.state().sysctls["negative"] = bytes({0xFE, 0xFF, 0xFF, 0xFF});
    EXPECT_EQ(sysctlInt(*sim.kernel(), "positive"), 10000);
    EXPECT_EQ(sysctlInt(*sim.kernel(), "negative"), -2);
}

TEST(SysctlInt, EightBytesAreTakenWhole) {
    SimMachine sim;
    sim.state().setSysctl("small", std::int64_t{7});
    sim.state().setSysctl("large", std::int64_t{17'179'869'184});
    sim.state().setSysctl("least", std::numeric_limits<std::int64_t>::min());
    sim.state().setSysctl("low half looks negative", std::int64_t{0xFFFFFFFF});
    EXPECT_EQ(sysctlInt(*sim.kernel(), "small"), 7);
    EXPECT_EQ(sysctlInt(*sim.kernel(), "large"), 17'179'869'184);
    EXPECT_EQ(sysctlInt(*sim.kernel(), "least"), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(sysctlInt(*sim.kernel(), "low half looks negative"), 0xFFFFFFFF);
}

TEST(SysctlInt, OtherWidthsFillFromTheLowEnd) {
    SimMachine sim;
    sim.state().sysctls["one byte"] = bytes({200});
    sim.state().sysctls["none"] = {};
    EXPECT_EQ(sysctlInt(*sim.kernel(), "one byte"), 200);
    EXPECT_EQ(sysctlInt(*sim.kernel(), "none"), 0);
}

TEST(SysctlInt, AValueWiderThanANumberIsAbsent) {
    SimMachine sim;
    sim.state().sysctls["text"] = bytes({'A', 'p', 'p', 'l', 'e', ' ', 'M', '3', 0});
    EXPECT_EQ(sysctlInt(*sim.kernel(), "text"), std::nullopt);
}

} // namespace
} // namespace tavero
