#include "platform/linux/hardware/DrmClients.h"

#include <gtest/gtest.h>

#include <limits>

namespace tavero {
namespace {

constexpr std::uint64_t second = 1'000'000'000;
constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
const std::string device = "0000:c1:00.0";

TEST(ParseDrmClient, AnAmdClient) {
    EXPECT_EQ(parseDrmClient("pos:\t0\nflags:\t02100002\nmnt_id:\t26\nino:\t641\n"
                             "drm-driver:\tamdgpu\ndrm-client-id:\t11\ndrm-pdev:\t0000:c1:00.0\n"
                             "pasid:\t32770\ndrm-memory-vram:\t20480 KiB\ndrm-memory-gtt: \t4 MiB\n"
                             "drm-memory-cpu: \t0 KiB\n"
                             "drm-engine-gfx:\t5000000000 ns\ndrm-engine-dec:\t1000000000 ns\n"),
              (DrmClient{.device = device,
                         .id = 11,
                         .engines = {{"gfx", 5 * second}, {"dec", second}},
                         .memory = (20 << 20) + (4 << 20)}));
}

TEST(ParseDrmClient, AnI915ClientWithCapacities) {
    EXPECT_EQ(parseDrmClient("drm-driver:\ti915\ndrm-client-id:\t7\ndrm-pdev:\t0000:00:02.0\n"
                             "drm-total-system0:\t300 KiB\ndrm-shared-system0:\t100 KiB\n"
                             "drm-resident-system0:\t250 KiB\n"
                             "drm-engine-render:\t42 ns\ndrm-engine-video:\t8 ns\n"
                             "drm-engine-capacity-video:\t2\n"),
              (DrmClient{.device = "0000:00:02.0",
                         .id = 7,
                         .engines = {{"render", 42}, {"video", 8}},
                         .memory = 150 << 10}));
}

TEST(ParseDrmClient, AnXeClientCountsCycles) {
    EXPECT_EQ(parseDrmClient("drm-driver:\txe\ndrm-client-id:\t3\ndrm-pdev:\t0000:03:00.0\n"
                             "drm-cycles-rcs:\t28257900\ndrm-total-cycles-rcs:\t7655183225\n"
                             "drm-engine-capacity-rcs:\t1\n"),
              (DrmClient{.device = "0000:03:00.0",
                         .id = 3,
                         .engines = {{"rcs", 0, 28257900, 7655183225}}}));
}

TEST(ParseDrmClient, WithoutABusTheDriverTellsTheDevice) {
    EXPECT_EQ(parseDrmClient("drm-driver:\tpanfrost\ndrm-client-id:\t3\n")->device, "panfrost");
}

TEST(ParseDrmClient, WithoutAnIdItIsAbsent) {
    for (const char* text : {"", "pos:\t0\n", "drm-client-id:\t\n", "drm-client-id:\tx\n",
                             "drm-client-id", "drm-engine-gfx:\t5 ns\n", ":\n::\n"})
        EXPECT_EQ(parseDrmClient(text), std::nullopt) << text;
}

TEST(ParseDrmClient, WhatIsCutShortOrTooLargeIsLeftOutOrClamped) {
    EXPECT_EQ(parseDrmClient("drm-client-id:\t1\ndrm-engine-gfx:\t99999999999999999999 ns\n"
                             "drm-engine-dec:\t-5 ns\ndrm-engine-enc:\n"
                             "drm-memory-vram:\t99999999999999999999 KiB\ndrm-memory-gtt:\t5 KiB"),
              (DrmClient{.device = "", .id = 1, .engines = {{"gfx", most}}, .memory = most}));
}

// Rounds of readings, a second apart.
class DrmClientsTest : public testing::Test {
  protected:
    using Times = std::unordered_map<std::int32_t, std::uint64_t>;
    struct Reading {
        std::int32_t pid;
        std::uint64_t id;
        std::uint64_t gfx;
        std::uint64_t video = 0;
    };
    const Times& round(std::initializer_list<Reading> readings) {
        clients.beginRound(now += second);
        for (const Reading& r : readings)
            clients.add(r.pid, {.device = device,
                                .id = r.id,
                                .engines = {{"gfx", r.gfx}, {"video", r.video}},
                                .memory = 10});
        clients.endRound();
        return clients.times();
    }
    DrmClients clients;
    std::uint64_t now = 0;
};

TEST_F(DrmClientsTest, TheClientsOfAProcessAndTheirEnginesAddUp) {
    EXPECT_EQ(round({{123, 11, 5, 1}, {123, 12, 3, 2}, {456, 13, 7}}),
              (Times{{123, 11}, {456, 7}}));
    EXPECT_EQ(round({{123, 11, 6, 1}, {123, 12, 3, 4}, {456, 13, 7}}),
              (Times{{123, 14}, {456, 7}}));
}

TEST_F(DrmClientsTest, AClientBehindSeveralFilesCountsOnce) {
    EXPECT_EQ(round({{123, 11, 5}, {123, 11, 5}}), (Times{{123, 5}}));
    EXPECT_EQ(round({{123, 11, 6}, {123, 11, 7}}), (Times{{123, 6}}));
}

TEST_F(DrmClientsTest, AClientOfTwoProcessesIsTheLaterOnesAndStaysTheirs) {
    EXPECT_EQ(round({{1, 11, 5}, {800, 11, 5}}), (Times{{1, 0}, {800, 5}}));
    EXPECT_EQ(round({{1, 11, 6}, {800, 11, 6}, {900, 11, 6}}), (Times{{1, 0}, {800, 6}, {900, 0}}));
    EXPECT_EQ(round({{1, 11, 9}, {900, 11, 9}}), (Times{{1, 0}, {900, 3}}));
}

TEST_F(DrmClientsTest, OfTwoDevicesTheSameIdIsTwoClients) {
    clients.beginRound(second);
    clients.add(1, {.device = "a", .id = 1, .engines = {{"gfx", 5}}});
    clients.add(1, {.device = "b", .id = 1, .engines = {{"gfx", 6}}});
    clients.endRound();
    EXPECT_EQ(clients.times(), (Times{{1, 11}}));
}

TEST_F(DrmClientsTest, AClientThatClosesTakesNothingAwayAndALaterOneAddsOnlyItsGrowth) {
    round({{123, 11, 500}, {123, 12, 100}});
    EXPECT_EQ(round({{123, 12, 101}}), (Times{{123, 601}}));
    EXPECT_EQ(round({{123, 12, 101}, {123, 13, 900}}), (Times{{123, 601}}));
    EXPECT_EQ(round({{123, 12, 101}, {123, 13, 901}}), (Times{{123, 602}}));
    EXPECT_EQ(round({}), Times{});
}

TEST_F(DrmClientsTest, ACounterThatFallsCountsNothing) {
    round({{123, 11, 500}});
    EXPECT_EQ(round({{123, 11, 100}}), (Times{{123, 500}}));
    EXPECT_EQ(round({{123, 11, 103}}), (Times{{123, 503}}));
}

TEST_F(DrmClientsTest, TheLargestTimesStayTheLargest) {
    EXPECT_EQ(round({{123, 11, most, most}, {123, 12, 5}}), (Times{{123, most}}));
    EXPECT_EQ(round({{123, 11, 0, 0}, {123, 12, most}}), (Times{{123, most}}));
}

TEST_F(DrmClientsTest, CyclesAreAShareOfTheTimeThatPassed) {
    const auto read = [&](std::uint64_t cycles, std::uint64_t total) {
        clients.beginRound(now += second);
        clients.add(1, {.device = device, .id = 1, .engines = {{"rcs", 0, cycles, total}}});
        clients.endRound();
        return clients.times();
    };
    EXPECT_EQ(read(1000, 10'000), (Times{{1, 0}}));
    EXPECT_EQ(read(1250, 11'000), (Times{{1, second / 4}}));
    EXPECT_EQ(clients.load(device), (DrmLoad{.busiest = 0.25, .render = 0.25}));
    EXPECT_EQ(read(1250, 12'000), (Times{{1, second / 4}}));
    EXPECT_EQ(read(9000, 12'000), (Times{{1, second / 4}})); // no time passed there
    EXPECT_EQ(read(10, 13'000), (Times{{1, second / 4}}));
}

TEST_F(DrmClientsTest, TheBusiestEngineIsTheLoad) {
    round({{1, 11, 0}, {2, 12, 0}});
    EXPECT_EQ(clients.load(device), std::nullopt);
    round({{1, 11, second / 4, second / 2}, {2, 12, 0, second / 4}});
    EXPECT_EQ(clients.load(device), (DrmLoad{.busiest = 0.75, .render = 0.25}));
    EXPECT_EQ(clients.memory(device), 20u);
    round({{1, 11, 9 * second}, {2, 12, 0}});
    EXPECT_EQ(clients.load(device), (DrmLoad{.busiest = 1, .render = 1}));
    EXPECT_EQ(clients.load("another"), std::nullopt);
    EXPECT_EQ(clients.memory("another"), 0u);
}

TEST_F(DrmClientsTest, AProcessWhoseClientsAreLeftAloneKeepsWhatItHas) {
    round({{123, 11, 500}});
    clients.beginRound(now += second);
    clients.keep(123);
    clients.endRound();
    EXPECT_EQ(clients.times(), (Times{{123, 500}}));
    EXPECT_EQ(round({{123, 11, 510}}), (Times{{123, 500}}));
    EXPECT_EQ(round({{123, 11, 512}}), (Times{{123, 502}}));
}

} // namespace
} // namespace tavero
