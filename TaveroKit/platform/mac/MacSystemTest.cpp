#include "platform/mac/MacSystem.h"

#include "platform/sim/SimMachine.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstring>

namespace tavero {
namespace {

using namespace std::chrono_literals;

class MacSystemTest : public testing::Test {
  protected:
    std::optional<Date> bootTime(std::int64_t seconds) {
        std::vector<std::byte>& bytes = machine.state().sysctls["kern.boottime"];
        bytes.assign(16, std::byte{0xff});
        std::memcpy(bytes.data(), &seconds, sizeof seconds);
        return MacSystem(machine.kernel()).bootTime();
    }
    SimMachine machine;
};

TEST_F(MacSystemTest, TheBootTimeIsInWholeSecondsSince1970) {
    EXPECT_EQ(bootTime(1'800'000'000), Date(1'800'000'000s));
}

TEST_F(MacSystemTest, ATimeThatIsNoneIsAbsent) {
    EXPECT_EQ(bootTime(0), std::nullopt);
    EXPECT_EQ(bootTime(-1), std::nullopt);
    EXPECT_EQ(bootTime(INT64_MAX), std::nullopt);
    EXPECT_EQ(bootTime(1), Date(1s));
}

TEST_F(MacSystemTest, WithoutTheSysctlThereIsNone) {
    machine.state().sysctls.erase("kern.boottime");
    EXPECT_EQ(MacSystem(machine.kernel()).bootTime(), std::nullopt);
}

} // namespace
} // namespace tavero
