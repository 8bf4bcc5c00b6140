#include "platform/sim/SimConnections.h"

#include "MonitorEngine.h"
#include "counters/NetworkReader.h"
#include "platform/mac/network/MacConnections.h"
#include "platform/sim/SimMachine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <set>
#include <string>

namespace tavero {
namespace {

using namespace std::chrono_literals;
using testing::IsEmpty;
using testing::Pair;
using testing::UnorderedElementsAre;

// A Mac, what a test reads of it, and the clock that moves it.
class NetworkRun {
  public:
    explicit NetworkRun(Scenario scenario)
        : sim(std::move(scenario), [clock = clock_] { return *clock; }), machine(sim.machine()) {
        machine.networkUsage->read();
    }

    void wait(Date::duration time) { *clock_ += time; }

    NetworkBytes ofApps() {
        NetworkBytes sum;
        for (const auto& [pid, bytes] : machine.networkUsage->read()) {
            sum.received += bytes.received;
            sum.sent += bytes.sent;
        }
        return sum;
    }
    NetworkSnapshot ofInterfaces() { return *NetworkReader::read(*machine.network); }
    ConnectionKind kind() {
        machine.network->interfaces(); // a pass has read something before
        return machine.connection->current();
    }

  private:
    std::shared_ptr<Date> clock_ = std::make_shared<Date>(Date(std::chrono::days(20'000)));

  public:
    SimMachine sim;
    Machine machine;
};

double megabytes(std::uint64_t bytes) { return static_cast<double>(bytes) / 1e6; }

TEST(SimConnections, ALaptopThatStandsStillHasWiFi6EAndNoConnections) {
    const Machine machine = SimMachine().machine();
    EXPECT_EQ(machine.wifi->link()->standard, "Wi-Fi 6E");
    EXPECT_EQ(machine.connection->current(), ConnectionKind::wifi);
    EXPECT_THAT(machine.networkUsage->read(), IsEmpty());
    EXPECT_THAT(machine.networkUsage->read(), IsEmpty());
}

TEST(SimConnections, ATestSetsThemOneByOne) {
    SimMachine sim;
    const Machine machine = sim.machine();
    SimConnections& connections = sim.state().connections;
    connections.set(1, 7, "A", {.received = 500, .sent = 60});
    machine.networkUsage->read();
    connections.set(1, 7, "A", {.received = 530, .sent = 64});
    connections.set(2, 7, "A", {.received = 1ull << 63, .sent = 1});
    EXPECT_THAT(
        machine.networkUsage->read(),
        UnorderedElementsAre(Pair(7, NetworkBytes{.received = (1ull << 63) + 30, .sent = 5})));
    connections.open.clear();
    machine.networkUsage->read();
    EXPECT_THAT(machine.networkUsage->read(), IsEmpty());

    connections.wifi.reset();
    EXPECT_EQ(machine.wifi->link(), std::nullopt);
    machine.connection->current();
    connections.path = {};
    machine.network->interfaces();
    EXPECT_EQ(machine.connection->current(), ConnectionKind::offline);
}

TEST(SimConnections, OnAnIdleAfternoonTheBrowserAndASyncAgentUseALittle) {
    NetworkRun run(idleAfternoon());
    run.wait(20s); // before the first page
    const auto usage = run.machine.networkUsage->read();
    std::set<std::string> users;
    for (const auto& [pid, bytes] : usage) {
        const std::string path = *run.machine.processes->path(pid);
        users.insert(path.substr(path.rfind('/') + 1));
        EXPECT_GT(bytes.received, 0u);
        EXPECT_GT(bytes.sent, 0u);
        EXPECT_LT(bytes.received, 200'000u);
    }
    EXPECT_THAT(users, UnorderedElementsAre("Wayfarer Helper", "Mail", "Parley", "cirrus-sync"));
}

TEST(SimConnections, TheEngineShowsWhichAppsUseTheNetwork) {
    const auto clock = std::make_shared<Date>(Date(std::chrono::days(20'000)));
    const SimMachine sim(idleAfternoon(), [clock] { return *clock; });
    MonitorEngine engine(readers(sim.machine()));
    const auto sample = [&] {
        return engine.sample(MonitorEngine::Detail::full, 1000, true, *clock);
    };
    sample();
    *clock += 30s;
    const LiveSnapshot snapshot = sample();
    ASSERT_FALSE(snapshot.networkApps.empty());
    EXPECT_EQ(snapshot.networkApps.front().name, "Wayfarer");
    EXPECT_NEAR(snapshot.networkApps.front().networkInRate, 5 * 2.4e6 / 30, 20e3);
    ASSERT_TRUE(snapshot.wifi);
    EXPECT_GE(snapshot.wifi->rssi, -58);
    EXPECT_LE(snapshot.wifi->rssi, -48);
    EXPECT_GT(snapshot.wifi->linkSpeed, 1900);
    EXPECT_EQ(snapshot.connection, ConnectionKind::wifi);
}

TEST(SimConnections, TheInterfacesCountWhatTheAppsMoveAndALittleMore) {
    for (const Scenario& scenario : scenarios()) {
        SCOPED_TRACE(scenario.name);
        NetworkRun run(scenario);
        NetworkSnapshot before = run.ofInterfaces();
        for (int minutes = 0; minutes < 30; minutes += 6) {
            run.wait(6min);
            const NetworkBytes apps = run.ofApps();
            const NetworkSnapshot now = run.ofInterfaces();
            const double in = megabytes(now.bytesIn - before.bytesIn);
            const double out = megabytes(now.bytesOut - before.bytesOut);
            before = now;
            EXPECT_LE(megabytes(apps.received), in);
            EXPECT_LE(megabytes(apps.sent), out);
            // What a connection moved between the last read and its end is lost to the apps.
            if (scenario.name == "offline" && minutes == 0) continue;
            EXPECT_GE(megabytes(apps.received), 0.9 * in);
            EXPECT_GE(megabytes(apps.sent), 0.8 * out);
        }
    }
}

TEST(SimConnections, QuittingAnAppClosesItsConnections) {
    NetworkRun run(idleAfternoon());
    run.sim.quit("/Applications/Wayfarer.app");
    run.wait(1min);
    run.ofApps();
    run.wait(10min); // without a page
    EXPECT_LT(megabytes(run.ofApps().received), 15);
}

TEST(SimConnections, OfflineThePathGoesAwayForSomeMinutesAndComesBackWired) {
    NetworkRun run(offline());
    EXPECT_EQ(run.kind(), ConnectionKind::wifi);
    run.wait(50s);
    EXPECT_TRUE(run.machine.wifi->link());
    EXPECT_GT(run.ofApps().received, 1'000'000u);
    run.wait(15s);
    EXPECT_EQ(run.kind(), ConnectionKind::offline);
    EXPECT_EQ(run.machine.wifi->link(), std::nullopt);
    run.ofApps();
    const NetworkSnapshot before = run.ofInterfaces();
    run.wait(3min);
    EXPECT_EQ(run.kind(), ConnectionKind::offline);
    EXPECT_EQ(run.ofInterfaces(), before); // nothing moves
    EXPECT_EQ(run.ofApps(), NetworkBytes{});
    run.wait(1min);
    EXPECT_EQ(run.kind(), ConnectionKind::wired);
    EXPECT_EQ(run.machine.wifi->link(), std::nullopt);
    EXPECT_EQ(run.machine.network->interfaces()->size(), 2u);
    EXPECT_GT(run.ofInterfaces().bytesIn, before.bytesIn);
    // The new connections count from nothing: no burst of what they might have moved.
    EXPECT_LT(run.ofApps().received, run.ofInterfaces().bytesIn - before.bytesIn);
    run.wait(10min);
    EXPECT_EQ(run.kind(), ConnectionKind::wired);
    EXPECT_GT(run.ofApps().received, 50'000'000u);
}

TEST(SimConnections, TheSignalWavers) {
    NetworkRun run(idleAfternoon());
    std::set<std::int64_t> signals;
    std::set<double> speeds;
    for (int second = 0; second < 200; ++second) {
        run.wait(1s);
        signals.insert(run.machine.wifi->link()->rssi);
        speeds.insert(run.machine.wifi->link()->linkSpeed);
    }
    EXPECT_GE(signals.size(), 8u);
    EXPECT_EQ(speeds.size(), 3u);
}

TEST(SimConnections, EachMachineOfItHasAServiceOfItsOwn) {
    SimMachine sim;
    const Machine one = sim.machine();
    one.networkUsage->read();
    const Machine other = sim.machine();
    sim.state().connections.set(1, 7, "A", {.received = 5, .sent = 6});
    EXPECT_THAT(other.networkUsage->read(), IsEmpty()); // its first
    EXPECT_THAT(one.networkUsage->read(),
                UnorderedElementsAre(Pair(7, NetworkBytes{.received = 5, .sent = 6})));
}

} // namespace
} // namespace tavero
