#include "platform/linux/LinuxSystem.h"

#include "platform/linux/LinuxMachine.h"

#include <gtest/gtest.h>

#include <chrono>

namespace tavero {
namespace {

using namespace std::chrono_literals;

TEST(LinuxSystem, TheBootTimeIsTheLineOfItsName) {
    EXPECT_EQ(parseBootTime("cpu  1 2 3 4\nctxt 99\nbtime 1800000000\nprocesses 7\n"),
              Date(1'800'000'000s));
}

TEST(LinuxSystem, ATextThatHasNoneHasNone) {
    for (const char* text : {"", "btime", "btime \n", "btime 0\n", "btime -5\n", "xbtime 5\n",
                             "btime 99999999999999999999\n", "cpu 1\nbtime"})
        EXPECT_EQ(parseBootTime(text), std::nullopt) << text;
}

TEST(LinuxSystem, TheBootTimeIsInThePastOnThisMachine) {
    const std::optional<Date> booted = LinuxSystem("/").bootTime();
    ASSERT_TRUE(booted);
    EXPECT_LT(*booted, std::chrono::system_clock::now());
    EXPECT_EQ(LinuxSystem("/nowhere").bootTime(), std::nullopt);
}

} // namespace
} // namespace tavero
