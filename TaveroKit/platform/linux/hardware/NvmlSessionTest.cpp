#include "platform/linux/hardware/NvmlSession.h"

#include "platform/linux/hardware/NvmlWorker.h"
#include "platform/linux/hardware/test/FakeNvml.h"

#include <gtest/gtest.h>

#include <chrono>
#include <limits>

namespace tavero {
namespace {

constexpr std::uint64_t second = 1'000'000'000;
const std::string first = "0000:01:00.0";
const std::string other = "0000:02:00.0";

// These prove the calls, against a stand-in that answers as the library's reference says.
class NvmlSessionTest : public testing::Test {
  protected:
    using Times = std::unordered_map<std::int32_t, std::uint64_t>;

    FakeNvml& fake = FakeNvml::open(TAVERO_FAKE_NVML);
    NvmlSession session{TAVERO_FAKE_NVML};
};

TEST_F(NvmlSessionTest, ADeviceTellsItsLoadMemoryAndCores) {
    fake.devices = {{.address = first, .load = 37, .memory = 5 << 20, .cores = 16'896}};
    const NvmlAnswer answer = session.read({first}, second);
    EXPECT_EQ(answer.at, second);
    EXPECT_EQ(answer.devices, (std::map<std::string, NvmlReading>{
                                  {first, {.load = 0.37, .memory = 5 << 20, .cores = 16'896}}}));
}

TEST_F(NvmlSessionTest, AProcessGetsItsShareOfTheTimeSinceThePreviousReading) {
    fake.devices = {{.address = first}};
    auto& samples = fake.devices[0].samples;
    samples = {
        {.pid = 100, .timeStamp = 10, .smUtil = 50, .memUtil = 9, .encUtil = 0, .decUtil = 0}};
    EXPECT_EQ(session.read({first}, second).times, (Times{{100, 0}}));
    samples = {
        {.pid = 100, .timeStamp = 20, .smUtil = 50, .memUtil = 9, .encUtil = 10, .decUtil = 5},
        {.pid = 200, .timeStamp = 21, .smUtil = 20, .memUtil = 0, .encUtil = 0, .decUtil = 0},
        {.pid = 200, .timeStamp = 22, .smUtil = 40, .memUtil = 0, .encUtil = 0, .decUtil = 0}};
    const NvmlAnswer answer = session.read({first}, 3 * second);
    EXPECT_EQ(answer.times, (Times{{100, 1'300'000'000}, {200, 600'000'000}}));
    EXPECT_TRUE(answer.devices.at(first).hasProcesses);
    EXPECT_EQ(fake.lastAskedAfter, 10u);
    EXPECT_EQ(session.read({first}, 4 * second).times, answer.times); // nothing came since
    EXPECT_EQ(fake.lastAskedAfter, 22u);
}

TEST_F(NvmlSessionTest, ManyProcessesAreAskedForWithMoreRoom) {
    fake.devices = {{.address = first}};
    for (unsigned int pid = 1; pid <= 1000; ++pid)
        fake.devices[0].samples.push_back(
            {.pid = pid, .timeStamp = pid, .smUtil = 1, .memUtil = 0, .encUtil = 0, .decUtil = 0});
    EXPECT_EQ(session.read({first}, second).times.size(), 1000u);
}

TEST_F(NvmlSessionTest, OddSamplesAreClampedOrPassedOver) {
    constexpr unsigned int huge = std::numeric_limits<unsigned int>::max();
    fake.devices = {{.address = first, .load = huge, .memory = ~0ull}};
    session.read({first}, second);
    fake.devices[0].samples = {
        {.pid = 0, .timeStamp = 1, .smUtil = 50, .memUtil = 0, .encUtil = 0, .decUtil = 0},
        {.pid = huge, .timeStamp = 2, .smUtil = 50, .memUtil = 0, .encUtil = 0, .decUtil = 0},
        {.pid = 100, .timeStamp = ~0ull, .smUtil = huge, .memUtil = 0, .encUtil = 0, .decUtil = 0}};
    const NvmlAnswer answer = session.read({first}, 2 * second);
    EXPECT_EQ(answer.times, (Times{{100, second}}));
    EXPECT_EQ(answer.devices.at(first).load, 1);
    EXPECT_EQ(answer.devices.at(first).memory, ~std::uint64_t{0});
}

TEST_F(NvmlSessionTest, ADriverThatTellsNoProcessesStillTellsTheLoad) {
    fake.devices = {{.address = first, .load = 5}};
    fake.tellsProcesses = false;
    EXPECT_EQ(session.read({first}, second).devices.at(first), (NvmlReading{.load = 0.05}));
}

TEST_F(NvmlSessionTest, ADeviceThatIsNotAskedForIsNotStarted) {
    fake.devices = {{.address = first}, {.address = other}};
    session.read({other}, second);
    EXPECT_EQ(fake.devices[0].attached, 0);
    EXPECT_EQ(fake.devices[1].attached, 1);
}

TEST_F(NvmlSessionTest, ADeviceThatIsAskedNoMoreIsLetGoOf) {
    fake.devices = {{.address = first}, {.address = other}};
    session.read({first, other}, second);
    session.read({other}, 2 * second);
    EXPECT_EQ(fake.inits, 2); // the only way to let go of one is to begin anew
    EXPECT_EQ(fake.devices[0].attached, 1);
    session.read({}, 3 * second);
    EXPECT_EQ(fake.on, 0);
}

TEST_F(NvmlSessionTest, WithoutTheLibraryThereIsNothing) {
    for (const char* name : {"", "/nowhere/libnvidia-ml.so.1"}) {
        NvmlSession missing(name);
        EXPECT_EQ(missing.read({first}, second), NvmlAnswer{.at = second});
    }
}

TEST_F(NvmlSessionTest, ALibraryThatRefusesIsTriedAgainAfterAWhile) {
    fake.devices = {{.address = first}};
    fake.initResult = 9;
    EXPECT_TRUE(session.read({first}, second).devices.empty());
    fake.initResult = 0;
    EXPECT_TRUE(session.read({first}, 30 * second).devices.empty());
    EXPECT_EQ(session.read({first}, 31 * second).devices.size(), 1u);
    EXPECT_EQ(fake.inits, 2);
}

TEST_F(NvmlSessionTest, ADeviceThatIsLostTellsNothing) {
    fake.devices = {{.address = first, .load = 50, .memory = 100}};
    session.read({first}, second);
    fake.devices[0].isGone = true;
    EXPECT_TRUE(session.read({first}, 2 * second).devices.empty());
    EXPECT_TRUE(session.read({other}, 3 * second).devices.empty());
}

TEST_F(NvmlSessionTest, AProcessThatWasNotSeenForAMinuteIsForgotten) {
    fake.devices = {{.address = first}};
    fake.devices[0].samples = {
        {.pid = 100, .timeStamp = 10, .smUtil = 50, .memUtil = 0, .encUtil = 0, .decUtil = 0}};
    session.read({first}, second);
    EXPECT_EQ(session.read({first}, 61 * second).times.size(), 1u);
    EXPECT_EQ(session.read({first}, 62 * second).times.size(), 0u);
}

TEST(NvmlWorker, AnAnswerComesBackAndTheLibraryIsLetGoOf) {
    FakeNvml& fake = FakeNvml::open(TAVERO_FAKE_NVML);
    fake.devices = {{.address = first, .load = 37}};
    NvmlWorker worker(TAVERO_FAKE_NVML, std::chrono::minutes(10));
    EXPECT_EQ(worker.ask({}, second), std::nullopt);
    EXPECT_EQ(fake.inits, 0);
    EXPECT_EQ(worker.ask({first}, second)->devices.at(first).load, 0.37);
    EXPECT_TRUE(worker.ask({}, 2 * second)->devices.empty());
    EXPECT_EQ(fake.on, 0);
}

TEST(NvmlWorker, ADriverThatHangsHoldsUpNobody) {
    FakeNvml& fake = FakeNvml::open(TAVERO_FAKE_NVML);
    fake.devices = {{.address = first}};
    fake.isHanging = true;
    NvmlWorker worker(TAVERO_FAKE_NVML, std::chrono::milliseconds(1));
    EXPECT_EQ(worker.ask({first}, second), std::nullopt); // and comes back
    fake.isHanging = false;
    std::optional<NvmlAnswer> answer;
    while (!answer) answer = worker.ask({first}, 2 * second);
    EXPECT_EQ(answer->devices.size(), 1u);
}

} // namespace
} // namespace tavero
