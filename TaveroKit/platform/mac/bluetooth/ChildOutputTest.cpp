#include "platform/mac/bluetooth/ChildOutput.h"

#include "bluetooth/BluetoothReader.h"
#include "platform/mac/bluetooth/ProfilerTool.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <stdlib.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <thread>

namespace tavero {
namespace {

using namespace std::chrono_literals;

// Enough for any machine; nothing that goes well takes so long.
constexpr ChildLimits generous{.bytes = 1 << 20, .time = 60s};

const std::atomic<bool> notCancelled = false;

std::optional<std::string> shell(const std::string& script, const ChildLimits& limits = generous) {
    return childOutput({"/bin/sh", "-c", script}, limits, notCancelled);
}

// How long the call took.
template <typename Call>
std::chrono::nanoseconds timeOf(Call call) {
    const auto start = std::chrono::steady_clock::now();
    call();
    return std::chrono::steady_clock::now() - start;
}

TEST(ChildOutput, IsWhatTheProgramWritesOnThisMachine) {
    EXPECT_EQ(shell("printf 'one\\ntwo'"), "one\ntwo");
    EXPECT_EQ(shell(":"), "");
    EXPECT_EQ(shell("printf '\\000\\377'"), std::string("\0\xFF", 2));
}

TEST(ChildOutput, TheExitStatusDoesNotMatterOnThisMachine) {
    EXPECT_EQ(shell("printf out; exit 3"), "out");
    EXPECT_EQ(shell("printf out; kill -9 $$"), "out");
}

TEST(ChildOutput, ErrorsAreNotPartOfItAndThereIsNothingToReadOnThisMachine) {
    EXPECT_EQ(shell("printf loud >&2; cat; printf out"), "out");
}

TEST(ChildOutput, AProgramThatCanNotBeStartedGivesNothingOnThisMachine) {
    EXPECT_EQ(childOutput({"/no/such/program"}, generous, notCancelled), std::nullopt);
    EXPECT_EQ(childOutput({"/"}, generous, notCancelled), std::nullopt);
    EXPECT_EQ(childOutput({}, generous, notCancelled), std::nullopt);
}

TEST(ChildOutput, MoreThanAPipeHoldsIsReadToItsEndOnThisMachine) {
    const auto output = shell("i=0; while [ $i -lt 3000 ]; do "
                              "printf '%0100d' 0; i=$((i+1)); done");
    ASSERT_TRUE(output);
    EXPECT_EQ(output->size(), 300'000u);
}

TEST(ChildOutput, AProgramThatNeverStopsWritingIsStoppedOnThisMachine) {
    EXPECT_EQ(shell("while :; do printf 0123456789; done", {.bytes = 100'000, .time = 60s}),
              std::nullopt);
}

TEST(ChildOutput, AProgramThatHangsHoldsNothingUpOnThisMachine) {
    const std::string sleeps = "sleep 1000 & echo $!; wait"; // the child keeps the pipe open
    std::optional<std::string> output;
    const auto time = timeOf([&] { output = shell(sleeps, {.bytes = 1000, .time = 200ms}); });
    EXPECT_EQ(output, std::nullopt);
    EXPECT_LT(time, 30s);
}

TEST(ChildOutput, AProgramThatClosesItsOutputAndStaysIsKilledOnThisMachine) {
    std::optional<std::string> output;
    const auto time = timeOf([&] {
        output = shell("printf out; exec >&- ; exec sleep 1000", {.bytes = 1000, .time = 200ms});
    });
    EXPECT_EQ(output, std::nullopt);
    EXPECT_LT(time, 30s);
}

TEST(ChildOutput, WhoCancelsDoesNotWaitOnThisMachine) {
    const std::atomic<bool> cancelled = true;
    std::optional<std::string> output;
    const auto time = timeOf([&] {
        output = childOutput({"/bin/sh", "-c", "sleep 1000"}, generous, cancelled);
    });
    EXPECT_EQ(output, std::nullopt);
    EXPECT_LT(time, 30s);
}

TEST(ChildOutput, ARunCanBeCancelledFromAnotherThreadOnThisMachine) {
    std::atomic<bool> cancelled = false;
    std::optional<std::string> output = "";
    std::thread runner([&] {
        output = childOutput({"/bin/sh", "-c", "sleep 1000"}, {.bytes = 1, .time = 1h}, cancelled);
    });
    cancelled = true;
    runner.join();
    EXPECT_EQ(output, std::nullopt);
}

// A program that stands in for the Mac's.
class FakeTool {
  public:
    explicit FakeTool(const std::string& script) {
        std::string pattern = (std::filesystem::temp_directory_path() / "tavero-XXXXXX").string();
        folder_ = ::mkdtemp(pattern.data());
        std::ofstream(path()) << "#!/bin/sh\n" << script << '\n';
        std::filesystem::permissions(path(), std::filesystem::perms::owner_all);
    }
    ~FakeTool() { std::filesystem::remove_all(folder_); }
    FakeTool(const FakeTool&) = delete;
    FakeTool& operator=(const FakeTool&) = delete;

    std::string path() const { return (folder_ / "profiler").string(); }

  private:
    std::filesystem::path folder_;
};

std::optional<BluetoothSnapshot> readWith(const FakeTool& tool) {
    const auto cancelled = std::make_shared<std::atomic<bool>>(false);
    return BluetoothReader(std::make_unique<ProfilerTool>(cancelled, tool.path(), generous)).read();
}

TEST(ProfilerTool, ItsReportOnBluetoothIsReadOnThisMachine) {
    const FakeTool tool(R"([ "$*" = "SPBluetoothDataType -json" ] || exit 1
printf '{"SPBluetoothDataType":[{"device_connected":[{"Mouse":{"device_batteryLevel":"9%%"}}]}]}'
exit 4)");
    const auto snapshot = readWith(tool);
    ASSERT_TRUE(snapshot);
    EXPECT_EQ(snapshot->connected,
              (std::vector<BluetoothDevice>{{.name = "Mouse", .batteries = {{"Battery", 9}}}}));
}

TEST(ProfilerTool, OneThatSaysSomethingElseGivesNothingOnThisMachine) {
    EXPECT_EQ(readWith(FakeTool("echo usage: profiler")), std::nullopt);
    EXPECT_EQ(readWith(FakeTool("exit 1")), std::nullopt);
}

TEST(ProfilerTool, WithoutTheToolThereIsNoReportOnThisMachine) {
    const auto cancelled = std::make_shared<std::atomic<bool>>(false);
    EXPECT_EQ(ProfilerTool(cancelled, "/no/such/tool").report(), std::nullopt);
}

} // namespace
} // namespace tavero
